#pragma once

#include <vellumcaster/types.h>

#include <cstddef>

namespace vellumcaster {

/// One row of pixels of four bytes B, G, R, X into packed samples C1 Y0 C2 Y1, by ITU-R BT.601 in 16-bit fixed point.
/// This is what every picture goes through on its way into a YUV stream. The last pixel of an odd width writes C1 and
/// Y0 alone.
/// \param width  pixels, from 1. \param pDst  apart from `pSrc`.
void BgrRowToCbYCr422(const BYTE* pSrc, BYTE* pDst, std::ptrdiff_t width);

} // namespace vellumcaster
