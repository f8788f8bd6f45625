#pragma once

#include "platform/com/unknown_impl.h"
#include "platform/media/base_filter.h"

#include <functional>
#include <utility>

namespace vellumcaster::testing_support {

/// A neighbour in a graph that is filter, pin and both enumerators in one. What guarded calls reach runs a function
/// and answers what that answers; everything else is not implemented.
class CScriptedPeer final : public CUnknownImpl<IBaseFilter, IEnumPins, IPin, IEnumMediaTypes> {
public:
    using Script = std::function<HRESULT()>;
    explicit CScriptedPeer(Script onCall) : m_onCall(std::move(onCall)) {}

    HRESULT EnumPins(IEnumPins**) override { return m_onCall(); }
    HRESULT Next(ULONG, IPin**, ULONG*) override { return m_onCall(); }
    HRESULT QueryDirection(PIN_DIRECTION*) override { return m_onCall(); }
    HRESULT Reset() override { return m_onCall(); }
    HRESULT EnumMediaTypes(IEnumMediaTypes** ppEnum) override {
        const HRESULT hr = m_onCall();
        if (hr == S_OK && ppEnum) *ppEnum = CComPtr<IEnumMediaTypes>(this).Detach();
        return hr;
    }
    HRESULT Next(ULONG, AM_MEDIA_TYPE** ppmt, ULONG*) override {
        return m_onNextType ? m_onNextType(ppmt) : m_onCall();
    }

    HRESULT GetClassID(GUID*) override { return E_NOTIMPL; }
    HRESULT Stop() override { return E_NOTIMPL; }
    HRESULT Pause() override { return E_NOTIMPL; }
    HRESULT Run(REFERENCE_TIME) override { return E_NOTIMPL; }
    HRESULT GetState(DWORD, FILTER_STATE*) override { return E_NOTIMPL; }
    HRESULT SetSyncSource(IReferenceClock*) override { return E_NOTIMPL; }
    HRESULT GetSyncSource(IReferenceClock**) override { return E_NOTIMPL; }
    HRESULT FindPin(const OLECHAR*, IPin**) override { return E_NOTIMPL; }
    HRESULT QueryFilterInfo(FILTER_INFO*) override { return E_NOTIMPL; }
    HRESULT JoinFilterGraph(IFilterGraph*, const OLECHAR*) override { return E_NOTIMPL; }
    HRESULT QueryVendorInfo(OLECHAR**) override { return E_NOTIMPL; }
    HRESULT Skip(ULONG) override { return E_NOTIMPL; }
    HRESULT Clone(IEnumPins**) override { return E_NOTIMPL; }
    HRESULT Clone(IEnumMediaTypes**) override { return E_NOTIMPL; }
    HRESULT Connect(IPin*, const AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    HRESULT ReceiveConnection(IPin*, const AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    HRESULT Disconnect() override { return E_NOTIMPL; }
    HRESULT ConnectedTo(IPin**) override { return E_NOTIMPL; }
    HRESULT ConnectionMediaType(AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    HRESULT QueryPinInfo(PIN_INFO*) override { return E_NOTIMPL; }
    HRESULT QueryId(OLECHAR**) override { return E_NOTIMPL; }
    HRESULT QueryAccept(const AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    HRESULT QueryInternalConnections(IPin**, ULONG*) override { return E_NOTIMPL; }
    HRESULT EndOfStream() override { return E_NOTIMPL; }
    HRESULT BeginFlush() override { return E_NOTIMPL; }
    HRESULT EndFlush() override { return E_NOTIMPL; }
    HRESULT NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) override { return E_NOTIMPL; }

    std::function<HRESULT(AM_MEDIA_TYPE**)> m_onNextType;

private:
    Script m_onCall;
};

/// Reads where nothing is ever mapped; a write would be a race between two threads that fault.
inline HRESULT Fault() { return *reinterpret_cast<const volatile HRESULT*>(std::uintptr_t{4096}); }

} // namespace vellumcaster::testing_support
