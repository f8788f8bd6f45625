#pragma once

#include <vellumcaster/types.h>

namespace vellumcaster {

inline constexpr DWORD BI_RGB = 0;
/// Three masks behind the record say where red, green and blue lie.
inline constexpr DWORD BI_BITFIELDS = 3;

/// Geometry and format of a bitmap.
struct BITMAPINFOHEADER {
    DWORD biSize = 0;        ///< 40
    LONG biWidth = 0;        ///< pixels
    LONG biHeight = 0;       ///< pixels; positive: rows from the bottom up, negative: from the top down
    WORD biPlanes = 0;       ///< 1
    WORD biBitCount = 0;     ///< bits a pixel
    DWORD biCompression = 0; ///< BI_RGB, BI_BITFIELDS or a format code
    DWORD biSizeImage = 0;   ///< bytes of pixels
    LONG biXPelsPerMeter = 0;
    LONG biYPelsPerMeter = 0;
    DWORD biClrUsed = 0; ///< colours of the table behind the record
    DWORD biClrImportant = 0;

    friend constexpr bool operator==(const BITMAPINFOHEADER&, const BITMAPINFOHEADER&) = default;
};
static_assert(sizeof(BITMAPINFOHEADER) == 40);

} // namespace vellumcaster
