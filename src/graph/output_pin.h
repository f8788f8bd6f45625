#pragma once

#include "graph/extra_buffer.h"
#include "graph/format_text.h"
#include "graph/media_seeking_impl.h"
#include "graph/pin_impl.h"
#include "graph/seh_calls.h"
#include "graph/trans_in_place_allocator.h"
#include "platform/com/unknown_impl.h"
#include "platform/media/quality_control.h"

#include <utility>

namespace vellumcaster {

/// Notices of quality travel upstream.
template <class Pin>
class IOutputQualityImpl : public IQualityControl {
public:
    HRESULT Notify(IBaseFilter* pSelf, Quality q) override {
        const auto spFilter = This().m_apFilter.Get();
        const HRESULT hr = spFilter ? spFilter->Filter_QualityNotify(This().m_nIndex, pSelf, q) : VFW_E_NOT_CONNECTED;
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                          "%s: IQualityControl::Notify( 0x%X, %s, %i, %s, %s )\n", This().DisplayName(), pSelf,
                          q.Type == Flood ? "Flood" : "Famine", q.Proportion, FormatRefTime(q.Late),
                          FormatRefTime(q.TimeStamp));
        return hr;
    }
    HRESULT SetSink(IQualityControl*) override {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error, "###Err### %s: IQualityControl::SetSink\n",
                          This().DisplayName());
        return E_NOTIMPL;
    }

protected:
    ~IOutputQualityImpl() = default;

private:
    Pin& This() { return static_cast<Pin&>(*this); }
};

/// A filter's output pin: starts the connection on its side, agrees on memory, delivers. It owns no thread.
/// \tparam Filter  the concrete filter. \tparam Pin  the concrete pin, which derives from this.
template <class Filter, class Pin>
class COutputPin : public CUnknownImpl<IPinImpl<Pin>, IOutputQualityImpl<Pin>, IMediaSeekingImpl<Pin>>,
                   public CPinCore<Filter> {
    using Unknown = CUnknownImpl<IPinImpl<Pin>, IOutputQualityImpl<Pin>, IMediaSeekingImpl<Pin>>;

public:
    /// \param pszDisplayName  a literal.
    COutputPin(std::string_view name, const char* pszDisplayName)
        : CPinCore<Filter>(1, PINDIR_OUTPUT, name), m_Allocator(pszDisplayName) {}

    /// `IMediaSeeking` is offered only while the far side has it.
    HRESULT QueryInterface(const GUID& iid, void** ppv) override {
        if (ppv && iid == IMediaSeeking::IID && !AskFarSide<IMediaSeeking>(This())) {
            *ppv = nullptr;
            return E_NOINTERFACE;
        }
        return Unknown::QueryInterface(iid, ppv);
    }

    HRESULT Connect(IPin* pReceivePin, const AM_MEDIA_TYPE* pmt) override {
        if (!pReceivePin) return E_POINTER;
        CAutoLock lock(this->m_csPin);
        HRESULT hr = CanConnect(pReceivePin);
        if (hr == S_OK) hr = FindType(pReceivePin, pmt);
        if (hr == S_OK) {
            hr = AgreeAllocator();
            if (hr == S_OK) {
                VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                                  "*************** %s: connection established\n", this->DisplayName());
                return S_OK;
            }
            if (const CComPtr<Filter> spFilter = this->m_apFilter.Get()) spFilter->Filter_BreakConnect(this->m_nIndex);
            BreakOutput();
        }
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                          "*** WARNING *** %s: connection not accepted, hr=0x%X\n", this->DisplayName(), hr);
        return FailureOf(hr, VFW_E_NO_ACCEPTABLE_TYPES);
    }

    HRESULT ReceiveConnection(IPin*, const AM_MEDIA_TYPE*) override { return E_NOTIMPL; }

    HRESULT Disconnect() override {
        CAutoLock lock(this->m_csPin);
        if (!this->IsConnected()) return S_FALSE;
        const CComPtr<Filter> spFilter = this->m_apFilter.Get();
        if (spFilter && !spFilter->IsStopped()) return VFW_E_NOT_STOPPED;
        if (spFilter) spFilter->Filter_BreakConnect(this->m_nIndex);
        BreakOutput();
        return S_OK;
    }

    /// Upstream's own enumerator while there is an upstream: what this pin can give is what the filter can get.
    HRESULT EnumMediaTypes(IEnumMediaTypes** ppEnum) override {
        if (!ppEnum) return E_POINTER;
        *ppEnum = nullptr;
        CAutoLock lock(this->m_csPin);
        if (const CComPtr<IPin> spFar = AskFarSide<IPin>(This())) return SEH_IPin::EnumMediaTypes(spFar.Get(), ppEnum);
        return IPinImpl<Pin>::EnumMediaTypes(ppEnum);
    }

    HRESULT EndOfStream() override { return E_NOTIMPL; }
    HRESULT BeginFlush() override { return E_NOTIMPL; }
    HRESULT EndFlush() override { return E_NOTIMPL; }
    HRESULT NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) override { return E_NOTIMPL; }

    /// Hands a sample to downstream. \return its answer; E_INVALIDARG without a connection; E_UNEXPECTED after a fault.
    HRESULT SendSample(IMediaSample* pSample) {
        // A delivery may outlast the connection, which ends while the filter is stopped.
        const CComPtr<IMemInputPin> spMemInput = m_spMemInput.Get();
        const HRESULT hr = SEH_IMemInputPin::Receive(spMemInput.Get(), pSample);
        if (hr == S_FALSE)
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                              "%s: SendSample(): m_spMemInput->Receive()=S_FALSE\n", this->DisplayName());
        if (FAILED(hr))
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                              "###Err### %s: SendSample(): m_spMemInput->Receive()=0x%X\n", this->DisplayName(), hr);
        return hr;
    }

    /// Attempts each type of a walk, from its start; the first that the peer takes wins.
    /// \return S_OK; the failure with which the walk ended; VFW_E_NO_ACCEPTABLE_TYPES at its end.
    HRESULT TryMediaTypes(IPin* pReceivePin, IEnumMediaTypes* pEnum) {
        HRESULT hr = SEH_IEnumMediaTypes::Reset(pEnum);
        if (FAILED(hr)) return hr;
        for (;;) {
            AM_MEDIA_TYPE* pmt = nullptr;
            ULONG cFetched = 0;
            hr = SEH_IEnumMediaTypes::Next(pEnum, 1, &pmt, &cFetched);
            if (hr != S_OK) return FailureOf(hr, VFW_E_NO_ACCEPTABLE_TYPES);
            if (!pmt) return E_FAIL;
            const CMediaTypePtr spmt(pmt);
            if (AttemptConnection(pReceivePin, pmt) == S_OK) return S_OK;
        }
    }

    /// Brings the allocator into the state that the filter goes to.
    /// \return S_OK; VFW_E_NOT_CONNECTED; VFW_E_NO_ALLOCATOR; the allocator's failure.
    HRESULT CommitOutputAllocator(bool bCommit) {
        if (!this->IsConnected()) return VFW_E_NOT_CONNECTED;
        if (!m_Allocator.Get()) return VFW_E_NO_ALLOCATOR;
        CAutoLock lock(this->m_csPin);
        return m_Allocator.Commit(bCommit);
    }

    void JoinFilter(Filter& filter) { this->m_apFilter.Set(&filter); }

    void LeaveFilter() { this->m_apFilter.Set({}); }

    CTransInPlaceAllocator m_Allocator;
    CSharedComPtr<IMemInputPin> m_spMemInput; ///< downstream's, once the allocator is agreed on
    CExtraBuffer m_Extra;                     ///< for frames of the present type

