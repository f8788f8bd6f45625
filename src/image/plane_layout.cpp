#include "image/plane_layout.h"

#include "image/format_table.h"

#include <algorithm>
#include <limits>

namespace vellumcaster::CPictureFormats {

namespace {

constexpr std::uint32_t PackedPitch(std::uint32_t stride, std::uint32_t bits) { return (stride * bits / 8 + 3) & ~3u; }

bool IsWithinSizeLimits(const PictureFormat& pf, std::uint32_t bits) {
    if (pf.nWidth < 0 || pf.nWidth > nLargestSide || RowCount(pf) > nLargestSide) return false;
    const std::int64_t cbRow = (std::int64_t{EffectiveStride(pf)} * bits + 7) / 8 + 3;
    return cbRow * std::max<std::int64_t>(RowCount(pf), 1) <= cbLargestPicture;
}

bool IsOdd(std::int64_t n) { return n % 2 != 0; }

} // namespace

bool GetFormatInfo(const PictureFormat* pf, bool* pbYuv, bool* pbPlanar, std::uint32_t* pnBits) {
    if (pf->nStride != 0 && std::int64_t{pf->nStride} < pf->nWidth) return false;

    bool bYuv = false;
    switch (pf->dwFormat) {
    case format_code::ARGB32:
    case format_code::RGB32:
    case format_code::RGB24:
    case format_code::RGB565:
    case format_code::RGB555: break;
    case format_code::YUY2:
    case format_code::YVYU:
    case format_code::UYVY:
        if (IsOdd(pf->nWidth) || IsOdd(pf->nStride)) return false;
        bYuv = true;
        break;
    case format_code::YV12:
    case format_code::I420:
        if (IsOdd(pf->nWidth) || IsOdd(pf->nHeight) || IsOdd(pf->nStride)) return false;
        bYuv = true;
        break;
    default: return false;
    }

    const std::uint32_t bits = BitsPerPixel(pf->dwFormat);
    if (!IsWithinSizeLimits(*pf, bits)) return false;
    if (pbYuv) *pbYuv = bYuv;
    if (pbPlanar) *pbPlanar = IsPlanarFormat(pf->dwFormat);
    if (pnBits) *pnBits = bits;
    return true;
}

bool GetPlaneLayout(const PictureFormat* pf, std::uint32_t offsets[3], std::uint32_t strides[3], bool* pbBottomUp,
                    bool bForcePlanar) {
    bool bYuv = false;
    bool bPlanar = false;
    std::uint32_t bits = 0;
    if (!GetFormatInfo(pf, &bYuv, &bPlanar, &bits)) return false;

    const std::uint32_t stride = EffectiveStride(*pf);
    offsets[0] = 0;
    if (!bPlanar && !(bYuv && bForcePlanar)) {
        strides[0] = PackedPitch(stride, bits);
        if (pbBottomUp && !bYuv && pf->nHeight > 0) *pbBottomUp = true;
        return true;
    }

    const std::uint32_t cbFirst = stride * static_cast<std::uint32_t>(RowCount(*pf));
    const std::uint32_t cbChroma = bPlanar ? cbFirst / 4 : cbFirst / 2;
    const bool bSlot2First = pf->dwFormat == format_code::I420 || pf->dwFormat == format_code::YVYU;
    offsets[1] = bSlot2First ? cbFirst + cbChroma : cbFirst;
    offsets[2] = bSlot2First ? cbFirst : cbFirst + cbChroma;
    strides[0] = stride;
    strides[1] = strides[2] = stride / 2;
    return true;
}

bool GetPlaneLayout(const PictureFormat& pf, PlaneLayout& layout) {
    layout = {};
    return GetPlaneLayout(&pf, layout.offsets.data(), layout.strides.data(), &layout.bBottomUp, false);
}

bool GetPixelOffset(const PictureFormat* pf, int x, int y, std::uint32_t offsets[3], bool bForcePlanar) {
    bool bYuv = false;
    bool bPlanar = false;
    std::uint32_t bits = 0;
    if (!GetFormatInfo(pf, &bYuv, &bPlanar, &bits)) return false;

    const std::int64_t stride = EffectiveStride(*pf);
    const std::int64_t row = y * stride;
    std::int64_t slot0 = row + x;
    std::int64_t chroma = 0;
    if (bPlanar)
        chroma = (row >> 2) + (x >> 1);
    else if (bYuv && bForcePlanar)
        chroma = (row + x) / 2;
    else
        slot0 = std::int64_t{PackedPitch(EffectiveStride(*pf), bits)} * y + std::int64_t{x} * bits / 8;
    offsets[0] = static_cast<std::uint32_t>(slot0);
    offsets[1] = offsets[2] = static_cast<std::uint32_t>(chroma);
    return true;
}

int FirstBufferRow(const PictureFormat& pf, bool bBottomUp, const RECT& rc) {
    return bBottomUp ? pf.nHeight - rc.bottom : rc.top;
}

std::size_t GetBufferSize(const PictureFormat& pf) {
    PlaneLayout layout;
    if (!GetPlaneLayout(pf, layout)) return 0;
    const auto nRows = static_cast<std::size_t>(RowCount(pf));
    std::size_t cb = nRows * layout.strides[0];
    if (IsPlanarFormat(pf.dwFormat)) cb += 2 * (nRows / 2) * layout.strides[1];
    return cb;
}

std::size_t GetScratchSize(const PictureFormat& a, const PictureFormat& b) {
    const auto widest =
        std::max({std::int64_t{a.nWidth}, std::int64_t{a.nStride}, std::int64_t{b.nWidth}, std::int64_t{b.nStride}});
    const std::int64_t nRows = std::max(RowCount(a), RowCount(b));
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max() / 16;
    if (nRows != 0 && widest > most / nRows) return static_cast<std::size_t>(most) * 16;
    return static_cast<std::size_t>(widest * nRows * 16);
}

} // namespace vellumcaster::CPictureFormats
