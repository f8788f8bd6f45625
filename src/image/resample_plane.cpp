#include "image/resample_plane.h"

#include "image/guarded_memory.h"
#include "image/resample_tables.h"

#include <algorithm>

namespace vellumcaster {

namespace {

/// A size that is not given is that of the other side.
void FillIn(std::int32_t& a, std::int32_t& b) {
    if (a == 0) a = b;
    if (b == 0) b = a;
}

} // namespace

// NOLINTNEXTLINE(readability-function-size) two planes with their sizes and pitches
HRESULT ResamplePlane(const BYTE* pSrc, BYTE* pDst, std::int32_t srcWidth, std::int32_t srcHeight,
                      std::int32_t dstWidth, std::int32_t dstHeight, std::int32_t srcPitch, std::int32_t dstPitch,
                      const ResampleParams* pParams, BYTE* pWork) {
    if (!pSrc || !pDst || !pParams) return E_POINTER;
    FillIn(srcWidth, dstWidth);
    FillIn(srcHeight, dstHeight);
    srcPitch = std::max(srcPitch, srcWidth);
    dstPitch = std::max(dstPitch, dstWidth);
    if (std::min({srcWidth, srcHeight, dstWidth, dstHeight}) < 1) return E_INVALIDARG;

    const bool bVertical = srcHeight != dstHeight;
    const bool bHorizontal = srcWidth != dstWidth;
    VerticalTable vertical;
    HorizontalTable horizontal;
    HRESULT hr = bVertical ? vertical.Build(srcHeight, dstHeight, *pParams) : S_OK;
    if (FAILED(hr)) return hr;
    hr = bHorizontal ? horizontal.Build(srcWidth, dstWidth, *pParams) : S_OK;
    if (FAILED(hr)) return hr;

    CHeapBlob blobWork;
    if (bVertical && bHorizontal && !pWork) {
        hr = blobWork.Resize(static_cast<std::size_t>(srcPitch) * static_cast<std::size_t>(dstHeight) * 2);
        if (FAILED(hr)) return hr;
        pWork = blobWork.Data();
    }

    const auto cbRow = static_cast<std::size_t>(srcWidth);
    if (bVertical && bHorizontal)
        vertical.Apply(pSrc, pWork, cbRow, srcPitch, srcPitch);
    else if (bVertical)
        vertical.Apply(pSrc, pDst, cbRow, srcPitch, dstPitch);
    if (bHorizontal) horizontal.Apply(bVertical ? pWork : pSrc, pDst, dstHeight, srcPitch, dstPitch);
    if (bVertical || bHorizontal) return S_OK;
    return CopyRows({pDst, pSrc, dstPitch, srcPitch}, srcHeight, cbRow) ? S_OK : E_UNEXPECTED;
}

} // namespace vellumcaster
