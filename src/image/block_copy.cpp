#include "image/block_copy.h"

#include "image/block_pair.h"
#include "image/format_table.h"
#include "image/guarded_memory.h"
#include "image/primitives/ensure_primitives.h"

namespace vellumcaster::CPictureFormats {

HRESULT CopyBlock(const BYTE* pSrc, BYTE* pDst, const PictureFormat* a, const PictureFormat* b, const RECT* inA,
                  const RECT* inB) {
    if (!Img_EnsurePrimitives()) return E_UNEXPECTED;
    if (!pSrc || !pDst || !a || !b) return E_INVALIDARG;
    if (a->dwFormat != b->dwFormat) return E_NOTIMPL;
    BlockPair block;
    const HRESULT hr = LocateBlockPair(*a, *b, inA, inB, block);
    if (hr != S_OK) return hr;

    const auto copySlot = [&](std::size_t slot, std::size_t cbRow, LONG nRows) {
        const RowPair rows{pDst + block.b.starts[slot], pSrc + block.a.starts[slot], block.b.layout.strides[slot],
                           block.a.layout.strides[slot]};
        static_cast<void>(CopyRows(rows, nRows, cbRow));
    };
    const auto width = static_cast<std::size_t>(block.size.cx);
    if (!IsPlanarFormat(a->dwFormat)) {
        copySlot(0, width * BitsPerPixel(a->dwFormat) / 8, block.size.cy);
        return S_OK;
    }
    copySlot(0, width, block.size.cy);
    copySlot(1, width / 2, block.size.cy / 2);
    copySlot(2, width / 2, block.size.cy / 2);
    return S_OK;
}

} // namespace vellumcaster::CPictureFormats
