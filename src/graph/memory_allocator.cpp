#include "graph/memory_allocator.h"

#include "graph/media_type_match.h"
#include "graph/seh_calls.h"
#include "platform/com/no_exceptions.h"
#include "platform/kernel/trace.h"
#include "platform/media/graph_results.h"

#include <utility>

namespace vellumcaster {

HRESULT CMemoryAllocator::Make(CComPtr<CMemoryAllocator>& sp) {
    return WithoutExceptions([&] {
        CComPtr<CMemoryAllocator> spNew = MakeCounted<CMemoryAllocator>();
        if (spNew->m_State == State::None) return E_OUTOFMEMORY;
        sp = std::move(spNew);
        return S_OK;
    });
}

ULONG CMemoryAllocator::Release() {
    if constexpr (bTracing) {
        AddRef(); // so that it can be looked at
        const ULONG cOthers = CUnknownImpl::Release() - 1;
        CAutoLock lock(m_cs);
        // The one that is left is its own: nobody will ever decommit it.
        if (cOthers == 1 && m_State == State::AllFree)
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                              "###Err### CMemoryAllocator::InternalRelease(): IMemAllocator::Decommit() isn't "
                              "called, memory isn't freed\n");
    }
    return CUnknownImpl::Release();
}

HRESULT CMemoryAllocator::SetProperties(ALLOCATOR_PROPERTIES* pRequest, ALLOCATOR_PROPERTIES* pActual) {
    if (!pRequest || !pActual) return E_POINTER;
    ALLOCATOR_PROPERTIES props = *pRequest;
    *pActual = {};
    CAutoLock lock(m_cs);
    switch (m_State) {
    case State::None: return E_ABORT;
    case State::AllFree:
    case State::SomeOut:
    case State::NoneFree: return VFW_E_ALREADY_COMMITTED;
    case State::Pending: return VFW_E_BUFFERS_OUTSTANDING;
    case State::Initialised:
    case State::Set: break;
    }
    const HRESULT hr = CAllocatorBuffers::Correct(props);
    if (FAILED(hr)) return hr;
    m_Props = *pActual = props;
    m_State = State::Set;
    return hr;
}

HRESULT CMemoryAllocator::GetProperties(ALLOCATOR_PROPERTIES* pProps) {
    if (!pProps) return E_POINTER;
    CAutoLock lock(m_cs);
    if (m_State == State::None) return E_ABORT;
    if (m_State == State::Initialised) return VFW_E_BUFFER_NOTSET;
    *pProps = m_Props;
    return S_OK;
}

HRESULT CMemoryAllocator::Commit() {
    CAutoLock lock(m_cs);
    switch (m_State) {
    case State::None: return E_ABORT;
    case State::Initialised: return E_FAIL;
    case State::Set: break;
    case State::AllFree:
    case State::SomeOut:
    case State::NoneFree: return S_OK;
    case State::Pending: m_State = m_Buffers.FreeCount() == 0 ? State::NoneFree : State::SomeOut; return S_OK;
    }
    const HRESULT hr = MakeMemory();
    if (FAILED(hr)) return hr;
    AddRef();
    m_State = State::AllFree;
    return S_OK;
}

HRESULT CMemoryAllocator::Decommit() {
    CComPtr<IMemAllocator> spOwnReference; // goes when the lock is free
    CAutoLock lock(m_cs);
    switch (m_State) {
    case State::None: return E_ABORT;
    case State::Initialised: return E_FAIL;
    case State::Set: return S_OK;
    case State::AllFree:
        m_State = State::Set;
        spOwnReference.Attach(this);
        return S_OK;
    case State::SomeOut:
    case State::NoneFree:
    case State::Pending: break;
    }
    m_State = State::Pending;
    WakeWaiters();
    return S_OK;
}

HRESULT CMemoryAllocator::GetBuffer(IMediaSample** ppBuffer, REFERENCE_TIME*, REFERENCE_TIME*, DWORD dwFlags) {
    if (!ppBuffer) return E_POINTER;
    *ppBuffer = nullptr;
    for (;;) {
        {
            CAutoLock lock(m_cs);
            switch (m_State) {
            case State::None: return E_ABORT;
            case State::Initialised: return VFW_E_BUFFER_NOTSET;
            case State::Set:
            case State::Pending: return VFW_E_NOT_COMMITTED;
            case State::AllFree:
            case State::SomeOut: {
                const HRESULT hr = MakeSample(ppBuffer);
                if (hr == S_OK) m_State = State::SomeOut;
                if (hr != S_FALSE) return hr;
                if (m_State == State::AllFree) return E_FAIL;
                m_State = State::NoneFree;
                break;
            }
            case State::NoneFree: break;
            }
            if (dwFlags & AM_GBF_NOWAIT) return VFW_E_TIMEOUT;
            ++m_cWaiters;
        }
        m_Semaphore.Wait();
    }
}

