#include "image/copy_frame.h"

#include "image/format_table.h"
#include "image/guarded_memory.h"
#include "image/plane_layout.h"

#include <algorithm>

namespace vellumcaster {

namespace {

struct FrameSize {
    std::ptrdiff_t width;
    std::ptrdiff_t height;
};

/// What both pictures have.
FrameSize CommonSize(const PictureFormat& a, const PictureFormat& b) {
    return {std::max(std::min(a.nWidth, b.nWidth), 0), std::min(RowCount(a), RowCount(b))};
}

bool CopyPlanes(const PictureFormat& src, const PictureFormat& dst, const BYTE* pSrc, BYTE* pDst) {
    const auto copyPlane = [&](std::ptrdiff_t divisor) {
        const FrameSize size = CommonSize(src, dst);
        const std::ptrdiff_t srcPitch = EffectiveStride(src) / divisor;
        const std::ptrdiff_t dstPitch = EffectiveStride(dst) / divisor;
        const RowPair rows{pDst, pSrc, dstPitch, srcPitch};
        const bool bCopied = CopyRows(rows, size.height / divisor, static_cast<std::size_t>(size.width / divisor));
        pSrc += RowCount(src) / divisor * srcPitch;
        pDst += RowCount(dst) / divisor * dstPitch;
        return bCopied;
    };
    return copyPlane(1) && copyPlane(2) && copyPlane(2);
}

/// Where the picture's top row lies, and the way from there to the next row.
struct TopRow {
    std::ptrdiff_t offset;
    std::ptrdiff_t pitch;
};

TopRow FindTopRow(const PictureFormat& pf, std::ptrdiff_t bits) {
    const std::ptrdiff_t pitch = std::ptrdiff_t{EffectiveStride(pf)} * bits / 8;
    const bool bBottomUp = CPictureFormats::IsRgbFormat(pf.dwFormat) && pf.nHeight > 0;
    return bBottomUp ? TopRow{(pf.nHeight - 1) * pitch, -pitch} : TopRow{0, pitch};
}

bool CopySinglePlane(const PictureFormat& src, const PictureFormat& dst, const BYTE* pSrc, BYTE* pDst) {
    const std::ptrdiff_t bits = CPictureFormats::BitsPerPixel(src.dwFormat);
    const FrameSize size = CommonSize(src, dst);
    const TopRow srcTop = FindTopRow(src, bits);
    const TopRow dstTop = FindTopRow(dst, bits);
    const RowPair rows{pDst + dstTop.offset, pSrc + srcTop.offset, dstTop.pitch, srcTop.pitch};
    return CopyRows(rows, size.height, static_cast<std::size_t>(size.width * bits / 8));
}

/// Bytes of both pictures where they lie in memory alike and have nothing between their rows, else 0.
std::size_t FindOneBlock(const PictureFormat& src, const PictureFormat& dst) {
    const bool bAlike = src.nWidth == dst.nWidth && src.nHeight == dst.nHeight;
    const bool bNoGaps = EffectiveStride(src) == static_cast<std::uint32_t>(src.nWidth) &&
                         EffectiveStride(dst) == static_cast<std::uint32_t>(dst.nWidth);
    return bAlike && bNoGaps ? CPictureFormats::GetBufferSize(src) : 0;
}

} // namespace

HRESULT CopyFrame(const PictureFormat* pDescSrc, const PictureFormat* pDescDst, const BYTE* pSrc, BYTE* pDst) {
    if (!pDescSrc || !pDescDst || !pSrc || !pDst) return E_INVALIDARG;
    if (pDescSrc->dwFormat != pDescDst->dwFormat) return E_FRAME_FORMATS_DIFFER;
    const std::size_t cbBlock = FindOneBlock(*pDescSrc, *pDescDst);
    if (cbBlock != 0 && SEH_CopyMemory(pDst, pSrc, cbBlock)) return S_OK;
    // A block that faulted is copied as far as its rows can be reached.
    const auto copy = CPictureFormats::IsPlanarFormat(pDescSrc->dwFormat) ? CopyPlanes : CopySinglePlane;
    return copy(*pDescSrc, *pDescDst, pSrc, pDst) ? S_OK : E_UNEXPECTED;
}

} // namespace vellumcaster
