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

/// Planes that were made in another format than the frame's may be too small for it.
bool HasPlanesOf(const OverlayLayer& layer, std::size_t cbPlane) {
    return layer.planeColor.Size() >= cbPlane && layer.planeWeight.Size() >= cbPlane;
}

/// Lays the layers of a shown item over the frame.
void MixItem(const OverlayItem& item, const FrameBuffer& frame) {
    const RECT rcDest = PlaceItem(frame.desc.dwFormat, item.sizeItem, item.props.nPosX, item.props.nPosY);
    const PictureFormat descItem = OverlayFormat(frame.desc.dwFormat, item.sizeItem);
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath, "[MIX] %dx%d %s with %dx%d Pos:%d,%d\n",
                      frame.desc.nWidth, frame.desc.nHeight, CPictureFormats::NameFromFormat(frame.desc.dwFormat),
                      item.sizeItem.cx, item.sizeItem.cy, rcDest.left, rcDest.top);
    const std::size_t cbPlane = CPictureFormats::GetBufferSize(descItem);
    for (const auto member : mixingOrder) {
        const OverlayLayer& layer = item.*member;
        if (!layer.TakesPartInMixing() || !HasPlanesOf(layer, cbPlane)) continue;
        const HRESULT hr = CPictureFormats::MixBlockAlpha(layer.planeColor.Data(), layer.planeWeight.Data(),
                                                          frame.pData, &descItem, &frame.desc, nullptr, &rcDest);
        if (FAILED(hr)) TraceMixFailure(item, hr);
    }
}

} // namespace

HRESULT COverlayEngine::MixFrame(const FrameBuffer& frame, const SIZE& sizeStream, const FrameTimes& times) {
    if (!frame.pData || CPictureFormats::GetBufferSize(frame.desc) > frame.cb) return E_INVALIDARG;
    RunItems(&frame, sizeStream, times);
    return S_OK;
}

void COverlayEngine::SkipFrame(const SIZE& sizeStream, const FrameTimes& times) {
    RunItems(nullptr, sizeStream, times);
}

void COverlayEngine::RunItems(const FrameBuffer* pFrame, const SIZE& sizeStream, const FrameTimes& times) {
    CAutoLock lock(m_csItems);
    for (LONG i = 0; i < m_Items.Count(); ++i) {
        CallBack(i, times);
        // The callback may have taken items off the list, this one among them.
        if (i >= m_Items.Count()) break;
        OverlayItem& item = m_Items.At(i);
        m_Painter.UpdateLiveItem(item, item.props.bShow != 0);
        if (!item.props.bShow) continue;
        if (pFrame) MixItem(item, *pFrame);
        MoveItem(item, sizeStream);
    }
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
    if (FAILED(hr)) GiveUp(spCallback.Get(), hr, index);
    if (bStillInPlace && hr == S_OK) SetItemProps(cookie, &props, 0);
    SysFreeString(props.bsTextString);
}

void COverlayEngine::GiveUp(IVellumcasterCallback* pCallback, HRESULT hr, LONG index) {
    const auto has = [&](LONG i) { return i < m_Items.Count() && m_Items.At(i).spCallback == pCallback; };
    // The callback may have moved its item before it failed.
    LONG i = has(index) ? index : 0;
    while (i < m_Items.Count() && !has(i))
        ++i;
    if (i == m_Items.Count()) return;
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                      "WARNING !!! SEH_OnFrameOverlay() [Item:%s, Callback:%08X] FAILED hr = 0x%08X\n",
                      TraceText(m_Items.At(i).bsName), pCallback, hr);
    m_Items.At(i).spCallback.Reset();
}

} // namespace vellumcaster
