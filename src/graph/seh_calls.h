#pragma once

#include "platform/kernel/fault_guard.h"
#include "platform/kernel/trace.h"
#include "platform/media/base_filter.h"
#include "platform/media/filter_graph.h"
#include "platform/media/media_sample2.h"
#include "platform/media/mem_allocator_callback.h"
#include "platform/media/mem_input_pin.h"
#include "platform/media/quality_control.h"

#include <vellumcaster/counted_ptr.h>
#include <vellumcaster/results.h>

#include <type_traits>

namespace vellumcaster {

/// Calls a method of another filter's object inside a fault guard.
/// \param pszCall  the call as the line of diagnosis has it.
/// \return what the method answers; E_INVALIDARG for a null interface, which is not called; E_UNEXPECTED when the call
///         faulted or threw. The out-pointers are then as the callee left them: nothing in them is to be looked at,
///         released included. A length is answered like a result: below 0 it is none.
template <class Interface, class... Parameters>
[[nodiscard]] HRESULT CallMethodGuarded([[maybe_unused]] const char* pszCall, Interface* p,
                                        HRESULT (Interface::*method)(Parameters...),
                                        std::type_identity_t<Parameters>... arguments) {
    if (!p) return E_INVALIDARG;
    volatile HRESULT hr = E_INVALIDARG;
    const FaultCode fault = CallGuarded([&] { hr = (p->*method)(arguments...); });
    if (fault == faultNone) return hr;
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::CaughtFault, "###Err### SEH_%s: Exception 0x%X\n", pszCall,
                      fault);
    return E_UNEXPECTED;
}

/// A method that is called by `CallMethodGuarded`: `SEH_IPin::QueryAccept(pPin, pmt)`.
template <class Interface, class... Parameters>
class CGuardedMethod {
public:
    constexpr CGuardedMethod(HRESULT (Interface::*method)(Parameters...), const char* pszCall)
        : m_Method(method), m_pszCall(pszCall) {}

    [[nodiscard]] HRESULT operator()(Interface* p, Parameters... arguments) const {
        return CallMethodGuarded(m_pszCall, p, m_Method, arguments...);
    }

private:
    HRESULT (Interface::*m_Method)(Parameters...);
    const char* m_pszCall;
};

namespace SEH_IPin {
inline constexpr CGuardedMethod ReceiveConnection(&IPin::ReceiveConnection, "IPin::ReceiveConnection(pConnector, pmt)");
inline constexpr CGuardedMethod Disconnect(&IPin::Disconnect, "IPin::Disconnect()");
inline constexpr CGuardedMethod QueryDirection(&IPin::QueryDirection, "IPin::QueryDirection(pPinDir)");
inline constexpr CGuardedMethod QueryAccept(&IPin::QueryAccept, "IPin::QueryAccept(pmt)");
inline constexpr CGuardedMethod EnumMediaTypes(&IPin::EnumMediaTypes, "IPin::EnumMediaTypes(ppEnum)");
inline constexpr CGuardedMethod EndOfStream(&IPin::EndOfStream, "IPin::EndOfStream()");
inline constexpr CGuardedMethod BeginFlush(&IPin::BeginFlush, "IPin::BeginFlush()");
inline constexpr CGuardedMethod EndFlush(&IPin::EndFlush, "IPin::EndFlush()");
inline constexpr CGuardedMethod NewSegment(&IPin::NewSegment, "IPin::NewSegment(tStart, tStop, dRate)");
} // namespace SEH_IPin

namespace SEH_IMemInputPin {
inline constexpr CGuardedMethod GetAllocator(&IMemInputPin::GetAllocator, "IMemInputPin::GetAllocator(ppAllocator)");
inline constexpr CGuardedMethod NotifyAllocator(&IMemInputPin::NotifyAllocator,
                                                "IMemInputPin::NotifyAllocator(pAllocator, bReadOnly)");
inline constexpr CGuardedMethod GetAllocatorRequirements(&IMemInputPin::GetAllocatorRequirements,
                                                         "IMemInputPin::GetAllocatorRequirements(pProps)");
inline constexpr CGuardedMethod Receive(&IMemInputPin::Receive, "IMemInputPin::Receive(pSample)");
} // namespace SEH_IMemInputPin

namespace SEH_IMemAllocator {
inline constexpr CGuardedMethod SetProperties(&IMemAllocator::SetProperties,
                                              "IMemAllocator::SetProperties(pRequest, pActual)");
inline constexpr CGuardedMethod GetProperties(&IMemAllocator::GetProperties, "IMemAllocator::GetProperties(pProps)");
inline constexpr CGuardedMethod Commit(&IMemAllocator::Commit, "IMemAllocator::Commit()");
inline constexpr CGuardedMethod Decommit(&IMemAllocator::Decommit, "IMemAllocator::Decommit()");
inline constexpr CGuardedMethod GetBuffer(&IMemAllocator::GetBuffer,
                                          "IMemAllocator::GetBuffer(ppBuffer, pStartTime, pEndTime, dwFlags)");
} // namespace SEH_IMemAllocator

namespace SEH_IMemAllocatorNotifyCallbackTemp {
inline constexpr CGuardedMethod NotifyRelease(&IMemAllocatorNotifyCallbackTemp::NotifyRelease,
                                              "IMemAllocatorNotifyCallbackTemp::NotifyRelease()");
} // namespace SEH_IMemAllocatorNotifyCallbackTemp

