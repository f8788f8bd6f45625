#include "host/graph/graph_manager.h"

#include "graph/media_type.h"
#include "graph/seh_calls.h"
#include "platform/com/no_exceptions.h"

#include <algorithm>

namespace vellumcaster {

HRESULT CGraph::QueryInterface(const GUID& iid, void** ppv) {
    const bool bNewer = iid == IFilterGraph2::IID || iid == IGraphBuilder::IID;
    if (ppv && bNewer && !m_bReconnectsInTypes) {
        *ppv = nullptr;
        return E_NOINTERFACE;
    }
    return CUnknownImpl::QueryInterface(iid, ppv);
}

HRESULT CGraph::AddFilter(IBaseFilter* pFilter, const OLECHAR* pszName) {
    if (!pFilter) return E_POINTER;
    return WithoutExceptions([&] {
        m_Filters.reserve(m_Filters.size() + 1);
        Entry entry{pFilter, pszName ? pszName : u""};
        const HRESULT hr = pFilter->JoinFilterGraph(this, entry.name.c_str());
        if (SUCCEEDED(hr)) m_Filters.push_back(std::move(entry));
        return hr;
    });
}

HRESULT CGraph::RemoveFilter(IBaseFilter* pFilter) {
    const auto entry =
        std::find_if(m_Filters.begin(), m_Filters.end(), [pFilter](const Entry& e) { return e.spFilter == pFilter; });
    if (entry == m_Filters.end()) return VFW_E_NOT_FOUND;
    for (const PIN_DIRECTION direction : {PINDIR_OUTPUT, PINDIR_INPUT}) {
        const CComPtr<IPin> spPin = PinOf(*pFilter, direction);
        CComPtr<IPin> spPeer;
        if (!spPin || spPin->ConnectedTo(spPeer.Put()) != S_OK) continue;
        static_cast<void>(SEH_IPin::Disconnect(spPin.Get()));
        static_cast<void>(SEH_IPin::Disconnect(spPeer.Get()));
    }
    const HRESULT hr = pFilter->JoinFilterGraph(nullptr, nullptr);
    m_Filters.erase(entry);
    return hr;
}

HRESULT CGraph::FindFilterByName(const OLECHAR* pszName, IBaseFilter** ppFilter) {
    if (!pszName || !ppFilter) return E_POINTER;
    *ppFilter = nullptr;
    for (const Entry& entry : m_Filters) {
        if (entry.name != pszName) continue;
        *ppFilter = CComPtr<IBaseFilter>(entry.spFilter).Detach();
        return S_OK;
    }
    return VFW_E_NOT_FOUND;
}

HRESULT CGraph::ConnectDirect(IPin* ppinOut, IPin* ppinIn, const AM_MEDIA_TYPE* pmt) {
    return ppinOut && ppinIn ? ppinOut->Connect(ppinIn, pmt) : E_POINTER;
}

HRESULT CGraph::ReconnectEx(IPin* ppin, const AM_MEDIA_TYPE* pmt) {
    if (!ppin) return E_POINTER;
    CComPtr<IPin> spOut(ppin);
    CComPtr<IPin> spIn;
    HRESULT hr = ppin->ConnectedTo(spIn.Put());
    if (FAILED(hr)) return hr;
    PIN_DIRECTION direction = PINDIR_OUTPUT;
    hr = ppin->QueryDirection(&direction);
    if (FAILED(hr)) return hr;
    if (direction == PINDIR_INPUT) std::swap(spOut, spIn);

    CMediaTypeHolder former;
    hr = spOut->ConnectionMediaType(former.Put());
    if (FAILED(hr)) return hr;

    ++m_nReconnections;
    for (const CComPtr<IPin>& spPin : {spOut, spIn})
        if (SUCCEEDED(hr)) hr = SEH_IPin::Disconnect(spPin.Get());
    if (SUCCEEDED(hr)) hr = spOut->Connect(spIn.Get(), pmt);
    if (FAILED(hr)) static_cast<void>(spOut->Connect(spIn.Get(), former.Get()));
    return hr;
}

template <class Change>
HRESULT CGraph::ForEachFromDownstream(const Change& change) {
    HRESULT hr = S_OK;
    static_cast<void>(std::find_if(m_Filters.rbegin(), m_Filters.rend(), [&](const Entry& entry) {
        hr = change(*entry.spFilter);
        return FAILED(hr);
    }));
    return FAILED(hr) ? hr : S_OK;
}

HRESULT CGraph::Pause() {
    const HRESULT hr = ForEachFromDownstream([](IBaseFilter& filter) { return filter.Pause(); });
    if (FAILED(hr)) static_cast<void>(Stop());
    return hr;
}

HRESULT CGraph::Run() {
    HRESULT hr = Pause();
    if (FAILED(hr)) return hr;
    hr = ForEachFromDownstream([](IBaseFilter& filter) { return filter.Run(0); });
    if (FAILED(hr)) static_cast<void>(Stop());
    return hr;
}

HRESULT CGraph::Stop() {
    HRESULT hrFirst = S_OK;
    static_cast<void>(ForEachFromDownstream([&hrFirst](IBaseFilter& filter) {
        const HRESULT hr = filter.Stop();
        if (SUCCEEDED(hrFirst)) hrFirst = hr;
        return S_OK;
    }));
    return hrFirst;
}

void CGraph::Clear() {
    static_cast<void>(Stop());
    while (!m_Filters.empty())
        static_cast<void>(RemoveFilter(CComPtr<IBaseFilter>(m_Filters.back().spFilter).Get()));
}

CComPtr<IPin> PinOf(IBaseFilter& filter, PIN_DIRECTION direction) {
    CComPtr<IEnumPins> spEnum;
    if (FAILED(filter.EnumPins(spEnum.Put())) || !spEnum) return {};
    for (;;) {
        CComPtr<IPin> spPin;
        if (spEnum->Next(1, spPin.Put(), nullptr) != S_OK) return {};
        PIN_DIRECTION own = PINDIR_INPUT;
        if (SUCCEEDED(spPin->QueryDirection(&own)) && own == direction) return spPin;
    }
}

} // namespace vellumcaster
