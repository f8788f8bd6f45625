#pragma once

#include "platform/media/bitmap_info.h"

#include <array>
#include <cstddef>
#include <span>

namespace vellumcaster {

/// What a bitmap file begins with, but for two words that nobody reads.
struct BITMAPFILEHEADER {
    WORD bfType = 0;     ///< `bmpFileType`
    DWORD bfSize = 0;    ///< bytes of the whole file
    DWORD bfOffBits = 0; ///< where the pixels begin
};

/// The letters BM.
inline constexpr WORD bmpFileType = 0x4D42;

/// Where red, green and blue lie in a pixel, one bit set for each of theirs.
using BmpMasks = std::array<DWORD, 3>;

/// Bytes of the records in a file.
inline constexpr std::size_t cbBmpFileHeader = 14;
inline constexpr std::size_t cbBmpInfoHeader = 40;
inline constexpr std::size_t cbBmpMasks = 12;

/// The records as a file has them: little-endian on every machine, words that nobody reads left as they are.
void EncodeBmpHeader(const BITMAPFILEHEADER& header, std::span<BYTE, cbBmpFileHeader> stored);
void EncodeBmpHeader(const BITMAPINFOHEADER& header, std::span<BYTE, cbBmpInfoHeader> stored);
void EncodeBmpHeader(const BmpMasks& masks, std::span<BYTE, cbBmpMasks> stored);
void DecodeBmpHeader(std::span<const BYTE, cbBmpFileHeader> stored, BITMAPFILEHEADER& header);
void DecodeBmpHeader(std::span<const BYTE, cbBmpInfoHeader> stored, BITMAPINFOHEADER& header);

} // namespace vellumcaster