namespace SEH_IMediaSample {
inline constexpr CGuardedMethod GetPointer(&IMediaSample::GetPointer, "IMediaSample::GetPointer(ppBuffer)");
inline constexpr CGuardedMethod GetSize(&IMediaSample::GetSize, "IMediaSample::GetSize()");
inline constexpr CGuardedMethod GetTime(&IMediaSample::GetTime, "IMediaSample::GetTime(pTimeStart, pTimeEnd)");
inline constexpr CGuardedMethod SetTime(&IMediaSample::SetTime, "IMediaSample::SetTime(pTimeStart, pTimeEnd)");
inline constexpr CGuardedMethod IsSyncPoint(&IMediaSample::IsSyncPoint, "IMediaSample::IsSyncPoint()");
inline constexpr CGuardedMethod SetSyncPoint(&IMediaSample::SetSyncPoint, "IMediaSample::SetSyncPoint(bIsSyncPoint)");
inline constexpr CGuardedMethod IsPreroll(&IMediaSample::IsPreroll, "IMediaSample::IsPreroll()");
inline constexpr CGuardedMethod SetPreroll(&IMediaSample::SetPreroll, "IMediaSample::SetPreroll(bIsPreroll)");
inline constexpr CGuardedMethod GetActualDataLength(&IMediaSample::GetActualDataLength,
                                                    "IMediaSample::GetActualDataLength()");
inline constexpr CGuardedMethod SetActualDataLength(&IMediaSample::SetActualDataLength,
                                                    "IMediaSample::SetActualDataLength(lLen)");
inline constexpr CGuardedMethod GetMediaType(&IMediaSample::GetMediaType, "IMediaSample::GetMediaType(ppMediaType)");
inline constexpr CGuardedMethod SetMediaType(&IMediaSample::SetMediaType, "IMediaSample::SetMediaType(pMediaType)");
inline constexpr CGuardedMethod IsDiscontinuity(&IMediaSample::IsDiscontinuity, "IMediaSample::IsDiscontinuity()");
inline constexpr CGuardedMethod SetDiscontinuity(&IMediaSample::SetDiscontinuity,
                                                 "IMediaSample::SetDiscontinuity(bDiscontinuity)");
inline constexpr CGuardedMethod GetMediaTime(&IMediaSample::GetMediaTime,
                                             "IMediaSample::GetMediaTime(pTimeStart, pTimeEnd)");
inline constexpr CGuardedMethod SetMediaTime(&IMediaSample::SetMediaTime,
                                             "IMediaSample::SetMediaTime(pTimeStart, pTimeEnd)");
} // namespace SEH_IMediaSample

namespace SEH_IMediaSample2 {
inline constexpr CGuardedMethod GetProperties(&IMediaSample2::GetProperties,
                                              "IMediaSample2::GetProperties(cbProperties, pbProperties)");
inline constexpr CGuardedMethod SetProperties(&IMediaSample2::SetProperties,
                                              "IMediaSample2::SetProperties(cbProperties, pbProperties)");
} // namespace SEH_IMediaSample2

namespace SEH_IEnumMediaTypes {
inline constexpr CGuardedMethod Next(&IEnumMediaTypes::Next,
                                     "IEnumMediaTypes::Next(cMediaTypes, ppMediaTypes, pcFetched)");
inline constexpr CGuardedMethod Reset(&IEnumMediaTypes::Reset, "IEnumMediaTypes::Reset()");
} // namespace SEH_IEnumMediaTypes

namespace SEH_IBaseFilter {
inline constexpr CGuardedMethod EnumPins(&IBaseFilter::EnumPins, "IBaseFilter::EnumPins(ppEnum)");
} // namespace SEH_IBaseFilter

namespace SEH_IEnumPins {
inline constexpr CGuardedMethod Next(&IEnumPins::Next, "IEnumPins::Next(cPins, ppPins, pcFetched)");
inline constexpr CGuardedMethod Reset(&IEnumPins::Reset, "IEnumPins::Reset()");
} // namespace SEH_IEnumPins

namespace SEH_IQualityControl {
inline constexpr CGuardedMethod Notify(&IQualityControl::Notify, "IQualityControl::Notify(pSelf, q)");
} // namespace SEH_IQualityControl

namespace SEH_IFilterGraph {
inline constexpr CGuardedMethod Reconnect(&IFilterGraph::Reconnect, "IFilterGraph::Reconnect(ppin)");
} // namespace SEH_IFilterGraph

namespace SEH_IFilterGraph2 {
inline constexpr CGuardedMethod ReconnectEx(&IFilterGraph2::ReconnectEx, "IFilterGraph2::ReconnectEx(ppin, pmt)");
} // namespace SEH_IFilterGraph2

namespace SEH_IUnknown {
inline constexpr CGuardedMethod QueryInterface(&IUnknown::QueryInterface, "IUnknown::QueryInterface(iid, ppv)");

/// Asks another filter's object for an interface.
/// \return S_OK with the interface; its failure; E_NOINTERFACE for a success that comes without one.
template <class Interface>
[[nodiscard]] HRESULT Ask(IUnknown* p, CComPtr<Interface>& sp) {
    sp.Reset();
    void* pv = nullptr;
    const HRESULT hr = QueryInterface(p, Interface::IID, &pv);
    if (FAILED(hr)) return hr;
    sp.Attach(static_cast<Interface*>(pv));
    return sp ? S_OK : E_NOINTERFACE;
}
} // namespace SEH_IUnknown

} // namespace vellumcaster
