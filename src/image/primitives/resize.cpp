#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"
#include "image/primitives/resize_job.h"

#include <algorithm>

namespace vellumcaster {

namespace {

using scaling::Axis;
using scaling::Job;

/// What a caller gives.
struct Arguments {
    const BYTE* pSrc;
    PrimSize srcSize;
    std::int32_t srcStep;
    PrimRect srcRoi;
    BYTE* pDst;
    std::int32_t dstStep;
    PrimSize dstSize;
    double xFactor;
    double yFactor;
    std::int32_t interpolation;

    [[nodiscard]] bool Shrinks() const { return xFactor <= 1.0 && yFactor <= 1.0; }
};

PrimStatus Check(const Arguments& a) {
    using namespace prim_status;
    if (!a.pSrc || !a.pDst) return nullPointer;
    if (std::min(a.srcSize.width, a.srcSize.height) < 1) return badSize;
    if (std::min(a.srcStep, a.dstStep) < 1) return badStep;
    if (std::min(a.srcRoi.x, a.srcRoi.y) < 0 || std::min(a.srcRoi.width, a.srcRoi.height) < 1) return badSize;
    if (a.srcRoi.x >= a.srcSize.width || a.srcRoi.y >= a.srcSize.height) return wrongRoi;
    if (std::min(a.dstSize.width, a.dstSize.height) < 1) return badSize;
    if (!(a.xFactor > 0) || !(a.yFactor > 0)) return badFactor;
    switch (a.interpolation) {
    case interpolationNearest:
    case interpolationLinear:
    case interpolationCubic: return ok;
    case interpolationSuper: return a.Shrinks() ? ok : badInterpolation;
    default: return badInterpolation;
    }
}

Axis MakeAxis(std::int32_t source, std::int32_t origin, std::int32_t size, std::int32_t dstSize, double factor) {
    const std::int32_t region = std::min(size, source - origin);
    const double scaled = region * factor + scaling::nearlyNothing;
    const std::int32_t output = scaled < dstSize ? std::max(static_cast<std::int32_t>(scaled), 1) : dstSize;
    return {source, origin, region, output, factor};
}

/// A source that has too few pixels for a way of scaling gets the next simpler one.
std::int32_t FitToSource(std::int32_t interpolation, PrimSize srcSize) {
    const std::int32_t side = std::min(srcSize.width, srcSize.height);
    if (interpolation == interpolationSuper) return interpolation;
    if (side < 2) return interpolationNearest;
    return side < 4 && interpolation == interpolationCubic ? interpolationLinear : interpolation;
}

template <std::int32_t channels>
bool Scale(std::int32_t interpolation, const Job& job) {
    switch (interpolation) {
    case interpolationNearest: return scaling::ScaleNearest<channels>(job);
    case interpolationLinear: return scaling::ScaleLinear<channels>(job);
    case interpolationCubic: return scaling::ScaleCubic<channels>(job);
    default: return scaling::ScaleByArea<channels>(job);
    }
}

template <std::int32_t channels>
PrimStatus Resize(const Arguments& a) {
    if (const PrimStatus status = Check(a)) return status;
    const Job job{a.pSrc,
                  a.srcStep,
                  a.pDst,
                  a.dstStep,
                  MakeAxis(a.srcSize.width, a.srcRoi.x, a.srcRoi.width, a.dstSize.width, a.xFactor),
                  MakeAxis(a.srcSize.height, a.srcRoi.y, a.srcRoi.height, a.dstSize.height, a.yFactor)};
    const bool bDone = Scale<channels>(FitToSource(a.interpolation, a.srcSize), job);
    return bDone ? prim_status::ok : prim_status::noMemory;
}

} // namespace

namespace px {

// NOLINTBEGIN(readability-function-size) the primitives' signature
PrimStatus ippiResize_8u_C1R(const BYTE* pSrc, PrimSize srcSize, std::int32_t srcStep, PrimRect srcRoi, BYTE* pDst,
                             std::int32_t dstStep, PrimSize dstSize, double xFactor, double yFactor,
                             std::int32_t interpolation) {
    return Resize<1>({pSrc, srcSize, srcStep, srcRoi, pDst, dstStep, dstSize, xFactor, yFactor, interpolation});
}

PrimStatus ippiResize_8u_C3R(const BYTE* pSrc, PrimSize srcSize, std::int32_t srcStep, PrimRect srcRoi, BYTE* pDst,
                             std::int32_t dstStep, PrimSize dstSize, double xFactor, double yFactor,
                             std::int32_t interpolation) {
    return Resize<3>({pSrc, srcSize, srcStep, srcRoi, pDst, dstStep, dstSize, xFactor, yFactor, interpolation});
}

PrimStatus ippiResize_8u_C4R(const BYTE* pSrc, PrimSize srcSize, std::int32_t srcStep, PrimRect srcRoi, BYTE* pDst,
                             std::int32_t dstStep, PrimSize dstSize, double xFactor, double yFactor,
                             std::int32_t interpolation) {
    return Resize<4>({pSrc, srcSize, srcStep, srcRoi, pDst, dstStep, dstSize, xFactor, yFactor, interpolation});
}
// NOLINTEND(readability-function-size)

} // namespace px
} // namespace vellumcaster
