#pragma once

#include "graph/media_type_match.h"
#include "graph/memory_allocator.h"
#include "graph/seh_calls.h"
#include "graph/trans_in_place_allocator.h"
#include "platform/media/graph_results.h"
#include "platform/media/quality_control.h"

#include <atomic>

namespace vellumcaster {

/// The hooks of a filter that draws on frames in place: what goes out has the type that comes in, and where it can be the
/// same memory too. The index says which pin asks: 0 the input, 1 the output.
/// \tparam Filter  derives from this and from `CBaseFilter`; has the pins `m_spIn`, `m_spOut`, and
///         `UsesExtraBuffer()`.
template <class Filter>
class CTransInPlaceHooks {
public:
    /// Whether the far side takes a type, so that a type is only taken when the whole chain can hold it.
    [[nodiscard]] bool Filter_QueryAcceptMT(int nPinIndex, const AM_MEDIA_TYPE* pmt) {
        if (!MT_IsSet(pmt)) return false;
        switch (nPinIndex) {
        case 0: {
            const CComPtr<IPin> spPeer = Out().Peer();
            if (!spPeer || SEH_IPin::QueryAccept(spPeer.Get(), pmt) == S_OK) return true;
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                              "%s: Filter_QueryAcceptMT(): Downstream filter don't accept media type\n",
                              In().DisplayName());
            return false;
        }
        case 1: {
            const CComPtr<IPin> spPeer = In().Peer();
            if (!spPeer) return false;
            if (Out().IsConnected())
                VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                                  "%s: Filter_QueryAcceptMT(): Inverse query about change of media type\n",
                                  Out().DisplayName());
            if (SEH_IPin::QueryAccept(spPeer.Get(), pmt) == S_OK) return true;
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                              "%s: Filter_QueryAcceptMT(): Upstream filter don't accept media type\n",
                              Out().DisplayName());
            return false;
        }
        default: return false;
        }
    }

    /// A pin's connection ends: its type goes, and with the last connection the other pin's.
    void Filter_BreakConnect(int nPinIndex) {
        if (nPinIndex == 0) static_cast<void>(In().SetMediaType(nullptr));
        const bool bOutputKeepsType = nPinIndex == 0 ? Out().IsConnected() : In().IsConnected();
        if (!bOutputKeepsType) static_cast<void>(Out().SetMediaType(nullptr));
        m_bSeparated = false;
    }

    /// The third round of the output's connection: all that upstream can make.
    HRESULT Filter_TryUpstreamTypes(int /*nPinIndex*/, IPin* pReceivePin) {
        const CComPtr<IPin> spPeer = In().Peer();
        if (!spPeer) return E_FAIL;
        CComPtr<IEnumMediaTypes> spEnum;
        const HRESULT hr = SEH_IPin::EnumMediaTypes(spPeer.Get(), spEnum.Put());
        if (hr == S_OK) return Out().TryMediaTypes(pReceivePin, spEnum.Get());
        if (FAILED(hr)) static_cast<void>(spEnum.Detach()); // what a failed call leaves there is nothing to release
        return FailureOf(hr, E_FAIL);
    }

    /// What the output has of upstream's memory.
    /// \return S_OK; S_FALSE: there is no upstream.
    HRESULT Filter_GetTransInPlaceAlloc(int /*nPinIndex*/, IMemAllocator** ppAllocator, bool* pbPass,
                                        bool* pbReadOnly) {
        *ppAllocator = nullptr;
        *pbPass = *pbReadOnly = false;
        if (!In().IsConnected()) return S_FALSE;
        *ppAllocator = In().AllocIn().Detach();
        *pbReadOnly = In().IsReadOnly() == 1;
        *pbPass = !*pbReadOnly;
        return S_OK;
    }

    /// What upstream is told to use: the output's allocator where samples may pass through, else one of the filter's.
    HRESULT Filter_GetAllocator(int /*nPinIndex*/, IMemAllocator** ppAllocator) {
        if (!This().UsesExtraBuffer() && Out().IsConnected() && HasOneType()) {
            *ppAllocator = Out().m_Allocator.Get().Detach();
            return S_OK;
        }
        CComPtr<CMemoryAllocator> spOwn;
        const HRESULT hr = CMemoryAllocator::Make(spOwn);
        *ppAllocator = spOwn.Detach();
        return hr;
    }

    /// Upstream needs what downstream needs. \return E_NOTIMPL without downstream.
    HRESULT Filter_GetAllocatorRequirements(int /*nPinIndex*/, ALLOCATOR_PROPERTIES* pProps) {
        const CComPtr<IPin> spPeer = Out().Peer();
        if (!spPeer) return E_NOTIMPL;
        CComPtr<IMemInputPin> spMemInput;
        const HRESULT hr = SEH_IUnknown::Ask(spPeer.Get(), spMemInput);
        return FAILED(hr) ? hr : SEH_IMemInputPin::GetAllocatorRequirements(spMemInput.Get(), pProps);
    }

    /// Upstream has settled on its memory.
    HRESULT Filter_NotifyAllocator(int nPinIndex, IMemAllocator* pAllocator, BOOL bReadOnly) {
        const HRESULT hr = ChooseAllocators(nPinIndex, pAllocator, bReadOnly);
        const bool bTellDownstream = !This().UsesExtraBuffer() && !m_bSeparated && Out().IsConnected();
        const CComPtr<IMemInputPin> spMemInput = Out().m_spMemInput.Get();
        if (hr != S_OK || !bTellDownstream || !spMemInput) return hr;
        return SEH_IMemInputPin::NotifyAllocator(spMemInput.Get(), pAllocator, bReadOnly);
    }

    HRESULT Filter_EndOfStream(int /*nPinIndex*/) { return TellDownstream(SEH_IPin::EndOfStream); }
    HRESULT Filter_BeginFlush(int /*nPinIndex*/) { return TellDownstream(SEH_IPin::BeginFlush); }
    HRESULT Filter_EndFlush(int /*nPinIndex*/) { return TellDownstream(SEH_IPin::EndFlush); }
    HRESULT Filter_NewSegment(int /*nPinIndex*/, REFERENCE_TIME tStart, REFERENCE_TIME tStop, double dRate) {
        return TellDownstream(SEH_IPin::NewSegment, tStart, tStop, dRate);
    }

    /// To the input pin's sink where one was set, else upstream.
    HRESULT Filter_QualityNotify(int /*nPinIndex*/, IBaseFilter* pSender, const Quality& q) {
        const CComPtr<IPin> spPeer = In().Peer();
        if (!spPeer) return VFW_E_NOT_CONNECTED;
        if (IQualityControl* pSink = In().QualitySink()) return SEH_IQualityControl::Notify(pSink, pSender, q);
        CComPtr<IQualityControl> spUpstream;
        const HRESULT hr = SEH_IUnknown::Ask(spPeer.Get(), spUpstream);
        return FAILED(hr) ? hr : SEH_IQualityControl::Notify(spUpstream.Get(), pSender, q);
    }

    /// An interface of the pin across the filter.
    HRESULT Filter_QueryRedirect(int nPinIndex, const GUID& iid, void** ppv) {
        const CComPtr<IPin> spPeer = nPinIndex == 0 ? Out().Peer() : nPinIndex == 1 ? In().Peer() : CComPtr<IPin>();
        return spPeer ? SEH_IUnknown::QueryInterface(spPeer.Get(), iid, ppv) : E_NOINTERFACE;
    }

    /// Finds out whether samples pass through, once both sides have settled.
    void CompareAllocators() { m_bSeparated = !IsSameObject(In().AllocIn().Get(), Out().m_Allocator.Get().Get()); }

    /// Input and output run on separate allocators: each frame is copied into a sample of the output's.
    std::atomic<bool> m_bSeparated = false;

