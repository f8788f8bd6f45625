#pragma once

#include "graph/ks_property_set_impl.h"
#include "graph/mem_input_pin_impl.h"
#include "graph/pin_impl.h"
#include "graph/seh_calls.h"
#include "platform/com/unknown_impl.h"
#include "platform/media/media_type_ids.h"
#include "platform/media/quality_control.h"

#include <atomic>

namespace vellumcaster {

/// Where a filter's input pin is told where notices of quality are to go instead of upstream.
template <class Pin>
class IInputQualityImpl : public IQualityControl {
public:
    HRESULT Notify(IBaseFilter*, Quality) override {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error, "###Err### %s: IQualityControl::Notify\n",
                          This().DisplayName());
        return E_NOTIMPL;
    }
    HRESULT SetSink(IQualityControl* pQualityControl) override {
        CAutoLock lock(This().m_csPin);
        m_pQualitySink = pQualityControl;
        return S_OK;
    }

    /// Not counted; null for none. Notices come while downstream holds locks of its own: none is taken here.
    [[nodiscard]] IQualityControl* QualitySink() const { return m_pQualitySink; }

protected:
    ~IInputQualityImpl() = default;

    std::atomic<IQualityControl*> m_pQualitySink = nullptr;

private:
    Pin& This() { return static_cast<Pin&>(*this); }
};

/// A filter's input pin. A sample runs through the whole filter and downstream before `Receive` returns, on the thread
/// that delivers it.
/// \tparam Filter  the concrete filter. \tparam Pin  the concrete pin, which derives from this.
template <class Filter, class Pin>
class CInputPin
    : public CUnknownImpl<IPinImpl<Pin>, CMemInputPinFilter<Pin>, IInputQualityImpl<Pin>, IKsPropertySetImpl<Pin>>,
      public CPinCore<Filter> {
    using Unknown =
        CUnknownImpl<IPinImpl<Pin>, CMemInputPinFilter<Pin>, IInputQualityImpl<Pin>, IKsPropertySetImpl<Pin>>;

public:
    using FilterType = Filter;

    explicit CInputPin(std::string_view name) : CPinCore<Filter>(0, PINDIR_INPUT, name) { RestMediaType(); }

    /// `IKsPropertySet` is offered only while the far side has it.
    HRESULT QueryInterface(const GUID& iid, void** ppv) override {
        if (ppv && iid == IKsPropertySet::IID && !AskFarSide<IKsPropertySet>(This())) {
            *ppv = nullptr;
            return E_NOINTERFACE;
        }
        return Unknown::QueryInterface(iid, ppv);
    }

    HRESULT Connect(IPin*, const AM_MEDIA_TYPE*) override { return E_NOTIMPL; }

    HRESULT ReceiveConnection(IPin* pConnector, const AM_MEDIA_TYPE* pmt) override {
        if (!pConnector || !pmt) return E_POINTER;
        CAutoLock lock(this->m_csPin);
        const HRESULT hr = TakeConnection(pConnector, pmt);
        if (hr != S_OK)
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                              "WARNING. %s: connection not accepted, hr=0x%X\n", this->DisplayName(), hr);
        return hr;
    }

    HRESULT Disconnect() override {
        CAutoLock lock(this->m_csPin);
        if (!this->IsConnected()) return S_FALSE;
        const CComPtr<Filter> spFilter = this->m_apFilter.Get();
        if (spFilter && !spFilter->IsStopped()) return VFW_E_NOT_STOPPED;
        if (spFilter) spFilter->Filter_BreakConnect(this->m_nIndex);
        this->ForgetAllocator();
        this->m_spConnected.Set({});
        ResetStream();
        RestMediaType();
        return S_OK;
    }

    HRESULT EndOfStream() override {
        CComPtr<Filter> spFilter;
        {
            CAutoLock lock(this->m_csPin);
            if (this->m_bFlushing) return E_UNEXPECTED;
            spFilter = this->m_apFilter.Get();
        }
        return spFilter ? spFilter->Filter_EndOfStream(this->m_nIndex) : VFW_E_NOT_CONNECTED;
    }

    HRESULT BeginFlush() override {
        CAutoLock lock(this->m_csPin);
        this->m_bFlushing = true;
        const CComPtr<Filter> spFilter = this->m_apFilter.Get();
        return spFilter ? spFilter->Filter_BeginFlush(this->m_nIndex) : VFW_E_NOT_CONNECTED;
    }

    HRESULT EndFlush() override {
        CAutoLock lock(this->m_csPin);
        const CComPtr<Filter> spFilter = this->m_apFilter.Get();
        const HRESULT hr = spFilter ? spFilter->Filter_EndFlush(this->m_nIndex) : VFW_E_NOT_CONNECTED;
        ResetStream();
        return hr;
    }

    HRESULT NewSegment(REFERENCE_TIME tStart, REFERENCE_TIME tStop, double dRate) override {
        CComPtr<Filter> spFilter;
        {
            CAutoLock lock(this->m_csPin);
            m_Segment = {tStart, tStop, dRate};
            spFilter = this->m_apFilter.Get();
        }
        return spFilter ? spFilter->Filter_NewSegment(this->m_nIndex, tStart, tStop, dRate) : VFW_E_NOT_CONNECTED;
    }

    void JoinFilter(Filter& filter) { this->m_apFilter.Set(&filter); }

    void LeaveFilter() {
        const CComPtr<Filter> spFormer = this->m_apFilter.Take(); // goes when the lock is free
        CAutoLock lock(this->m_csPin);
        ResetStream();
        this->m_pQualitySink = nullptr;
    }

    /// The part of the source that the samples belong to.
    struct Segment {
        REFERENCE_TIME tStart = 0;
        REFERENCE_TIME tStop = 0;
        double dRate = 1.0;
    };
    [[nodiscard]] Segment CurrentSegment() const {
        CAutoLock lock(this->m_csPin);
        return m_Segment;
    }

