#include "image/resize_plane.h"

#include "image/guarded_memory.h"
#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"
#include "image/resample_plane.h"
#include "image/resize.h"
#include "image/sharpen_kernel.h"

namespace vellumcaster {

namespace {

std::int32_t Interpolation(const ResizeMethod& method) {
    switch (method.nMode) {
    case resizeNearest: return interpolationNearest;
    case resizeLinear: return interpolationLinear;
    case resizeBest: return method.xFactor <= 1.0 && method.yFactor <= 1.0 ? interpolationSuper : interpolationCubic;
    default: return method.nMode;
    }
}

/// The member of a family for so many interleaved bytes a pixel.
template <const auto& c1, const auto& c3, const auto& c4, class... Arguments>
HRESULT CallByChannels(std::int32_t nChannels, Arguments... arguments) {
    switch (nChannels) {
    case 1: return ResultFromStatus(c1(arguments...));
    case 3: return ResultFromStatus(c3(arguments...));
    default: return ResultFromStatus(c4(arguments...));
    }
}

HRESULT ResizeByPrimitive(const PlanePair& plane, double xFactor, double yFactor, std::int32_t interpolation) {
    return CallByChannels<ippiResize_8u_C1R, ippiResize_8u_C3R, ippiResize_8u_C4R>(
        plane.nChannels, plane.pSrc, plane.srcSize, plane.srcPitch, plane.srcBlock, plane.pDst, plane.dstPitch,
        plane.dstSize, xFactor, yFactor, interpolation);
}

const BYTE* FirstByte(const PlanePair& plane) {
    return plane.pSrc + std::ptrdiff_t{plane.srcBlock.y} * plane.srcPitch +
           std::ptrdiff_t{plane.srcBlock.x} * plane.nChannels;
}

HRESULT ResampleBothWays(const PlanePair& plane, const ResizeMethod& method) {
    const ResampleParams params{method.nMode};
    return ResamplePlane(FirstByte(plane), plane.pDst, plane.srcBlock.width, plane.srcBlock.height, plane.dstSize.width,
                         plane.dstSize.height, plane.srcPitch, plane.dstPitch, &params, method.pRows);
}

/// In height by the resampler, whose softness a sharper kernel makes good where the picture is filtered later; then
/// in width by the primitive.
HRESULT ResampleRowsFirst(const PlanePair& plane, const ResizeMethod& method) {
    const ResampleParams params{method.nSharpen != 0 ? kernelTriangle : kernelGaussian};
    const std::int32_t cbRow = plane.srcBlock.width * plane.nChannels;
    const HRESULT hr = ResamplePlane(FirstByte(plane), method.pRows, cbRow, plane.srcBlock.height, cbRow,
                                     plane.dstSize.height, plane.srcPitch, plane.srcPitch, &params, nullptr);
    if (hr != S_OK) return hr;
    PlanePair between = plane;
    between.pSrc = method.pRows;
    between.srcSize = {plane.srcBlock.width, plane.dstSize.height};
    between.srcBlock = {0, 0, between.srcSize.width, between.srcSize.height};
    return ResizeByPrimitive(between, method.xFactor, 1.0, interpolationCubic);
}

HRESULT Resize(const PlanePair& plane, const ResizeMethod& method) {
    if (method.nMode == resizeSmoothRows) return ResampleRowsFirst(plane, method);
    if (method.nMode < kernelTriangle)
        return ResizeByPrimitive(plane, method.xFactor, method.yFactor, Interpolation(method));
    if (plane.nChannels == 1) return ResampleBothWays(plane, method);
    return ResizeByPrimitive(plane, method.xFactor, method.yFactor, interpolationCubic);
}

/// Filters `pUnfiltered`, which is laid out as the target, into the target, where its pixels stand already. The
/// outermost ones lack neighbours and stay.
HRESULT Sharpen(const PlanePair& plane, const BYTE* pUnfiltered, std::int32_t nSharpen) {
    const PrimSize inner{plane.dstSize.width - 2, plane.dstSize.height - 2};
    if (inner.width < 1 || inner.height < 1) return S_OK;
    const SharpenKernel kernel = MakeSharpenKernel(nSharpen);
    const std::ptrdiff_t innermost = std::ptrdiff_t{plane.dstPitch} + plane.nChannels; // of pixel (1, 1)
    return CallByChannels<ippiFilter_8u_C1R, ippiFilter_8u_C3R, ippiFilter_8u_C4R>(
        plane.nChannels, pUnfiltered + innermost, plane.dstPitch, plane.pDst + innermost, plane.dstPitch, inner,
        kernel.weights.data(), PrimSize{3, 3}, PrimPoint{1, 1}, kernel.divisor);
}

} // namespace

HRESULT ResizeMainPlane(const PlanePair& plane, const ResizeMethod& method) {
    if (method.nSharpen == 0) return Resize(plane, method);

    PlanePair unfiltered = plane;
    unfiltered.pDst = method.pUnfiltered;
    const HRESULT hr = Resize(unfiltered, method);
    if (hr != S_OK) return hr;
    const auto cbRow = static_cast<std::size_t>(plane.dstSize.width) * static_cast<std::size_t>(plane.nChannels);
    if (!CopyRows({plane.pDst, method.pUnfiltered, plane.dstPitch, plane.dstPitch}, plane.dstSize.height, cbRow))
        return E_UNEXPECTED;
    return Sharpen(plane, method.pUnfiltered, method.nSharpen);
}

HRESULT ResizeChromaPlane(const PlanePair& plane, const ResizeMethod& method) {
    const bool bNearest = Interpolation(method) == interpolationNearest;
    return ResizeByPrimitive(plane, method.xFactor, method.yFactor,
                             bNearest ? interpolationNearest : interpolationLinear);
}

} // namespace vellumcaster
