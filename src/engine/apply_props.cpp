#include "engine/overlay_engine.h"
#include "image/layer_planes.h"

namespace vellumcaster {

namespace {

constexpr DWORD AlphaByte(LONG color) { return AlphaOf(static_cast<DWORD>(color)); }

bool ColorsDiffer(const OVERLAY_PROPS& a, const OVERLAY_PROPS& b) {
    return a.lForeColor != b.lForeColor || a.lBackColor != b.lBackColor || a.lOutColor != b.lOutColor;
}

bool ColorAlphasDiffer(const OVERLAY_PROPS& a, const OVERLAY_PROPS& b) {
    return AlphaByte(a.lForeColor) != AlphaByte(b.lForeColor) || AlphaByte(a.lBackColor) != AlphaByte(b.lBackColor) ||
           AlphaByte(a.lOutColor) != AlphaByte(b.lOutColor);
}

bool DrawsItsString(ITEM_TYPE eType) { return eType == eText || eType == eDate || eType == eTime; }

} // namespace

HRESULT COverlayEngine::ApplyProps(OverlayItem& item, const OVERLAY_PROPS& props) {
    const OVERLAY_PROPS before = item.props;
    const bool bImage = item.eType == eImage;
    item.props = props;
    item.props.bsTextString = nullptr;
    item.SnapToSetPosition();

    if (props.nCounterCur != before.nCounterCur) {
        if (item.eType == eTime) m_Painter.UpdateTime(item, true);
        if (item.eType == eDate) m_Painter.UpdateDate(item, true);
    }
    if (!bImage && ColorsDiffer(props, before)) m_Painter.UpdateItemColors(item);
    if (props.sAlphaValue != before.sAlphaValue || (!bImage && ColorAlphasDiffer(props, before)))
        m_Painter.UpdateItemAlpha(item);
    const HRESULT hr = ApplyText(item, before, props.bsTextString);
    if (bImage && props.nColorKeyMin != before.nColorKeyMin && props.nColorKeyMax != before.nColorKeyMax)
        m_Painter.PrepareImage(item);
    m_bDirty = true;
    return hr;
}

HRESULT COverlayEngine::ApplyText(OverlayItem& item, const OVERLAY_PROPS& before, BSTR bsText) {
    const auto takeText = [&] { return bsText ? item.bsName.Assign(bsText) : S_OK; };
    if (!DrawsItsString(item.eType)) return takeText();

    const bool bTextChanged = bsText && item.bsName && CBstr::View(bsText) != item.bsName.View();
    if (!bTextChanged && item.props.dblOutlineWidth == before.dblOutlineWidth) return S_OK;

    const HRESULT hr = takeText();
    if (FAILED(hr)) return hr;
    if (item.eType == eDate) return m_Painter.UpdateDate(item, true);
    if (item.eType == eTime) return m_Painter.UpdateTime(item, true);
    return m_Painter.UpdateTextItem(item);
}

} // namespace vellumcaster