protected:
    ~CInputPin() override = default;

private:
    Pin& This() { return static_cast<Pin&>(*this); }

    HRESULT TakeConnection(IPin* pConnector, const AM_MEDIA_TYPE* pmt) {
        if (this->IsConnected()) return VFW_E_ALREADY_CONNECTED;
        PIN_DIRECTION direction = PINDIR_INPUT;
        if (FAILED(SEH_IPin::QueryDirection(pConnector, &direction)) || direction == this->m_Direction)
            return VFW_E_INVALID_DIRECTION;
        const CComPtr<Filter> spFilter = this->m_apFilter.Get();
        if (spFilter && !spFilter->IsStopped()) return VFW_E_NOT_STOPPED;
        if (!this->QueryAcceptMT(pmt) || !spFilter) return VFW_E_TYPE_NOT_ACCEPTED;

        CMediaTypeHolder kept;
        HRESULT hr = this->CopyMediaType(kept.Put());
        if (FAILED(hr)) return hr;
        hr = this->SetMediaType(pmt);
        if (hr == S_OK) {
            this->m_spConnected.Set(pConnector);
            hr = spFilter->Filter_CompleteConnect(this->m_nIndex);
            if (hr != S_OK) this->m_spConnected.Set({});
        }
        if (hr != S_OK) static_cast<void>(this->SetMediaType(kept.Get()));
        return hr;
    }

    void ResetStream() {
        this->m_bFlushing = false;
        m_Segment = {};
    }

    /// The type of an unconnected pin: video, and no more is known.
    void RestMediaType() {
        AM_MEDIA_TYPE resting;
        MT_Init(resting, MEDIATYPE_Video, GUID{});
        static_cast<void>(this->SetMediaType(&resting));
    }

    Segment m_Segment;
};

} // namespace vellumcaster
