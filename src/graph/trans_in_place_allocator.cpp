#include "graph/trans_in_place_allocator.h"

#include "graph/memory_allocator.h"
#include "platform/kernel/trace.h"
#include "platform/media/graph_results.h"

#include <utility>

namespace vellumcaster {

HRESULT CTransInPlaceAllocator::AllocatorAgree(IMemInputPin* pMemInput, const UpstreamAllocator& upstream) {
    ALLOCATOR_PROPERTIES offered;
    if (upstream.sp && FAILED(upstream.sp->GetProperties(&offered))) offered = {};
    ALLOCATOR_PROPERTIES required;
    GetRequirements(pMemInput, required);
    MergeRequirements(required, offered);

    CComPtr<IMemAllocator> spDown;
    if (pMemInput->GetAllocator(spDown.Put()) != S_OK) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                          "%s: CTransInPlaceAllocator::AllocatorAgree(): Downstream filter hasn't allocator\n",
                          m_pszPin);
        spDown.Reset();
    }

    HRESULT hr = E_FAIL;
    if (upstream.sp && !upstream.bReadOnly) {
        hr = TryAllocator(pMemInput, upstream.sp.Get(), required, false);
        if (hr == S_OK) return Adopt(upstream.sp, Mode::Upstream), S_OK;
    }
    if (spDown) {
        hr = TryAllocator(pMemInput, spDown.Get(), required, false);
        if (hr == S_OK) return Adopt(std::move(spDown), Mode::Downstream), S_OK;
    }
    CComPtr<CMemoryAllocator> spOwn;
    hr = CMemoryAllocator::Make(spOwn);
    if (hr == S_OK) hr = TryAllocator(pMemInput, spOwn.Get(), required, false);
    if (hr == S_OK) return Adopt(spOwn.Get(), Mode::Own), S_OK;
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                      "###Err### %s: CTransInPlaceAllocator::AllocatorAgree(): allocator agreement failed, hr=0x%X\n",
                      m_pszPin, hr);
    return FailureOf(hr, E_FAIL);
}

HRESULT CTransInPlaceAllocator::ReagreeUpstreamAllocator(IMemInputPin* pMemInput, IMemAllocator* pAllocator,
                                                         bool bReadOnly) {
    if (!pMemInput || !pAllocator) return E_POINTER;
    const CComPtr<IMemAllocator> spNew(pAllocator);
    Reset();
    ALLOCATOR_PROPERTIES required;
    if (!bReadOnly) {
        ALLOCATOR_PROPERTIES offered;
        if (FAILED(spNew->GetProperties(&offered))) offered = {};
        GetRequirements(pMemInput, required);
        MergeRequirements(required, offered);
    }
    const HRESULT hr = TryAllocator(pMemInput, spNew.Get(), required, bReadOnly);
    if (hr != S_OK) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### %s: CTransInPlaceAllocator::ReagreeUpstreamAllocator(): allocator agreement "
                          "failed, hr=0x%X\n",
                          m_pszPin, hr);
        return FailureOf(hr, E_FAIL);
    }
    Adopt(spNew, Mode::Upstream);
    return S_OK;
}

HRESULT CTransInPlaceAllocator::Commit(bool bCommit) {
    if (!m_sp) return VFW_E_NO_ALLOCATOR;
    if (bCommit == m_bCommitted) return S_OK;
    const HRESULT hr = bCommit ? m_sp->Commit() : m_sp->Decommit();
    if (hr != S_OK) return FailureOf(hr, E_FAIL);
    if (bCommit && FAILED(m_sp->GetProperties(&m_Props))) m_Props = {};
    m_bCommitted = bCommit;
    return S_OK;
}

void CTransInPlaceAllocator::Reset() {
    if (m_sp) m_sp->Decommit();
    m_sp.Reset();
    m_Props = {};
    m_bCommitted = false;
    m_Mode = Mode::None;
}

void CTransInPlaceAllocator::Adopt(CComPtr<IMemAllocator> sp, Mode mode) {
    m_Props = {};
    if (FAILED(sp->GetProperties(&m_Props))) m_Props = {};
    m_sp = std::move(sp);
    m_Mode = mode;
}

} // namespace vellumcaster