HRESULT CMemoryAllocator::ReleaseBuffer(IMediaSample* pBuffer) { return pBuffer ? TakeBack() : E_POINTER; }

HRESULT CMemoryAllocator::TakeBack() {
    CComPtr<IMemAllocator> spOwnReference; // goes when the lock is free
    CComPtr<IMemAllocatorNotifyCallbackTemp> spNotify;
    {
        CAutoLock lock(m_cs);
        switch (m_State) {
        case State::AllFree: return S_OK;
        case State::NoneFree: m_State = State::SomeOut; [[fallthrough]];
        case State::SomeOut:
            if (m_Buffers.AreAllFree()) m_State = State::AllFree;
            break;
        case State::Pending:
            if (m_Buffers.AreAllFree()) {
                m_State = State::Set;
                spOwnReference.Attach(this);
            }
            break;
        case State::None:
        case State::Initialised:
        case State::Set: return E_ABORT;
        }
        spNotify = m_spNotify;
    }
    static_cast<void>(SEH_IMemAllocatorNotifyCallbackTemp::NotifyRelease(spNotify.Get()));
    return S_OK;
}

HRESULT CMemoryAllocator::SetNotify(IMemAllocatorNotifyCallbackTemp* pNotify) {
    CComPtr<IMemAllocatorNotifyCallbackTemp> sp(pNotify); // the former one goes when the lock is free
    CAutoLock lock(m_cs);
    std::swap(sp, m_spNotify);
    return S_OK;
}

HRESULT CMemoryAllocator::GetFreeCount(LONG* plBuffersFree) {
    if (!plBuffersFree) return E_POINTER;
    *plBuffersFree = 0;
    CAutoLock lock(m_cs);
    switch (m_State) {
    case State::None: return E_ABORT;
    case State::Initialised: return VFW_E_BUFFER_NOTSET;
    case State::Set:
    case State::Pending: return VFW_E_NOT_COMMITTED;
    case State::AllFree:
    case State::SomeOut:
    case State::NoneFree: break;
    }
    *plBuffersFree = m_Buffers.FreeCount();
    return S_OK;
}

HRESULT CMemoryAllocator::SetMediaType(const AM_MEDIA_TYPE* pmt) {
    CAutoLock lock(m_cs);
    return m_PendingType.Assign(pmt);
}

HRESULT CMemoryAllocator::MakeMemory() {
    return WithoutExceptions([&] {
        m_Pool.Make(static_cast<std::size_t>(m_Props.cBuffers));
        return m_Buffers.Make(m_Props);
    });
}

HRESULT CMemoryAllocator::MakeSample(IMediaSample** ppSample) {
    BYTE* pBuffer = m_Buffers.Pop();
    if (!pBuffer) return S_FALSE;
    auto* pSample = new (m_Pool.Pop()) CMediaSample(*this, pBuffer, m_Props.cbBuffer);
    if (MT_IsSet(m_PendingType.Get())) {
        static_cast<void>(pSample->SetMediaType(m_PendingType.Get()));
        m_PendingType.Clear();
    }
    *ppSample = pSample;
    return S_OK;
}

void CMemoryAllocator::EndSample(CMediaSample* pSample) {
    const CComPtr<IMemAllocator> spAlive(this);
    CAutoLock lock(m_cs);
    BYTE* pBuffer = nullptr;
    static_cast<void>(pSample->GetPointer(&pBuffer));
    pSample->~CMediaSample();
    m_Buffers.Push(pBuffer);
    m_Pool.Push(pSample);
    static_cast<void>(TakeBack());
    WakeWaiters(); // NOLINT(clang-analyzer-cplusplus.NewDelete): the reference above keeps the object
}

void CMemoryAllocator::WakeWaiters() { m_Semaphore.Release(std::exchange(m_cWaiters, 0)); }

} // namespace vellumcaster
