#include "image/block_fill.h"

#include "image/color_to_pixel.h"
#include "image/format_table.h"
#include "image/plane_layout.h"
#include "image/primitives/ensure_primitives.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <span>

namespace vellumcaster::CPictureFormats {

namespace {

constexpr LONG EvenDown(LONG n) { return n & ~1; }
constexpr LONG EvenUp(LONG n) { return EvenDown(std::min(n, std::numeric_limits<LONG>::max() - 1) + 1); }

RECT DrawIn(const RECT& rc, const PictureFormat& pf) {
    return {std::max(EvenUp(rc.left), 0), std::max(EvenUp(rc.top), 0), std::min(EvenDown(rc.right), pf.nWidth),
            std::min(EvenDown(rc.bottom), static_cast<LONG>(RowCount(pf)))};
}

/// Repeats a pixel over a row. The run already written is doubled, which copies at the speed of memory whatever
/// the pixel's size.
void FillRow(BYTE* pRow, std::span<const BYTE> pixel, std::size_t nPixels) {
    const std::size_t cbRow = pixel.size() * nPixels;
    std::memcpy(pRow, pixel.data(), pixel.size());
    for (std::size_t cbDone = pixel.size(); cbDone < cbRow; cbDone *= 2)
        std::memcpy(pRow + cbDone, pRow, std::min(cbDone, cbRow - cbDone));
}

void FillPlane(BYTE* pFirst, std::size_t pitch, BYTE value, std::size_t cbRow, std::size_t nRows) {
    for (std::size_t y = 0; y < nRows; ++y)
        std::memset(pFirst + y * pitch, value, cbRow);
}

} // namespace

HRESULT FillBlock(BYTE* pDst, const PictureFormat* pf, std::uint32_t color, const RECT* prc) {
    if (!Img_EnsurePrimitives()) return E_UNEXPECTED;
    if (!pDst || !pf) return E_INVALIDARG;
    PlaneLayout layout;
    if (!GetPlaneLayout(*pf, layout)) return E_INVALIDARG;
    const RECT whole{0, 0, pf->nWidth, static_cast<LONG>(RowCount(*pf))};
    const RECT& given = prc ? *prc : whole;
    if (given.left > given.right || given.top > given.bottom) return E_INVALIDARG;

    const RECT rc = DrawIn(given, *pf);
    if (rc.left >= rc.right || rc.top >= rc.bottom) return S_FALSE;

    std::array<std::uint32_t, 3> offsets{};
    if (!GetPixelOffset(pf, rc.left, FirstBufferRow(*pf, layout.bBottomUp, rc), offsets.data(), false)) return E_FAIL;
    std::array<BYTE, 4> pixel{};
    std::uint32_t cbPixel = 0;
    if (!ColorToPixel(pf->dwFormat, color, pixel, &cbPixel)) return E_UNEXPECTED;

    const auto width = static_cast<std::size_t>(rc.right - rc.left);
    const auto height = static_cast<std::size_t>(rc.bottom - rc.top);
    const auto plane = [&](std::size_t slot) { return pDst + layout.offsets[slot] + offsets[slot]; };
    if (IsPlanarFormat(pf->dwFormat)) {
        const auto [y, u, v, unused] = pixel;
        FillPlane(plane(0), layout.strides[0], y, width, height);
        FillPlane(plane(1), layout.strides[1], v, width / 2, height / 2);
        FillPlane(plane(2), layout.strides[2], u, width / 2, height / 2);
        return S_OK;
    }

    const std::size_t cbRow = width * BitsPerPixel(pf->dwFormat) / 8;
    for (std::size_t y = 0; y < height; ++y)
        FillRow(plane(0) + y * layout.strides[0], {pixel.data(), cbPixel}, cbRow / cbPixel);
    return S_OK;
}

} // namespace vellumcaster::CPictureFormats
