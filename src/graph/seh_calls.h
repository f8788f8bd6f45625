#pragma once

#include "platform/kernel/fault_guard.h"
#include "platform/kernel/trace.h"
#include "platform/media/mem_input_pin.h"

#include <vellumcaster/results.h>

namespace vellumcaster {

/// Calls on other filters' objects, each inside a fault guard. All answer what the method answers; E_INVALIDARG for
/// a null interface, which is not called; E_UNEXPECTED when the call faulted or threw, with the out-pointers as the
/// callee left them.
/// \param pszTrace  the line to trace after a fault, with one place for its code.
template <class Interface, class Call>
[[nodiscard]] HRESULT CallInterfaceGuarded(Interface* p, [[maybe_unused]] const char* pszTrace, const Call& call) {
    if (!p) return E_INVALIDARG;
    volatile HRESULT hr = E_INVALIDARG;
    const FaultCode fault = CallGuarded([&] { hr = call(*p); });
    if (fault == faultNone) return hr;
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::CaughtFault, pszTrace, fault);
    return E_UNEXPECTED;
}

namespace SEH_IMemInputPin {

[[nodiscard]] inline HRESULT Receive(IMemInputPin* pPin, IMediaSample* pSample) {
    return CallInterfaceGuarded(pPin, "###Err### SEH_IMemInputPin::Receive(pSample): Exception 0x%X\n",
                                [=](IMemInputPin& pin) { return pin.Receive(pSample); });
}

} // namespace SEH_IMemInputPin

namespace SEH_IMemAllocator {

[[nodiscard]] inline HRESULT GetBuffer(IMemAllocator* pAllocator, IMediaSample** ppBuffer, REFERENCE_TIME* pStartTime,
                                       REFERENCE_TIME* pEndTime, DWORD dwFlags) {
    return CallInterfaceGuarded(
        pAllocator, "###Err### SEH_IMemAllocator::GetBuffer(ppBuffer, pStartTime, pEndTime, dwFlags): Exception 0x%X\n",
        [=](IMemAllocator& allocator) { return allocator.GetBuffer(ppBuffer, pStartTime, pEndTime, dwFlags); });
}

} // namespace SEH_IMemAllocator
} // namespace vellumcaster
