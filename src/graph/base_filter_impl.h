#pragma once

#include "graph/base_filter.h"
#include "graph/narrow_text.h"
#include "graph/pin_enumerator.h"
#include "platform/com/no_exceptions.h"
#include "platform/com/task_memory.h"
#include "platform/kernel/trace.h"
#include "platform/kernel/x87_state.h"

#include <string_view>
#include <utility>

namespace vellumcaster {

/// The filter half of the framework: states, place in the graph, pins.
///
///     from      call    to                     output's allocator
///     Stopped   Pause   Paused                 committed
///     Stopped   Run     Paused, then Running   committed
///     Paused    Run     Running
///     Paused    Stop    Stopped                decommitted
///     Running   Pause   Paused
///     Running   Stop    Paused, then Stopped   decommitted
///
/// \tparam Filter  derives from this. `m_spIn`, `m_spOut` are its pins; `ResetItemForRun()` is called, under the filter
///         lock, when it leaves Stopped.
template <class Filter>
class IBaseFilterImpl : public IBaseFilter, public CBaseFilter {
public:
    HRESULT GetClassID(GUID* pClassId) override {
        if (!pClassId) return E_INVALIDARG;
        *pClassId = Filter::ClassId();
        return S_OK;
    }

    HRESULT Stop() override {
        const CX87Watch watch;
        const HRESULT hr = PauseFirstIn(State_Running, "Stop", "State_Running");
        if (FAILED(hr)) return hr;
        CAutoLock lock(m_csFilter);
        return SetState(State_Stopped, 0);
    }

    HRESULT Pause() override {
        const CX87Watch watch;
        CAutoLock lock(m_csFilter);
        return SetState(State_Paused, 0);
    }

    HRESULT Run(REFERENCE_TIME tStart) override {
        const CX87Watch watch;
        const HRESULT hr = PauseFirstIn(State_Stopped, "Run", "State_Stopped");
        if (FAILED(hr)) return hr;
        CAutoLock lock(m_csFilter);
        return SetState(State_Running, tStart);
    }

    HRESULT GetState(DWORD, FILTER_STATE* pState) override {
        if (!pState) return E_POINTER;
        *pState = m_State;
        return S_OK;
    }

    HRESULT SetSyncSource(IReferenceClock* pClock) override {
        CComPtr<IReferenceClock> sp(pClock); // the former one goes when the lock is free
        CAutoLock lock(m_csFilter);
        std::swap(m_spClock, sp);
        return S_OK;
    }

    HRESULT GetSyncSource(IReferenceClock** ppClock) override {
        if (!ppClock) return E_POINTER;
        CAutoLock lock(m_csFilter);
        *ppClock = CComPtr<IReferenceClock>(m_spClock).Detach();
        return S_OK;
    }

    HRESULT EnumPins(IEnumPins** ppEnum) override {
        if (!ppEnum) return E_POINTER;
        *ppEnum = nullptr;
        CAutoLock lock(m_csFilter);
        return WithoutExceptions([&] {
            *ppEnum = MakeCounted<CPinEnumerator>(this, This().m_spIn.Get(), This().m_spOut.Get()).Detach();
            return S_OK;
        });
    }

    HRESULT FindPin(const OLECHAR* pszId, IPin** ppPin) override {
        if (!pszId || !ppPin) return E_POINTER;
        *ppPin = nullptr;
        CComPtr<IEnumPins> spEnum;
        HRESULT hr = EnumPins(spEnum.Put());
        if (hr != S_OK) return FailureOf(hr, E_FAIL);
        for (;;) {
            CComPtr<IPin> spPin;
            hr = spEnum->Next(1, spPin.Put(), nullptr);
            if (hr == S_FALSE) return VFW_E_NOT_FOUND;
            if (hr != S_OK) return FailureOf(hr, E_FAIL);
            OLECHAR* pszPin = nullptr;
            hr = spPin->QueryId(&pszPin);
            if (hr != S_OK) return FailureOf(hr, E_FAIL);
            const bool bFound = std::u16string_view(pszPin) == pszId;
            CoTaskMemFree(pszPin);
            if (!bFound) continue;
            *ppPin = spPin.Detach();
            return S_OK;
        }
    }

    HRESULT QueryFilterInfo(FILTER_INFO* pInfo) override {
        if (!pInfo) return E_INVALIDARG;
        return WithoutExceptions([&] {
            WidenText(Name().data(), pInfo->achName);
            pInfo->pGraph = Graph().Detach();
            return S_OK;
        });
    }

    HRESULT JoinFilterGraph(IFilterGraph* pGraph, const OLECHAR* pszName) override {
        CComPtr<IReferenceClock> spFormerClock; // goes when the lock is free
        if (!pGraph) {
            This().m_spOut->LeaveFilter();
            This().m_spIn->LeaveFilter();
        }
        CAutoLock lock(m_csFilter);
        LeaveGraph();
        if (!pGraph) {
            std::swap(m_spClock, spFormerClock);
            m_State = State_Stopped;
            m_tStart = 0;
            return S_OK;
        }
        const HRESULT hr = WithoutExceptions([&] {
            EnterGraph(pGraph, pszName);
            if (!This().m_spIn || !This().m_spOut) return E_FAIL;
            This().m_spIn->JoinFilter(This());
            This().m_spOut->JoinFilter(This());
            return S_OK;
        });
        if (FAILED(hr)) LeaveGraph();
        return hr;
    }

    HRESULT QueryVendorInfo(OLECHAR**) override { return E_NOTIMPL; }

protected:
    ~IBaseFilterImpl() = default;

private:
    Filter& This() { return static_cast<Filter&>(*this); }

    FILTER_STATE StateUnderLock() {
        CAutoLock lock(m_csFilter);
        return m_State;
    }

    /// Goes through Paused on the way from a state that has no way of its own.
    HRESULT PauseFirstIn(FILTER_STATE state, [[maybe_unused]] const char* pszCall,
                         [[maybe_unused]] const char* pszState) {
        if (StateUnderLock() != state) return S_OK;
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                          "WARNING. %s: IBaseFilterImpl::%s(): current state is %s, call Pause() command\n",
                          DisplayName(), pszCall, pszState);
        const HRESULT hr = Pause();
        if (FAILED(hr))
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                              "###Err### %s: IBaseFilterImpl::%s(): Pause()=0x%X\n", DisplayName(), pszCall, hr);
        return hr;
    }

    /// With the filter lock held. A failure leaves the state as it is, but that a filter without both connections is
    /// stopped.
    HRESULT SetState(FILTER_STATE state, REFERENCE_TIME tStart) {
        if (m_State == State_Stopped && state != State_Stopped) This().ResetItemForRun();
        if (state != State_Stopped && !(This().m_spIn->IsConnected() && This().m_spOut->IsConnected())) {
            m_State = State_Stopped;
            return VFW_E_WRONG_STATE;
        }
        const HRESULT hr = This().m_spOut->CommitOutputAllocator(state != State_Stopped);
        if (FAILED(hr)) return hr;
        m_State = state;
        if (state == State_Running) m_tStart = tStart;
        return S_OK;
    }
};

} // namespace vellumcaster
