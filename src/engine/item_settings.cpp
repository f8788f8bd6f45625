#include "engine/overlay_engine.h"

#include <algorithm>

namespace vellumcaster {

namespace {

template <class Value>
void WriteWhereWanted(Value* pValue, Value value) {
    if (pValue) *pValue = value;
}

} // namespace

HRESULT COverlayEngine::ShowItem2(Cookie nCookie, BOOL bShow) {
    return WithItem(nCookie, [this, bShow](OverlayItem& item) {
        item.props.bShow = bShow;
        m_bDirty = true;
        return S_OK;
    });
}

HRESULT COverlayEngine::IsItemShow2(Cookie nCookie, BOOL* pbShow) {
    return WithItem(nCookie, [pbShow](const OverlayItem& item) {
        WriteWhereWanted(pbShow, item.props.bShow);
        return item.props.bShow ? S_OK : S_FALSE;
    });
}

HRESULT COverlayEngine::SwitchItems2(Cookie nCookieHide, Cookie nCookieShow) {
    return WithItem(nCookieHide, [this, nCookieShow](OverlayItem& hidden) {
        OverlayItem* pShown = m_Items.Lookup(nCookieShow);
        if (!pShown) return E_INVALIDARG;
        hidden.props.bShow = 0;
        pShown->props.bShow = 1;
        m_bDirty = true;
        return S_OK;
    });
}

HRESULT COverlayEngine::SetItemPos2(Cookie nCookie, LONG nPosX, LONG nPosY) {
    return WithItem(nCookie, [=, this](OverlayItem& item) {
        item.props.nPosX = nPosX;
        item.props.nPosY = nPosY;
        item.SnapToSetPosition();
        m_bDirty = true;
        return S_OK;
    });
}

HRESULT COverlayEngine::GetItemPos2(Cookie nCookie, LONG* pnPosX, LONG* pnPosY) {
    return WithItem(nCookie, [=](const OverlayItem& item) {
        WriteWhereWanted(pnPosX, item.props.nPosX);
        WriteWhereWanted(pnPosY, item.props.nPosY);
        return S_OK;
    });
}

HRESULT COverlayEngine::SetItemMovement(Cookie nCookie, double dblXDelta, double dblYDelta, BOOL bNoOffscreen) {
    return WithItem(nCookie, [=, this](OverlayItem& item) {
        item.props.dblXDelta = dblXDelta;
        item.props.dblYDelta = dblYDelta;
        item.props.bNoOffscreen = bNoOffscreen;
        m_bDirty = true;
        return S_OK;
    });
}

HRESULT COverlayEngine::GetItemMovement(Cookie nCookie, double* pdblXDelta, double* pdblYDelta, BOOL* pbNoOffscreen) {
    return WithItem(nCookie, [=](const OverlayItem& item) {
        WriteWhereWanted(pdblXDelta, item.props.dblXDelta);
        WriteWhereWanted(pdblYDelta, item.props.dblYDelta);
        WriteWhereWanted(pbNoOffscreen, item.props.bNoOffscreen);
        return S_OK;
    });
}

HRESULT COverlayEngine::SetItemCounter(Cookie nCookie, LONG nCounter) {
    return WithItem(nCookie, [this, nCounter](OverlayItem& item) {
        item.props.nCounterCur = nCounter;
        if (item.eType == eTime) m_Painter.UpdateTime(item, true);
        if (item.eType == eDate) m_Painter.UpdateDate(item, true);
        return S_OK;
    });
}

HRESULT COverlayEngine::GetItemCounter(Cookie nCookie, LONG* pnCounter) {
    if (!pnCounter) return E_POINTER;
    return WithItem(nCookie, [pnCounter](const OverlayItem& item) {
        *pnCounter = item.props.nCounterCur;
        return S_OK;
    });
}

HRESULT COverlayEngine::SetItemAlpha2(Cookie nCookie, std::int16_t sAlpha) {
    const std::int16_t sClamped = std::clamp<std::int16_t>(sAlpha, 0, 255);
    return WithItem(nCookie, [this, sClamped](OverlayItem& item) {
        if (item.props.sAlphaValue == sClamped) return S_FALSE;
        item.props.sAlphaValue = sClamped;
        m_bDirty = true;
        return m_Painter.UpdateItemAlpha(item);
    });
}

HRESULT COverlayEngine::GetItemAlpha2(Cookie nCookie, std::int16_t* psAlpha) {
    if (!psAlpha) return E_POINTER;
    return WithItem(nCookie, [psAlpha](const OverlayItem& item) {
        *psAlpha = item.props.sAlphaValue;
        return S_OK;
    });
}

} // namespace vellumcaster
