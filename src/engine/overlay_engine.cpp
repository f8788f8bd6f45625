#include "engine/overlay_engine.h"

namespace vellumcaster {

template <class Operation>
HRESULT COverlayEngine::WithItem(Cookie nCookie, const Operation& operation) {
    CAutoLock lock(m_csItems);
    OverlayItem* pItem = m_Items.Lookup(nCookie);
    return pItem ? operation(*pItem) : E_INVALIDARG;
}

HRESULT COverlayEngine::AddItem(const OverlayItem& item, Cookie* pnCookie) {
    CAutoLock lock(m_csItems);
    const Cookie cookie = m_Items.ChooseCookie(item);
    const HRESULT hr = m_Items.Add(cookie, item);
    if (FAILED(hr)) return hr;
    if (pnCookie) *pnCookie = cookie;
    m_bDirty = true;
    return S_OK;
}

HRESULT COverlayEngine::RemoveItem2(Cookie nCookie) {
    CAutoLock lock(m_csItems);
    if (!m_Items.Remove(nCookie)) return E_INVALIDARG;
    m_bDirty = true;
    return S_OK;
}

HRESULT COverlayEngine::RemoveAllItems() {
    CAutoLock lock(m_csItems);
    m_Items.RemoveAll();
    return S_OK;
}

HRESULT COverlayEngine::GetItemCount2(LONG* pnCount) {
    if (!pnCount) return E_POINTER;
    CAutoLock lock(m_csItems);
    *pnCount = m_Items.Count();
    return S_OK;
}

HRESULT COverlayEngine::GetItemProps(Cookie nCookie, OVERLAY_PROPS* pProps) {
    if (!pProps) return E_POINTER;
    return WithItem(nCookie, [pProps](const OverlayItem& item) {
        BSTR bsText = nullptr;
        const HRESULT hr = item.bsName.CopyTo(&bsText);
        if (FAILED(hr)) return hr;
        *pProps = item.props;
        pProps->bsTextString = bsText;
        return S_OK;
    });
}

HRESULT COverlayEngine::GetItemSize(Cookie nCookie, SIZE* pSize) {
    if (!pSize) return E_POINTER;
    return WithItem(nCookie, [pSize](const OverlayItem& item) {
        *pSize = item.sizeItem;
        return S_OK;
    });
}

HRESULT COverlayEngine::SetItemProps(Cookie nCookie, const OVERLAY_PROPS* pProps, LONG /*nMask*/) {
    if (!pProps) return E_INVALIDARG;
    return WithItem(nCookie, [this, pProps](OverlayItem& item) { return ApplyProps(item, *pProps); });
}

HRESULT COverlayEngine::SetItemCallback(Cookie nCookie, IVellumcasterCallback* pCallback) {
    return WithItem(nCookie, [pCallback](OverlayItem& item) {
        item.spCallback = pCallback;
        return S_OK;
    });
}

HRESULT COverlayEngine::ChangeItemOrder(Cookie nCookie, LONG nChange) {
    if (nChange == 0) return S_FALSE;
    CAutoLock lock(m_csItems);
    const LONG index = m_Items.Find(nCookie);
    if (index < 0) return E_INVALIDARG;
    const LONG neighbour = nChange > 0 ? index + 1 : index - 1;
    if (neighbour >= 0 && neighbour < m_Items.Count()) m_Items.SwapRecords(index, neighbour);
    m_bDirty = true;
    return S_OK;
}

void COverlayEngine::PrepareItems() {
    CAutoLock lock(m_csItems);
    for (LONG i = 0; i < m_Items.Count(); ++i)
        m_Painter.PrepareImage(m_Items.At(i));
}

void COverlayEngine::ResetItemForRun() {
    CAutoLock lock(m_csItems);
    for (LONG i = 0; i < m_Items.Count(); ++i) {
        OverlayItem& item = m_Items.At(i);
        item.props.nCounterCur = item.props.nCounterStart;
        item.SnapToSetPosition();
        item.llClockOffset = llAnchorClockAnew;
    }
}

} // namespace vellumcaster