protected:
    ~COutputPin() override = default;

    void OnPictureChanged(const PictureFormat& pf, bool bSet) override {
        if (const CComPtr<Filter> spFilter = this->m_apFilter.Get()) spFilter->Filter_OutputChanged(pf);
        if (bSet) m_Extra.SizeFor(pf);
    }

private:
    Pin& This() { return static_cast<Pin&>(*this); }

    /// Takes what a broken connection leaves, and has the peer forget it too.
    void BreakOutput() {
        if (!this->IsConnected()) return;
        m_Allocator.Reset();
        m_spMemInput.Set({});
        const CComPtr<IPin> spPeer = this->m_spConnected.Take();
        static_cast<void>(SEH_IPin::Disconnect(spPeer.Get()));
    }

    HRESULT CanConnect(IPin* pReceivePin) {
        if (this->IsConnected()) return VFW_E_ALREADY_CONNECTED;
        PIN_DIRECTION direction = PINDIR_OUTPUT;
        if (FAILED(SEH_IPin::QueryDirection(pReceivePin, &direction)) || direction == this->m_Direction)
            return VFW_E_INVALID_DIRECTION;
        const CComPtr<Filter> spFilter = this->m_apFilter.Get();
        return spFilter && !spFilter->IsStopped() ? VFW_E_NOT_STOPPED : S_OK;
    }

    HRESULT FindType(IPin* pReceivePin, const AM_MEDIA_TYPE* pmt) {
        if (MT_IsSet(pmt)) return AttemptConnection(pReceivePin, pmt);
        HRESULT hr = AgreeExternMT(pReceivePin);
        if (hr != S_OK) hr = AgreeInnerMT(pReceivePin);
        const CComPtr<Filter> spFilter = this->m_apFilter.Get();
        return hr != S_OK && spFilter ? spFilter->Filter_TryUpstreamTypes(this->m_nIndex, pReceivePin) : hr;
    }

    HRESULT AgreeExternMT(IPin* pReceivePin) {
        CComPtr<IEnumMediaTypes> spEnum;
        return TryTypesOf(SEH_IPin::EnumMediaTypes(pReceivePin, spEnum.Put()), spEnum, pReceivePin, "AgreeExternMT");
    }

    HRESULT AgreeInnerMT(IPin* pReceivePin) {
        CComPtr<IEnumMediaTypes> spEnum;
        return TryTypesOf(EnumMediaTypes(spEnum.Put()), spEnum, pReceivePin, "AgreeInnerMT");
    }

    HRESULT TryTypesOf(HRESULT hrEnum, CComPtr<IEnumMediaTypes>& spEnum, IPin* pReceivePin,
                       [[maybe_unused]] const char* pszRound) {
        HRESULT hr = hrEnum;
        if (hr == S_OK)
            hr = TryMediaTypes(pReceivePin, spEnum.Get());
        else if (FAILED(hr))
            static_cast<void>(spEnum.Detach()); // what a failed call leaves there is nothing to release
        if (hr == S_OK) {
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath, "%s: %s() successful\n",
                              this->DisplayName(), pszRound);
            return S_OK;
        }
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath, "%s: %s() FAILED, hr=0x%X\n",
                          this->DisplayName(), pszRound, hr);
        return FailureOf(hr, VFW_E_NO_ACCEPTABLE_TYPES);
    }

    HRESULT AttemptConnection(IPin* pReceivePin, const AM_MEDIA_TYPE* pmt) {
        if (!pReceivePin || !pmt) return E_POINTER;
        if (!this->QueryAcceptMT(pmt)) return VFW_E_TYPE_NOT_ACCEPTED;
        CMediaTypeHolder kept;
        HRESULT hr = this->CopyMediaType(kept.Put());
        if (FAILED(hr)) return hr;
        hr = this->SetMediaType(pmt);
        if (hr == S_OK) hr = ExecConnection(pReceivePin);
        if (hr == S_OK) return S_OK;
        static_cast<void>(this->SetMediaType(kept.Get()));
        return FailureOf(hr, VFW_E_TYPE_NOT_ACCEPTED);
    }

    HRESULT ExecConnection(IPin* pReceivePin) {
        CMediaTypeHolder copy;
        HRESULT hr = this->CopyMediaType(copy.Put());
        if (hr == S_OK && !MT_IsSet(copy.Get())) hr = VFW_E_TYPE_NOT_ACCEPTED;
        if (hr != S_OK) return FailureOf(hr, VFW_E_TYPE_NOT_ACCEPTED);

        const CComPtr<IPin> spPeer(pReceivePin);
        this->m_spConnected.Set(spPeer);
        hr = SEH_IPin::ReceiveConnection(spPeer.Get(), &This(), copy.Get());
        if (hr == S_OK) {
            const CComPtr<Filter> spFilter = this->m_apFilter.Get();
            hr = spFilter ? spFilter->Filter_CompleteConnect(this->m_nIndex) : E_ABORT;
            if (hr == S_OK) return S_OK;
            static_cast<void>(SEH_IPin::Disconnect(spPeer.Get()));
        }
        this->m_spConnected.Set({});
        return FailureOf(hr, VFW_E_TYPE_NOT_ACCEPTED);
    }

    HRESULT AgreeAllocator() {
        const CComPtr<IPin> spPeer = this->Peer();
        const CComPtr<Filter> spFilter = this->m_apFilter.Get();
        if (!spPeer || !spFilter) return VFW_E_NOT_CONNECTED;
        CComPtr<IMemInputPin> spMemInput;
        HRESULT hr = SEH_IUnknown::Ask(spPeer.Get(), spMemInput);
        UpstreamAllocator upstream;
        if (SUCCEEDED(hr)) hr = AskUpstream(*spFilter, upstream);
        if (SUCCEEDED(hr)) hr = m_Allocator.AllocatorAgree(spMemInput.Get(), upstream);
        if (hr == S_OK) {
            m_spMemInput.Set(std::move(spMemInput));
            spFilter->CompareAllocators();
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath, "%s: Allocator agreement successful\n",
                              this->DisplayName());
            return S_OK;
        }
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath, "%s: Allocator agreement FAILED, hr=0x%X\n",
                          this->DisplayName(), hr);
        return FailureOf(hr, E_FAIL);
    }

    HRESULT AskUpstream(Filter& filter, UpstreamAllocator& upstream) {
        bool bPass = false;
        const HRESULT hr =
            filter.Filter_GetTransInPlaceAlloc(this->m_nIndex, upstream.sp.Put(), &bPass, &upstream.bReadOnly);
        if (FAILED(hr))
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                              "###Err### %s: CTransInPlaceAllocator::AllocatorAgree(): "
                              "Filter_GetTransInPlaceAlloc()=0x%X\n",
                              this->DisplayName(), hr);
        return hr;
    }
};

} // namespace vellumcaster
