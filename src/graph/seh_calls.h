#pragma once

#include "platform/kernel/fault_guard.h"
#include "platform/kernel/trace.h"
#include "platform/media/base_filter.h"
#include "platform/media/mem_input_pin.h"

#include <vellumcaster/results.h>

#include <type_traits>

namespace vellumcaster {

/// Calls on other filters' objects, each inside a fault guard. All answer what the method answers; E_INVALIDARG for
/// a null interface, which is not called; E_UNEXPECTED when the call faulted or threw. The out-pointers are then as
/// the callee left them: nothing in them is to be looked at, released included.
/// \param pszTrace  the line to trace after a fault, with one place for its code.
template <class Interface, class... Parameters>
[[nodiscard]] HRESULT CallMethodGuarded([[maybe_unused]] const char* pszTrace, Interface* p,
                                        HRESULT (Interface::*method)(Parameters...),
                                        std::type_identity_t<Parameters>... arguments) {
    if (!p) return E_INVALIDARG;
    volatile HRESULT hr = E_INVALIDARG;
    const FaultCode fault = CallGuarded([&] { hr = (p->*method)(arguments...); });
    if (fault == faultNone) return hr;
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::CaughtFault, pszTrace, fault);
    return E_UNEXPECTED;
}

namespace SEH_IMemInputPin {

[[nodiscard]] inline HRESULT Receive(IMemInputPin* pPin, IMediaSample* pSample) {
    return CallMethodGuarded("###Err### SEH_IMemInputPin::Receive(pSample): Exception 0x%X\n", pPin,
                             &IMemInputPin::Receive, pSample);
}

} // namespace SEH_IMemInputPin

namespace SEH_IMemAllocator {

[[nodiscard]] inline HRESULT GetBuffer(IMemAllocator* pAllocator, IMediaSample** ppBuffer, REFERENCE_TIME* pStartTime,
                                       REFERENCE_TIME* pEndTime, DWORD dwFlags) {
    return CallMethodGuarded(
        "###Err### SEH_IMemAllocator::GetBuffer(ppBuffer, pStartTime, pEndTime, dwFlags): Exception 0x%X\n", pAllocator,
        &IMemAllocator::GetBuffer, ppBuffer, pStartTime, pEndTime, dwFlags);
}

} // namespace SEH_IMemAllocator

namespace SEH_IPin {

[[nodiscard]] inline HRESULT EnumMediaTypes(IPin* pPin, IEnumMediaTypes** ppEnum) {
    return CallMethodGuarded("###Err### SEH_IPin::EnumMediaTypes(ppEnum): Exception 0x%X\n", pPin,
                             &IPin::EnumMediaTypes, ppEnum);
}

[[nodiscard]] inline HRESULT QueryDirection(IPin* pPin, PIN_DIRECTION* pPinDir) {
    return CallMethodGuarded("###Err### SEH_IPin::QueryDirection(pPinDir): Exception 0x%X\n", pPin,
                             &IPin::QueryDirection, pPinDir);
}

} // namespace SEH_IPin

namespace SEH_IEnumMediaTypes {

[[nodiscard]] inline HRESULT Next(IEnumMediaTypes* pEnum, ULONG cMediaTypes, AM_MEDIA_TYPE** ppMediaTypes,
                                  ULONG* pcFetched) {
    return CallMethodGuarded(
        "###Err### SEH_IEnumMediaTypes::Next(cMediaTypes, ppMediaTypes, pcFetched): Exception 0x%X\n", pEnum,
        &IEnumMediaTypes::Next, cMediaTypes, ppMediaTypes, pcFetched);
}

[[nodiscard]] inline HRESULT Reset(IEnumMediaTypes* pEnum) {
    return CallMethodGuarded("###Err### SEH_IEnumMediaTypes::Reset(): Exception 0x%X\n", pEnum,
                             &IEnumMediaTypes::Reset);
}

} // namespace SEH_IEnumMediaTypes

namespace SEH_IBaseFilter {

[[nodiscard]] inline HRESULT EnumPins(IBaseFilter* pFilter, IEnumPins** ppEnum) {
    return CallMethodGuarded("###Err### SEH_IBaseFilter::EnumPins(ppEnum): Exception 0x%X\n", pFilter,
                             &IBaseFilter::EnumPins, ppEnum);
}

} // namespace SEH_IBaseFilter

namespace SEH_IEnumPins {

[[nodiscard]] inline HRESULT Next(IEnumPins* pEnum, ULONG cPins, IPin** ppPins, ULONG* pcFetched) {
    return CallMethodGuarded("###Err### SEH_IEnumPins::Next(cPins, ppPins, pcFetched): Exception 0x%X\n", pEnum,
                             &IEnumPins::Next, cPins, ppPins, pcFetched);
}

[[nodiscard]] inline HRESULT Reset(IEnumPins* pEnum) {
    return CallMethodGuarded("###Err### SEH_IEnumPins::Reset(): Exception 0x%X\n", pEnum, &IEnumPins::Reset);
}

} // namespace SEH_IEnumPins
} // namespace vellumcaster
