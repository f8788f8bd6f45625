#include "graph/base_filter.h"

#include "graph/media_type.h"
#include "graph/media_type_match.h"
#include "graph/narrow_text.h"
#include "graph/seh_calls.h"
#include "platform/kernel/trace.h"

namespace vellumcaster {

HRESULT CBaseFilter::MakeReconnect(const AM_MEDIA_TYPE* pmt, IPin* pPin) {
    if (!Graph()) return VFW_E_NOT_IN_GRAPH;
    if (!IsStopped()) return VFW_E_NOT_STOPPED;
    if (!pPin) return S_OK;
    CComPtr<IPin> spPeer;
    if (pPin->ConnectedTo(spPeer.Put()) != S_OK) return S_OK;
    PIN_DIRECTION direction = PINDIR_INPUT;
    HRESULT hr = pPin->QueryDirection(&direction);
    if (FAILED(hr)) return hr;
    if (direction == PINDIR_INPUT) return ReconnectPin(pPin, pmt);

    CMediaTypeHolder connected;
    hr = pPin->ConnectionMediaType(connected.Put());
    if (hr != S_OK) return hr;
    if (MT_IsEqual(pmt, connected.Get())) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                          "%s: CBaseFilter::MakeReconnect( %s ): reconnection stopped - media types are equal\n",
                          DisplayName(), "Out");
        return S_OK;
    }
    return ReconnectPin(pPin, pmt);
}

HRESULT CBaseFilter::ReconnectPin(IPin* pPin, const AM_MEDIA_TYPE* pmt) {
    const CComPtr<IFilterGraph> spGraph = Graph();
    if (!spGraph) return VFW_E_NOT_IN_GRAPH;
    CComPtr<IFilterGraph2> spGraph2;
    return SUCCEEDED(SEH_IUnknown::Ask(spGraph.Get(), spGraph2))
               ? SEH_IFilterGraph2::ReconnectEx(spGraph2.Get(), pPin, pmt)
               : SEH_IFilterGraph::Reconnect(spGraph.Get(), pPin);
}

void CBaseFilter::LeaveGraph() {
    m_pEventSink = nullptr;
    CAutoLock lock(m_csGraph);
    m_pGraph = nullptr;
    m_szName = {};
}

void CBaseFilter::EnterGraph(IFilterGraph* pGraph, const OLECHAR* pszName) {
    CComPtr<IMediaEventSink> spSink;
    if (SUCCEEDED(SEH_IUnknown::Ask(pGraph, spSink))) m_pEventSink = spSink.Get();
    CAutoLock lock(m_csGraph);
    m_pGraph = pGraph;
    if (pszName) NarrowText(pszName, m_szName);
}

CComPtr<IFilterGraph> CBaseFilter::Graph() {
    CAutoLock lock(m_csGraph);
    return m_pGraph;
}

std::array<char, 128> CBaseFilter::Name() {
    CAutoLock lock(m_csGraph);
    return m_szName;
}

} // namespace vellumcaster
