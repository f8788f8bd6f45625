#include "image/convert.h"

#include "image/blob_holder.h"
#include "image/block_pair.h"
#include "image/convert_routes.h"
#include "image/format_table.h"
#include "image/primitives/ensure_primitives.h"
#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"

namespace vellumcaster {

namespace {

using CPictureFormats::BlockPair;
using CPictureFormats::BlockPlace;

/// A block that begins in the middle of a group of 2 x 2 pixels takes the chroma of that group.
void SettleChroma(const PictureFormat& pf, BlockPlace& place) {
    if (!CPictureFormats::IsPlanarFormat(pf.dwFormat)) return;
    for (const std::size_t slot : {1u, 2u})
        place.starts[slot] = place.layout.offsets[slot] +
                             std::size_t{place.layout.strides[slot]} * static_cast<std::size_t>(place.y / 2) +
                             static_cast<std::size_t>(place.x / 2);
}

ConvertSide ToSide(BYTE* pBuffer, const BlockPlace& place) {
    ConvertSide side;
    for (std::size_t slot = 0; slot < 3; ++slot) {
        side.starts[slot] = pBuffer + place.starts[slot];
        side.pitches[slot] = static_cast<std::int32_t>(place.layout.strides[slot]);
    }
    return side;
}

/// Turns the rows of an RGB block upside down where it stands.
PrimStatus MirrorInPlace(std::uint32_t dwFormat, const ConvertSide& side, PrimSize size) {
    BYTE* pBlock = side.starts[0];
    switch (CPictureFormats::BitsPerPixel(dwFormat)) {
    case 32: return ippiMirror_8u_C4IR(pBlock, side.pitches[0], size, flipRows);
    case 24: return ippiMirror_8u_C3IR(pBlock, side.pitches[0], size, flipRows);
    default: return ippiMirror_16u_C1IR(reinterpret_cast<std::uint16_t*>(pBlock), side.pitches[0], size, flipRows);
    }
}

/// The same into a buffer with the block's pitch.
PrimStatus MirrorTo(BYTE* pDst, std::uint32_t dwFormat, const ConvertSide& side, PrimSize size) {
    const BYTE* pBlock = side.starts[0];
    const std::int32_t pitch = side.pitches[0];
    switch (CPictureFormats::BitsPerPixel(dwFormat)) {
    case 32: return ippiMirror_8u_C4R(pBlock, pitch, pDst, pitch, size, flipRows);
    case 24: return ippiMirror_8u_C3R(pBlock, pitch, pDst, pitch, size, flipRows);
    default:
        return ippiMirror_16u_C1R(reinterpret_cast<const std::uint16_t*>(pBlock), pitch,
                                  reinterpret_cast<std::uint16_t*>(pDst), pitch, size, flipRows);
    }
}

/// Rows at the source's pitch: those that are kept while they are turned upside down, and those of the route. A
/// caller's own work memory has room for both.
std::size_t WorkBytes(const ConvertRoute& route, const ConvertCall& call, bool bMirrorSource) {
    const std::size_t nBlocks = (bMirrorSource && call.bKeepSource) + WantsWorkMemory(route, call.bKeepSource);
    return nBlocks * static_cast<std::size_t>(call.source.pitches[0]) * static_cast<std::size_t>(call.size.height);
}

/// Turns the source's rows upside down, in place or into the work memory, whose rest is then left to the route.
PrimStatus MirrorSource(std::uint32_t dwFormat, ConvertCall& call) {
    if (!call.bKeepSource) return MirrorInPlace(dwFormat, call.source, call.size);
    const PrimStatus status = MirrorTo(call.pWork, dwFormat, call.source, call.size);
    call.source.starts[0] = call.pWork;
    call.pWork += std::ptrdiff_t{call.source.pitches[0]} * call.size.height;
    return status;
}

} // namespace

bool NeedsWorkBuffer(bool bKeepSource, std::uint32_t dwSource, std::uint32_t dwTarget) {
    const ConvertRoute* pRoute = FindRoute(dwSource, dwTarget);
    return pRoute && WantsWorkMemory(*pRoute, bKeepSource);
}

HRESULT Img_Convert(void* pSrc, void* pDst, const PictureFormat* pfSrc, const PictureFormat* pfDst, const RECT* prcSrc,
                    const RECT* prcDst, BYTE bKeepSource, void* pWork) {
    if (!Img_EnsurePrimitives()) return E_UNEXPECTED;
    if (!pfSrc || !pfDst || !pSrc || !pDst) return E_INVALIDARG;
    BlockPair block;
    const HRESULT hr = CPictureFormats::LocateBlockPair(*pfSrc, *pfDst, prcSrc, prcDst, block);
    if (hr != S_OK) return hr;
    const ConvertRoute* pRoute = FindRoute(pfSrc->dwFormat, pfDst->dwFormat);
    if (!pRoute) return S_OK;

    SettleChroma(*pfSrc, block.a);
    SettleChroma(*pfDst, block.b);
    // Where both run upward the rows go over in memory order and the picture stays upright.
    const bool bOrdersDiffer = block.a.layout.bBottomUp != block.b.layout.bBottomUp;
    const bool bMirrorSource = bOrdersDiffer && block.a.layout.bBottomUp;
    const bool bMirrorTarget = bOrdersDiffer && block.b.layout.bBottomUp;

    ConvertCall call{ToSide(static_cast<BYTE*>(pSrc), block.a),
                     ToSide(static_cast<BYTE*>(pDst), block.b),
                     {block.size.cx, block.size.cy},
                     static_cast<BYTE*>(pWork),
                     bKeepSource != 0};
    CHeapBlob blobWork;
    if (const std::size_t cbWork = WorkBytes(*pRoute, call, bMirrorSource); !pWork && cbWork != 0) {
        if (FAILED(blobWork.Resize(cbWork))) return E_OUTOFMEMORY;
        call.pWork = blobWork.Data();
    }
    if (bMirrorSource && MirrorSource(pfSrc->dwFormat, call) != prim_status::ok) return E_FAIL;
    PrimStatus status = GoRoute(*pRoute, call);
    if (status == prim_status::ok && bMirrorTarget) status = MirrorInPlace(pfDst->dwFormat, call.target, call.size);
    return ResultFromStatus(status);
}

} // namespace vellumcaster
