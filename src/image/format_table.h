#pragma once

#include "image/picture_format.h"

#include <vellumcaster/results.h>

#include <array>
#include <span>

namespace vellumcaster {

/// One row of the format table. Component offsets and steps are bytes within a pixel group, in the order Y, U, V
/// or R, G, B.
struct PixelFormatEntry {
    GUID subtype;
    std::uint16_t nBitCount; ///< bits a pixel, over all planes
    std::uint8_t nSubX;      ///< chroma is this many times narrower; a stream's width and stride are multiples
    std::uint8_t nSubY;      ///< chroma is this many times lower; a stream's height is a multiple
    std::uint8_t nDibAlignX; ///< what the width of a bitmap is a multiple of
    std::uint8_t nDibAlignY; ///< what the height of a bitmap is a multiple of
    std::array<std::uint8_t, 3> offsets;
    std::array<std::uint8_t, 3> steps;
    bool bPlanar;
    bool bYuv;
};

namespace CPictureFormats {

/// The table, searched from its first row to its last.
[[nodiscard]] std::span<const PixelFormatEntry> FormatTable();

/// The row whose subtype starts with `code`, or -1.
[[nodiscard]] int FormatIndexFromCode(std::uint32_t code);

/// The row of exactly this subtype, or -1.
[[nodiscard]] int FormatIndexFromSubtype(const GUID& subtype);

/// Bits a pixel of each format that is known by depth, else 0.
[[nodiscard]] std::uint32_t BitsPerPixel(std::uint32_t code);

/// `YV12` and `I420`.
[[nodiscard]] bool IsPlanarFormat(std::uint32_t code);

/// `RGB8`, `RGB565`, `RGB555`, `RGB24`, `RGB32`, `ARGB32`: the formats whose height carries the row order.
[[nodiscard]] bool IsRgbFormat(std::uint32_t code);

/// Bytes of one row: of the first plane for a planar entry, else of the picture, up to a multiple of four.
/// \param width pixels, 0 to `nLargestSide`.
[[nodiscard]] std::uint32_t GetRowBytes(const PixelFormatEntry& entry, std::int32_t width);

/// Bytes of a whole picture whose rows follow each other without a gap.
/// \param height either sign.
/// \return E_POINTER for a null `pcb`; E_INVALIDARG for an unknown code, a negative width, or a picture beyond the
///         size limits.
[[nodiscard]] HRESULT GetImageSize(std::uint32_t code, std::int32_t width, std::int32_t height, std::uint32_t* pcb);

/// Whether a bitmap header of this geometry can be taken.
/// \param stride pixels, 0 for the same as `width`.
/// \return the row of the table; -1 for a width or height of 0, a stride below the width, an unknown code, or a
///         side that is no multiple of what the row demands.
[[nodiscard]] int CheckDibGeometry(std::uint32_t code, std::int32_t width, std::int32_t height, std::int32_t stride);

} // namespace CPictureFormats
} // namespace vellumcaster
