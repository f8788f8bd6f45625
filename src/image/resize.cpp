#include "image/resize.h"

#include "image/blob_holder.h"
#include "image/block_copy.h"
#include "image/clip_rects.h"
#include "image/primitives/ensure_primitives.h"
#include "image/resize_stages.h"

namespace vellumcaster {

namespace {

/// Zero-filled; a large block takes pages only where it is written.
struct ZeroedMemory : HeapMemory {
    static void* Alloc(std::size_t cb) { return std::calloc(1, cb); }
};

bool IsPackedYuv(std::uint32_t dwFormat) {
    using namespace format_code;
    return dwFormat == YUY2 || dwFormat == YVYU || dwFormat == UYVY;
}

template <class Byte>
bool ResolveLayout(const PictureFormat& pf, Byte* pBuffer, ResizeSide<Byte>& side) {
    side = {};
    side.pBuffer = pBuffer;
    side.packedPitch = static_cast<std::int32_t>(pf.nStride * 2);
    side.size = {pf.nWidth, static_cast<std::int32_t>(RowCount(pf))};
    return CPictureFormats::GetPlaneLayout(&pf, side.layout.offsets.data(), side.layout.strides.data(),
                                           &side.layout.bBottomUp, true);
}

/// \return false for a rectangle that clipping has left without an inside.
template <class Byte>
bool ResolveBlock(const PictureFormat& pf, const RECT& rc, ResizeSide<Byte>& side) {
    side.block = {rc.left, CPictureFormats::FirstBufferRow(pf, side.layout.bBottomUp, rc), rc.right - rc.left,
                  rc.bottom - rc.top};
    return side.block.width > 0 && side.block.height > 0;
}

HRESULT LocateBlocks(const PictureFormat& pfSrc, const PictureFormat& pfDst, const RECT* prcSrc, const RECT* prcDst,
                     ResizeCall& call) {
    RECT rcSrc;
    RECT rcDst;
    const HRESULT hr = CPictureFormats::ClipRects(&pfSrc, &pfDst, &rcSrc, &rcDst, true, prcSrc, prcDst);
    if (hr != S_OK) return hr;
    const bool bSourceLeft = ResolveBlock(pfSrc, rcSrc, call.source);
    const bool bTargetLeft = ResolveBlock(pfDst, rcDst, call.target);
    if (!bSourceLeft || !bTargetLeft) return S_FALSE;
    call.method.xFactor = static_cast<double>(call.target.block.width) / call.source.block.width;
    call.method.yFactor = static_cast<double>(call.target.block.height) / call.source.block.height;
    return S_OK;
}

bool HaveEqualSizes(const PrimRect& a, const PrimRect& b) { return a.width == b.width && a.height == b.height; }

HRESULT ResizeByFormat(std::uint32_t dwFormat, const ResizeCall& call, BYTE* pWork) {
    switch (dwFormat) {
    case format_code::RGB24: return ResizePixels(call, 3);
    case format_code::RGB32:
    case format_code::ARGB32: return ResizePixels(call, 4);
    case format_code::YV12:
    case format_code::I420: return ResizePlanar(call);
    case format_code::YUY2:
    case format_code::YVYU: return ResizePacked(call, pWork, false);
    case format_code::UYVY: return ResizePacked(call, pWork, true);
    default: return S_OK;
    }
}

} // namespace

HRESULT Img_Resize(const void* pSrc, void* pDst, const PictureFormat* pfSrc, const PictureFormat* pfDst,
                   const RECT* prcSrc, const RECT* prcDst, std::int32_t nMode, void* pWork, std::int32_t nSharpen) {
    if (!Img_EnsurePrimitives()) return E_UNEXPECTED;
    if (!pfSrc || !pfDst || !pSrc || !pDst || pfSrc->dwFormat != pfDst->dwFormat) return E_INVALIDARG;
    const auto* pFrom = static_cast<const BYTE*>(pSrc);
    auto* pTo = static_cast<BYTE*>(pDst);
    ResizeCall call{};
    if (!ResolveLayout(*pfSrc, pFrom, call.source) || !ResolveLayout(*pfDst, pTo, call.target)) return E_INVALIDARG;
    if (call.source.layout.bBottomUp != call.target.layout.bBottomUp) return E_INVALIDARG;
    const HRESULT hr = LocateBlocks(*pfSrc, *pfDst, prcSrc, prcDst, call);
    if (hr != S_OK) return hr;
    if (HaveEqualSizes(call.source.block, call.target.block))
        return CPictureFormats::CopyBlock(pFrom, pTo, pfSrc, pfDst, prcSrc, prcDst);

    const std::size_t cbWork = CPictureFormats::GetScratchSize(*pfSrc, *pfDst);
    CBLOBHolder<ZeroedMemory> blobWork;
    auto* pWorkBytes = static_cast<BYTE*>(pWork);
    if (!pWorkBytes && (IsPackedYuv(pfSrc->dwFormat) || nMode == resizeSmoothRows || nSharpen != 0)) {
        const HRESULT hrWork = blobWork.Resize(cbWork);
        if (FAILED(hrWork)) return hrWork;
        pWorkBytes = blobWork.Data();
    }

    call.method.nMode = nMode;
    call.method.nSharpen = nSharpen;
    // Rows between two passes take at most half of the block, also at the pitch of 4 bytes that a pixel of 3 has.
    call.method.pRows = pWorkBytes;
    call.method.pUnfiltered = pWorkBytes ? pWorkBytes + cbWork / 2 : nullptr;
    return ResizeByFormat(pfSrc->dwFormat, call, pWorkBytes);
}

} // namespace vellumcaster
