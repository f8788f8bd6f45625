#include "engine/overlay_engine.h"

namespace vellumcaster {

HRESULT COverlayEngine::AddPrepared(OverlayItem&& item, unsigned nPreparation, Cookie* pnCookie) {
    CAutoLock lock(m_csItems);
    // The stream's format may have become another one since.
    if (m_nPreparation != nPreparation) {
        const HRESULT hr = m_Painter.PrepareImage(item);
        if (FAILED(hr)) return hr;
    }
    return AddItem(std::move(item), pnCookie);
}

HRESULT COverlayEngine::AddItem(OverlayItem&& item, Cookie* pnCookie) {
    CAutoLock lock(m_csItems);
    const Cookie cookie = m_Items.ChooseCookie(item);
    const HRESULT hr = m_Items.Add(cookie, std::move(item));
    if (FAILED(hr)) return hr;
    if (pnCookie) *pnCookie = cookie;
    m_bDirty = true;
    return S_OK;
}

HRESULT COverlayEngine::RemoveItem2(Cookie nCookie) {
    std::optional<OverlayItem> removed; // goes when the lock is free: its callback is the application's
    CAutoLock lock(m_csItems);
    removed = m_Items.Take(nCookie);
    if (!removed) return E_INVALIDARG;
    m_bDirty = true;
    return S_OK;
}

HRESULT COverlayEngine::RemoveAllItems() {
    ItemMap removed; // goes when the lock is free
    CAutoLock lock(m_csItems);
    std::swap(removed, m_Items);
    return S_OK;
}

HRESULT COverlayEngine::GetItemCount2(LONG* pnCount) {
    if (!pnCount) return E_POINTER;
    CAutoLock lock(m_csItems);
    *pnCount = m_Items.Count();
    return S_OK;
}

HRESULT COverlayEngine::GetItemInfo2(LONG nIndex, Cookie* pnCookie, BSTR* pbsName, ITEM_TYPE* pItemType) {
    if (!pnCookie || !pbsName || !pItemType) return E_POINTER;
    CAutoLock lock(m_csItems);
    if (nIndex < 0 || nIndex >= m_Items.Count()) return E_INVALIDARG;
    const OverlayItem& item = m_Items.At(nIndex);
    const HRESULT hr = item.bsName.CopyTo(pbsName);
    if (FAILED(hr)) return hr;
    *pnCookie = m_Items.Key(nIndex);
    *pItemType = item.eType;
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
    CComPtr<IVellumcasterCallback> spCallback(pCallback); // the former one goes when the lock is free
    return WithItem(nCookie, [&spCallback](OverlayItem& item) {
        std::swap(item.spCallback, spCallback);
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
    ++m_nPreparation;
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
