#pragma once

#include "graph/pin_core.h"
#include "graph/seh_calls.h"
#include "platform/kernel/x87_state.h"
#include "platform/media/mem_input_pin.h"

#include <atomic>
#include <utility>

namespace vellumcaster {

/// What upstream has settled on as the memory of its samples, and the way of a sample into the filter.
/// \tparam Pin  the concrete input pin, which derives from this and from `CPinCore`.
template <class Pin>
class IMemInputPinImpl : public IMemInputPin {
public:
    /// With the pin lock held. The stored allocator replaces the former one, which is decommitted.
    HRESULT NotifyAllocator(IMemAllocator* pAllocator, BOOL bReadOnly) override {
        if (!pAllocator) return E_POINTER;
        ForgetAllocator();
        m_spAllocIn.Set(pAllocator);
        m_bReadOnly = bReadOnly;
        const HRESULT hr = SEH_IMemAllocator::GetProperties(pAllocator, &m_AllocProps);
        if (FAILED(hr))
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                              "WARNING. %s: IMemInputPinImpl::NotifyAllocator(): m_spAllocIn->GetProperties()=0x%X\n",
                              This().DisplayName(), hr);
        return S_OK;
    }

    HRESULT Receive(IMediaSample* pSample) override {
        const CX87Watch watch;
        if (!pSample) return E_POINTER;
        CComPtr<typename Pin::FilterType> spFilter;
        {
            CAutoLock lock(This().m_csPin);
            if (m_bFlushing) {
                VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                                  "WARNING. %s: IMemInputPinImpl::Receive(): pin in flush state, sample rejected\n",
                                  This().DisplayName());
                return S_FALSE;
            }
            spFilter = This().m_apFilter.Get();
            if (!spFilter || spFilter->IsStopped()) {
                VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                                  "WARNING. %s: IMemInputPinImpl::Receive(): FilterState() == State_Stopped\n",
                                  This().DisplayName());
                return VFW_E_WRONG_STATE;
            }
            const HRESULT hr = This().SetMediaTypeFromSample(pSample);
            if (FAILED(hr)) return hr;
        }
        CAutoLock lock(m_csReceive);
        return spFilter->Filter_SendSample(This().m_nIndex, pSample);
    }

    HRESULT ReceiveMultiple(IMediaSample** ppSamples, LONG nSamples, LONG* pnProcessed) override {
        const CX87Watch watch;
        if (!ppSamples) return E_POINTER;
        if (nSamples <= 0) return E_INVALIDARG;
        if (pnProcessed) *pnProcessed = 0;
        HRESULT hr = S_OK;
        LONG nTried = 0;
        while (nTried < nSamples && hr == S_OK)
            hr = Receive(ppSamples[nTried++]);
        if (hr != S_OK)
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                              "WARNING. %s: IMemInputPinImpl::ReceiveMultiple( %u ): pPin->Receive( sample %i )=0x%X\n",
                              This().DisplayName(), nSamples, nTried - 1, hr);
        if (SUCCEEDED(hr) && pnProcessed) *pnProcessed = nTried;
        return hr;
    }

    HRESULT ReceiveCanBlock() override { return S_OK; }

    /// Any thread.
    [[nodiscard]] CComPtr<IMemAllocator> AllocIn() const { return m_spAllocIn.Get(); }
    [[nodiscard]] BOOL IsReadOnly() const { return m_bReadOnly; }

protected:
    ~IMemInputPinImpl() = default;

    Pin& This() { return static_cast<Pin&>(*this); }

    /// With the pin lock held.
    void ForgetAllocator() {
        const CComPtr<IMemAllocator> spFormer = m_spAllocIn.Take();
        static_cast<void>(SEH_IMemAllocator::Decommit(spFormer.Get()));
        m_bReadOnly = 0;
        m_AllocProps = {};
    }

    bool m_bFlushing = false;
    CSharedComPtr<IMemAllocator> m_spAllocIn;
    std::atomic<BOOL> m_bReadOnly = 0; ///< upstream forbids writing to its buffers
    ALLOCATOR_PROPERTIES m_AllocProps;
    CCriticalSection m_csReceive; ///< held from the engine's entry to the end of the delivery downstream
};

/// Asks the filter's hooks in all that concerns allocators.
template <class Pin>
class CMemInputPinFilter : public IMemInputPinImpl<Pin> {
    using Base = IMemInputPinImpl<Pin>;

public:
    HRESULT GetAllocator(IMemAllocator** ppAllocator) override {
        if (!ppAllocator) return E_POINTER;
        *ppAllocator = nullptr;
        CAutoLock lock(this->This().m_csPin);
        const auto spFilter = this->This().m_apFilter.Get();
        const HRESULT hr = spFilter ? spFilter->Filter_GetAllocator(this->This().m_nIndex, ppAllocator) : E_ABORT;
        if (hr != S_OK)
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                              "WARNING. %s: CMemInputPinFilter::GetAllocator(): can't get allocator from filter, "
                              "hr=0x%X\n",
                              this->This().DisplayName(), hr);
        return hr;
    }

    HRESULT NotifyAllocator(IMemAllocator* pAllocator, BOOL bReadOnly) override {
        if (!pAllocator) return E_POINTER;
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath, "%s: IMemInputPin::NotifyAllocator( 0x%X )%s\n",
                          this->This().DisplayName(), pAllocator, bReadOnly ? ", READ ONLY" : "");
        CAutoLock lock(this->This().m_csPin);
        this->ForgetAllocator();
        const auto spFilter = this->This().m_apFilter.Get();
        if (!spFilter) return E_ABORT;
        const HRESULT hr = spFilter->Filter_NotifyAllocator(this->This().m_nIndex, pAllocator, bReadOnly);
        return hr == S_OK ? Base::NotifyAllocator(pAllocator, bReadOnly) : hr;
    }

    HRESULT GetAllocatorRequirements(ALLOCATOR_PROPERTIES* pProps) override {
        if (!pProps) return E_POINTER;
        CAutoLock lock(this->This().m_csPin);
        const auto spFilter = this->This().m_apFilter.Get();
        return spFilter ? spFilter->Filter_GetAllocatorRequirements(this->This().m_nIndex, pProps) : E_ABORT;
    }

protected:
    ~CMemInputPinFilter() = default;
};

} // namespace vellumcaster
