#pragma once

#include <vellumcaster/types.h>

#include <cstdint>

namespace vellumcaster {

/// What a primitive answers: 0, a negative error or a positive warning, as `prim_status` names them.
using PrimStatus = std::int32_t;

/// Pixels, or elements of a mirror or a kernel.
struct PrimSize {
    std::int32_t width;
    std::int32_t height;
};

struct PrimPoint {
    std::int32_t x;
    std::int32_t y;
};

/// A region in pixels, counted from the first row in memory.
struct PrimRect {
    std::int32_t x;
    std::int32_t y;
    std::int32_t width;
    std::int32_t height;
};

/// The signatures of the primitives. A step is the distance in bytes between the starts of two neighbouring rows.
/// Arrays of planes and of their steps have three elements: P0 (luma), P1, P2. The words of a 16-bit destination
/// are as the processor has them; its step is in bytes, too, and even.
namespace prim_signature {

using PlanesToBytes = PrimStatus(const BYTE* const* ppSrc, const std::int32_t* pSrcSteps, BYTE* pDst,
                                 std::int32_t dstStep, PrimSize size);
using PlanesToWords = PrimStatus(const BYTE* const* ppSrc, const std::int32_t* pSrcSteps, std::uint16_t* pDst,
                                 std::int32_t dstStep, PrimSize size);
using BytesToPlanes = PrimStatus(const BYTE* pSrc, std::int32_t srcStep, BYTE* const* ppDst,
                                 const std::int32_t* pDstSteps, PrimSize size);
using BytesToBytes = PrimStatus(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep,
                                PrimSize size);
using BytesToWords = PrimStatus(const BYTE* pSrc, std::int32_t srcStep, std::uint16_t* pDst, std::int32_t dstStep,
                                PrimSize size);
using BytesToBytesWithAlpha = PrimStatus(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep,
                                         PrimSize size, BYTE alpha);

using MirrorBytesInPlace = PrimStatus(BYTE* pInOut, std::int32_t step, PrimSize size, std::int32_t flip);
using MirrorWordsInPlace = PrimStatus(std::uint16_t* pInOut, std::int32_t step, PrimSize size, std::int32_t flip);
using MirrorBytes = PrimStatus(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep, PrimSize size,
                               std::int32_t flip);
using MirrorWords = PrimStatus(const std::uint16_t* pSrc, std::int32_t srcStep, std::uint16_t* pDst,
                               std::int32_t dstStep, PrimSize size, std::int32_t flip);

using Resize = PrimStatus(const BYTE* pSrc, PrimSize srcSize, std::int32_t srcStep, PrimRect srcRoi, BYTE* pDst,
                          std::int32_t dstStep, PrimSize dstSize, double xFactor, double yFactor,
                          std::int32_t interpolation);

using Filter = PrimStatus(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep, PrimSize size,
                          const std::int32_t* pKernel, PrimSize kernelSize, PrimPoint anchor, std::int32_t divisor);

} // namespace prim_signature

/// `flip` of a mirror.
enum PrimFlip : std::int32_t { flipRows = 0, flipColumns = 1, flipBoth = 2 };

/// `interpolation` of a resize.
enum PrimInterpolation : std::int32_t {
    interpolationNearest = 1,
    interpolationLinear = 2,
    interpolationCubic = 4,
    interpolationSuper = 8 ///< area average; for factors up to 1.0
};

} // namespace vellumcaster
