#include "image/mix_block.h"

#include "image/block_pair.h"
#include "image/format_table.h"
#include "image/mix_kernel.h"
#include "image/primitives/ensure_primitives.h"
#include "platform/kernel/fault_guard.h"
#include "platform/kernel/trace.h"

namespace vellumcaster {

namespace {

void TraceMixFault(const BYTE* pDst, const BYTE* pSrc, std::size_t cb, FaultCode fault) {
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::CaughtFault,
                      "###Err### SEH_MixMemory( pDst=0x%X, pSrc=0x%X, cb=0x%X ): Exception 0x%X\n", pDst, pSrc, cb,
                      fault);
}

} // namespace

bool SEH_MixMemory(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight, std::size_t cb) {
    const FaultCode fault = CallGuarded([=] { MixMemory(pDst, pSrc, pWeight, cb); });
    if (fault != faultNone) TraceMixFault(pDst, pSrc, cb, fault);
    return fault == faultNone;
}

void MixRows(const BYTE* pColor, const BYTE* pWeight, BYTE* pFrame, const SIZE* size, std::size_t bytesPerPixel,
             std::ptrdiff_t overlayPitch, std::ptrdiff_t framePitch) {
    const std::size_t cbRow = static_cast<std::size_t>(size->cx) * bytesPerPixel;
    const LONG nRows = size->cy;
    RunStepsGuarded(
        nRows,
        [=](LONG y) {
            const bool bLast = y + 1 == nRows;
            MixRow(pFrame + y * framePitch, pColor + y * overlayPitch, pWeight + y * overlayPitch, cbRow,
                   bLast ? 0 : framePitch, bLast ? 0 : overlayPitch);
        },
        [=](LONG y, FaultCode fault) {
            TraceMixFault(pFrame + y * framePitch, pColor + y * overlayPitch, cbRow, fault);
        });
}

HRESULT CPictureFormats::MixBlockAlpha(const BYTE* pColor, const BYTE* pWeight, BYTE* pFrame,
                                       const PictureFormat* pfOverlay, const PictureFormat* pfFrame,
                                       const RECT* prcOverlay, const RECT* prcFrame) {
    if (!Img_EnsurePrimitives()) return E_UNEXPECTED;
    if (!pColor || !pWeight || !pFrame || !pfOverlay || !pfFrame) return E_INVALIDARG;
    if (pfOverlay->dwFormat != pfFrame->dwFormat) return E_NOTIMPL;
    BlockPair block;
    const HRESULT hr = LocateBlockPair(*pfOverlay, *pfFrame, prcOverlay, prcFrame, block);
    if (hr != S_OK) return hr;

    const bool bFrameRunsUpward = block.a.layout.bBottomUp != block.b.layout.bBottomUp;
    const auto mixSlot = [&](std::size_t slot, const SIZE& size, std::size_t bytesPerPixel) {
        const std::size_t overlayStart = block.a.starts[slot];
        std::ptrdiff_t framePitch = block.b.layout.strides[slot];
        BYTE* pFirstRow = pFrame + block.b.starts[slot];
        if (bFrameRunsUpward) {
            pFirstRow += framePitch * (size.cy - 1);
            framePitch = -framePitch;
        }
        MixRows(pColor + overlayStart, pWeight + overlayStart, pFirstRow, &size, bytesPerPixel,
                block.a.layout.strides[slot], framePitch);
    };

    if (!IsPlanarFormat(pfFrame->dwFormat)) {
        mixSlot(0, block.size, BitsPerPixel(pfFrame->dwFormat) / 8);
        return S_OK;
    }
    const SIZE chroma{block.size.cx / 2, block.size.cy / 2};
    mixSlot(0, block.size, 1);
    mixSlot(1, chroma, 1);
    mixSlot(2, chroma, 1);
    return S_OK;
}

} // namespace vellumcaster
