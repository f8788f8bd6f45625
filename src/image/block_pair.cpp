#include "image/block_pair.h"

#include "image/clip_rects.h"

namespace vellumcaster::CPictureFormats {

namespace {

bool Place(const PictureFormat& pf, const RECT& rc, BlockPlace& place) {
    std::array<std::uint32_t, 3> pixel{};
    place.x = rc.left;
    place.y = FirstBufferRow(pf, place.layout.bBottomUp, rc);
    if (!GetPixelOffset(&pf, place.x, place.y, pixel.data(), false)) return false;
    for (std::size_t slot = 0; slot < pixel.size(); ++slot)
        place.starts[slot] = std::size_t{place.layout.offsets[slot]} + pixel[slot];
    return true;
}

} // namespace

HRESULT LocateBlockPair(const PictureFormat& a, const PictureFormat& b, const RECT* inA, const RECT* inB,
                        BlockPair& block) {
    if (!GetPlaneLayout(a, block.a.layout) || !GetPlaneLayout(b, block.b.layout)) return E_INVALIDARG;

    RECT rcA;
    RECT rcB;
    const HRESULT hr = ClipRects(&a, &b, &rcA, &rcB, false, inA, inB);
    if (hr != S_OK) return hr;
    block.size = {rcA.right - rcA.left, rcA.bottom - rcA.top};
    if (block.size.cx < 1 || block.size.cy < 1) return S_FALSE; // a rectangle that only touches the picture
    return Place(a, rcA, block.a) && Place(b, rcB, block.b) ? S_OK : E_FAIL;
}

} // namespace vellumcaster::CPictureFormats
