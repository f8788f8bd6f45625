#pragma once

#include "image/guarded_memory.h"

namespace vellumcaster {

/// Takes a block of RGB pixels into another depth: `nRows` rows of `width` pixels.
using RgbRepack = void(const RowPair& rows, LONG width, LONG nRows);

/// To B, G, R, 0xFF.
RgbRepack Rgb24ToRgb32;
/// To B, G, R; the fourth byte is dropped.
RgbRepack Rgb32ToRgb24;
/// To a little-endian word: red in bits 15-11, green 10-5, blue 4-0.
RgbRepack Rgb32ToRgb565;
RgbRepack Rgb24ToRgb565;
/// To a little-endian word: red in bits 14-10, green 9-5, blue 4-0; the top bit is 0.
RgbRepack Rgb32ToRgb555;
RgbRepack Rgb24ToRgb555;

} // namespace vellumcaster
