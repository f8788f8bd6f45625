#pragma once

#include <vellumcaster/types.h>

#include <cstddef>

namespace vellumcaster {

/// Orders of the four bytes b0 b1 b2 b3 that two pixels of packed 4:2:2 take. Each turns one row of `cb` bytes; what
/// is left over beyond whole groups keeps its order. `pSrc` and `pDst` are the same row or do not overlap.
using Yuv422Reorder = void(const BYTE* pSrc, BYTE* pDst, std::size_t cb);

/// To b1 b0 b3 b2: UYVY into YUY2 and back.
Yuv422Reorder Yuv422SwapPairs;
/// To b0 b3 b2 b1: YUY2 into YVYU and back.
Yuv422Reorder Yuv422SwapChroma;
/// To b1 b2 b3 b0: UYVY into YVYU.
Yuv422Reorder Yuv422RotateDown;
/// To b3 b0 b1 b2: YVYU into UYVY.
Yuv422Reorder Yuv422RotateUp;

} // namespace vellumcaster
