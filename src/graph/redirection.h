#pragma once

#include "graph/seh_calls.h"
#include "platform/kernel/trace.h"

#include <vellumcaster/counted_ptr.h>
#include <vellumcaster/results.h>

#include <type_traits>

namespace vellumcaster {

/// The far side's interface: that of the pin across the filter, asked for anew each time.
/// \return none where the filter, the connection or the interface is missing.
template <class Interface, class Pin>
[[nodiscard]] CComPtr<Interface> AskFarSide(Pin& pin) {
    CComPtr<Interface> sp;
    const auto spFilter = pin.m_apFilter.Get();
    if (!spFilter) return sp;
    const HRESULT hr = spFilter->Filter_QueryRedirect(pin.m_nIndex, Interface::IID, reinterpret_cast<void**>(sp.Put()));
    if (FAILED(hr)) static_cast<void>(sp.Detach()); // what a failed call leaves there is nothing to release
    return sp;
}

/// Passes a call through to the far side, arguments untouched, with no lock held.
/// \param pszCall  the call as the lines of diagnosis have it.
/// \return the far side's answer; E_NOTIMPL where there is none.
template <class Interface, class Pin, class... Parameters>
HRESULT RedirectCall(Pin& pin, const char* pszCall, HRESULT (Interface::*method)(Parameters...),
                     std::type_identity_t<Parameters>... arguments) {
    const CComPtr<Interface> spFar = AskFarSide<Interface>(pin);
    if (!spFar) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath, "Can't redirect %s\n", pszCall);
        return E_NOTIMPL;
    }
    const HRESULT hr = CallMethodGuarded(pszCall, spFar.Get(), method, arguments...);
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath, "Redirection: %s=0x%X\n", pszCall, hr);
    return hr;
}

} // namespace vellumcaster
