#include "graph/trans_in_place_allocator.h"

#include "graph/memory_allocator.h"
#include "graph/seh_calls.h"
#include "platform/kernel/trace.h"
#include "platform/media/graph_results.h"

#include <utility>

namespace vellumcaster {

HRESULT CTransInPlaceAllocator::AllocatorAgree(IMemInputPin* pMemInput, const UpstreamAllocator& upstream) {
    ALLOCATOR_PROPERTIES offered;
    if (FAILED(SEH_IMemAllocator::GetProperties(upstream.sp.Get(), &offered))) offered = {};
    ALLOCATOR_PROPERTIES required;
    GetRequirements(pMemInput, required);
    MergeRequirements(required, offered);

    CComPtr<IMemAllocator> spDown;
    IMemAllocator* pDown = nullptr;
    const HRESULT hrDown = SEH_IMemInputPin::GetAllocator(pMemInput, &pDown);
    if (SUCCEEDED(hrDown)) spDown.Attach(pDown);
    if (hrDown != S_OK) {
        spDown.Reset();
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                          "%s: CTransInPlaceAllocator::AllocatorAgree(): Downstream filter hasn't allocator\n",
                          m_pszPin);
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
        if (FAILED(SEH_IMemAllocator::GetProperties(spNew.Get(), &offered))) offered = {};
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
    const CComPtr<IMemAllocator> sp = m_sp.Get();
    if (!sp) return VFW_E_NO_ALLOCATOR;
    if (bCommit == m_bCommitted) return S_OK;
    const HRESULT hr = bCommit ? SEH_IMemAllocator::Commit(sp.Get()) : SEH_IMemAllocator::Decommit(sp.Get());
    if (hr != S_OK) return FailureOf(hr, E_FAIL);
    if (bCommit) ReadProperties(*sp);
    m_bCommitted = bCommit;
    return S_OK;
}

void CTransInPlaceAllocator::Reset() {
    const CComPtr<IMemAllocator> sp = m_sp.Take();
    static_cast<void>(SEH_IMemAllocator::Decommit(sp.Get()));
    m_Props = {};
    m_bCommitted = false;
    m_Mode = Mode::None;
}

void CTransInPlaceAllocator::Adopt(CComPtr<IMemAllocator> sp, Mode mode) {
    ReadProperties(*sp);
    m_Mode = mode;
    m_sp.Set(std::move(sp));
}

void CTransInPlaceAllocator::ReadProperties(IMemAllocator& allocator) {
    m_Props = {};
    if (FAILED(SEH_IMemAllocator::GetProperties(&allocator, &m_Props))) m_Props = {};
}

} // namespace vellumcaster
