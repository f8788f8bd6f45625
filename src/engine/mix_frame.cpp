#include "engine/overlay_engine.h"

#include "engine/item_movement.h"
#include "engine/item_placement.h"
#include "engine/seh_on_frame_overlay.h"
#include "image/format_names.h"
#include "image/mix_block.h"
#include "image/plane_layout.h"
#include "platform/com/utf8.h"
#include "platform/kernel/trace.h"

namespace vellumcaster {

namespace {

[[maybe_unused]] std::string TraceText(const CBstr& bs) { return bs ? ToUtf8(bs.View()) : "NULL"; }

void TraceMixFailure(const OverlayItem& item, HRESULT hr) {
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                      "###Err###  CCoVellumcaster::Filter_SendSample - CPictureFormats::MixBlockAlpha('%s') "
                      "FAILED hr = 0x%08X\n",
                      TraceText(item.bsName), hr);
}

/// Lays the layers of a shown item over the frame.
void MixItem(const OverlayItem& item, const FrameBuffer& frame) {
    const RECT rcDest = PlaceItem(frame.desc.dwFormat, item.sizeItem, item.props.nPosX, item.props.nPosY);
    const PictureFormat descItem = OverlayFormat(frame.desc.dwFormat, item.sizeItem);
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath, "[MIX] %dx%d %s with %dx%d Pos:%d,%d\n",
                      frame.desc.nWidth, frame.desc.nHeight, CPictureFormats::NameFromFormat(frame.desc.dwFormat),
                      item.sizeItem.cx, item.sizeItem.cy, rcDest.left, rcDest.top);
    for (const auto member : mixingOrder) {
        const OverlayLayer& layer = item.*member;
        if (!layer.TakesPartInMixing()) continue;
        const HRESULT hr = CPictureFormats::MixBlockAlpha(layer.planeColor.Data(), layer.planeWeight.Data(),
                                                          frame.pData, &descItem, &frame.desc, nullptr, &rcDest);
        if (FAILED(hr)) TraceMixFailure(item, hr);
    }
}

} // namespace

HRESULT COverlayEngine::MixFrame(const FrameBuffer& frame, const SIZE& sizeStream, const FrameTimes& times) {
    if (!frame.pData || CPictureFormats::GetBufferSize(frame.desc) > frame.cb) return E_INVALIDARG;

    CAutoLock lock(m_csItems);
    for (LONG i = 0; i < m_Items.Count(); ++i) {
        CallBack(i, times);
        // The callback may have taken items off the list, this one among them.
        if (i >= m_Items.Count()) break;
        OverlayItem& item = m_Items.At(i);
        m_Painter.UpdateLiveItem(item, item.props.bShow != 0);
        if (!item.props.bShow) continue;
        MixItem(item, frame);
        MoveItem(item, sizeStream);
    }
    return S_OK;
}

void COverlayEngine::CallBack(LONG index, const FrameTimes& times) {
    // The callback may remove its own item or give it another callback.
    const CComPtr<IVellumcasterCallback> spCallback = m_Items.At(index).spCallback;
    if (!spCallback) return;
    const Cookie cookie = m_Items.Key(index);
    OVERLAY_PROPS props = m_Items.At(index).props;
    if (FAILED(m_Items.At(index).bsName.CopyTo(&props.bsTextString))) return;

    const HRESULT hr = SEH_OnFrameOverlay(spCallback.Get(), &props, times);
    const bool bStillInPlace = index < m_Items.Count() && m_Items.Key(index) == cookie;
    if (bStillInPlace && FAILED(hr)) {
        OverlayItem& item = m_Items.At(index);
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                          "WARNING !!! SEH_OnFrameOverlay() [Item:%s, Callback:%08X] FAILED hr = 0x%08X\n",
                          TraceText(item.bsName), spCallback.Get(), hr);
        if (item.spCallback == spCallback.Get()) item.spCallback.Reset();
    }
    if (bStillInPlace && hr == S_OK) SetItemProps(cookie, &props, 0);
    SysFreeString(props.bsTextString);
}

} // namespace vellumcaster