protected:
    ~CTransInPlaceHooks() = default;

private:
    Filter& This() { return static_cast<Filter&>(*this); }
    auto& In() { return *This().m_spIn; }
    auto& Out() { return *This().m_spOut; }

    HRESULT ChooseAllocators(int /*nPinIndex*/, IMemAllocator* pAllocator, BOOL bReadOnly) {
        if (!Out().IsConnected()) return S_OK;
        CTransInPlaceAllocator& output = Out().m_Allocator;
        m_bSeparated = !IsSameObject(pAllocator, output.Get().Get());
        if (m_bSeparated && output.GetMode() == CTransInPlaceAllocator::Mode::Upstream) {
            const HRESULT hr =
                output.ReagreeUpstreamAllocator(Out().m_spMemInput.Get().Get(), pAllocator, bReadOnly == 1);
            if (FAILED(hr)) {
                VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                                  "###Err### %s: Filter_NotifyAllocator(): Re-agreement of allocator for output pin "
                                  "failed, hr=0x%X\n",
                                  This().DisplayName(), hr);
                static_cast<void>(Out().Disconnect());
                return hr;
            }
            m_bSeparated = !IsSameObject(pAllocator, output.Get().Get());
        }
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                          "@@@@ %s: Filter_NotifyAllocator(): Use %s allocator%s\n", This().DisplayName(),
                          m_bSeparated ? "separated" : "through-pass", m_bSeparated ? "s" : "");
        return S_OK;
    }

    [[nodiscard]] bool HasOneType() {
        CMediaTypeHolder in;
        CMediaTypeHolder out;
        return In().CopyMediaType(in.Put()) == S_OK && Out().CopyMediaType(out.Put()) == S_OK &&
               MT_IsEqual(out.Get(), in.Get());
    }

    template <class... Parameters>
    HRESULT TellDownstream(const CGuardedMethod<IPin, Parameters...>& method, Parameters... arguments) {
        const CComPtr<IPin> spPeer = Out().Peer();
        return spPeer ? method(spPeer.Get(), arguments...) : VFW_E_NOT_CONNECTED;
    }
};

} // namespace vellumcaster
