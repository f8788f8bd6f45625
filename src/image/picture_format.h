#pragma once

#include <vellumcaster/types.h>

#include <cstdint>

namespace vellumcaster {

/// Format codes: the first 32 bits of the media subtype, which for YUV formats is the FOURCC. Code 0 is no
/// format.
namespace format_code {

inline constexpr std::uint32_t ARGB32 = 0x773C9AC0; ///< bytes B, G, R, A
inline constexpr std::uint32_t RGB32 = 0xE436EB7E;  ///< bytes B, G, R, X
inline constexpr std::uint32_t RGB24 = 0xE436EB7D;  ///< bytes B, G, R
inline constexpr std::uint32_t RGB565 = 0xE436EB7B; ///< little-endian word: red in bits 15-11, green 10-5, blue 4-0
inline constexpr std::uint32_t RGB555 = 0xE436EB7C; ///< little-endian word: red in bits 14-10, green 9-5, blue 4-0
inline constexpr std::uint32_t YUY2 = 0x32595559;   ///< two pixels: Y0, U, Y1, V
inline constexpr std::uint32_t YVYU = 0x55595659;   ///< two pixels: Y0, V, Y1, U
inline constexpr std::uint32_t UYVY = 0x59565955;   ///< two pixels: U, Y0, V, Y1
inline constexpr std::uint32_t YV12 = 0x32315659;   ///< 4:2:0 in planes Y, V, U
inline constexpr std::uint32_t I420 = 0x30323449;   ///< 4:2:0 in planes Y, U, V

/// Known by name and depth; no picture in one of them is ever processed.
inline constexpr std::uint32_t RGB8 = 0xE436EB7A;
inline constexpr std::uint32_t YVU9 = 0x39555659;
inline constexpr std::uint32_t IYU2 = 0x32555949;

} // namespace format_code

/// A picture above this many pixels on a side is refused wherever it comes in.
inline constexpr std::int32_t nLargestSide = 32767;
/// And so is one of more bytes than this.
inline constexpr std::int64_t cbLargestPicture = std::int64_t{1} << 30;

/// How to read a block of memory as a picture.
///
///     RGB, nHeight > 0       RGB, nHeight < 0       YUV, either sign
///     bottom row             top row                top row
///     ...                    ...                    ...
///     top row                bottom row             bottom row
struct PictureFormat {
    std::uint32_t dwFormat = 0; ///< format code
    std::int32_t nWidth = 0;    ///< pixels
    std::int32_t nHeight = 0;   ///< pixels; the sign carries the row order of RGB pictures
    std::uint32_t nStride = 0;  ///< from row to row, in pixels; 0 is the same as `nWidth`

    friend bool operator==(const PictureFormat&, const PictureFormat&) = default;
};

/// The distance between rows in pixels, with 0 resolved.
constexpr std::uint32_t EffectiveStride(const PictureFormat& pf) {
    return pf.nStride != 0 ? pf.nStride : static_cast<std::uint32_t>(pf.nWidth);
}

/// Number of rows. -2^31 has no positive counterpart in 32 bits, hence the type.
constexpr std::int64_t RowCount(const PictureFormat& pf) {
    return pf.nHeight < 0 ? -std::int64_t{pf.nHeight} : std::int64_t{pf.nHeight};
}

/// The descriptor of an overlay: top-down, rows without a gap.
constexpr PictureFormat OverlayFormat(std::uint32_t dwFormat, const SIZE& size) {
    return {dwFormat, size.cx, size.cy < 0 ? size.cy : -size.cy, static_cast<std::uint32_t>(size.cx)};
}

} // namespace vellumcaster
