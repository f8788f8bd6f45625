#include "graph/plain/plain_pins.h"

#include "graph/seh_calls.h"

namespace vellumcaster {

HRESULT CPlainOutputPin::SendSample(IMediaSample* pSample) {
    const HRESULT hr = SEH_IMemInputPin::Receive(m_spMemInput.Get(), pSample);
    if (hr == S_FALSE)
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                          "%s: SendSample(): m_spMemInput->Receive()=S_FALSE\n", "[CCoVellumcasterOut]");
    else if (FAILED(hr))
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### %s: SendSample(): m_spMemInput->Receive()=0x%X\n", "[CCoVellumcasterOut]", hr);
    return hr;
}

HRESULT CPlainOutputPin::SetMediaTypeFromSample(IMediaSample*) { return S_FALSE; }

} // namespace vellumcaster
