#include "image/block_pair.h"

#include "image/clip_rects.h"

namespace vellumcaster::CPictureFormats {

namespace {

bool FindStarts(const PictureFormat& pf, const RECT& rc, BlockPlace& place) {
    std::array<std::uint32_t, 3> pixel{};
    const int y = FirstBufferRow(pf, place.layout.bBottomUp, rc);
    if (!GetPixelOffset(&pf, rc.left, y, pixel.data(), false)) return false;
    for (std::size_t slot = 0; slot < pixel.size(); ++slot)
        place.starts[slot] = std::size_t{place.layout.offsets[slot]} + pixel[slot];
    return true;
}

} // namespace

HRESULT LocateBlockPair(const PictureFormat& a, const PictureFormat& b, const RECT* inA, const RECT* inB,
                        BlockPair& block) {
    if (a.dwFormat != b.dwFormat) return E_NOTIMPL;
    if (!GetPlaneLayout(a, block.a.layout) || !GetPlaneLayout(b, block.b.layout)) return E_INVALIDARG;

    RECT rcA;
    RECT rcB;
    const HRESULT hr = ClipRects(&a, &b, &rcA, &rcB, false, inA, inB);
    if (hr != S_OK) return hr;
    if (!FindStarts(a, rcA, block.a) || !FindStarts(b, rcB, block.b)) return E_FAIL;
    block.size = {rcA.right - rcA.left, rcA.bottom - rcA.top};
    return S_OK;
}

} // namespace vellumcaster::CPictureFormats
