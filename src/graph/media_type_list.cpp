#include "graph/media_type_list.h"

#include "graph/seh_calls.h"
#include "platform/com/task_memory.h"

#include <vellumcaster/counted_ptr.h>

#include <algorithm>
#include <new>
#include <utility>

namespace vellumcaster {

namespace {

constexpr int nMostWalks = 16;

/// A success that the call has no business to answer is a failure.
HRESULT FailureOf(HRESULT hr) { return FAILED(hr) ? hr : E_FAIL; }

} // namespace

HRESULT CMediaTypeList::Add(CMediaTypePtr spmt) {
    if (m_nCount == m_nCapacity)
        if (const HRESULT hr = Grow(std::max<std::size_t>(m_nCapacity * 2, 1)); hr != S_OK) return hr;
    AM_MEDIA_TYPE* const pShell = spmt.release();
    m_Types[m_nCount++] = *pShell;
    CoTaskMemFree(pShell);
    return S_OK;
}

HRESULT CMediaTypeList::Append(CMediaTypeList& source) {
    const std::size_t nAll = m_nCount + source.m_nCount;
    if (source.m_nCount == 0) return S_OK;
    if (nAll >= m_nCapacity)
        if (const HRESULT hr = Grow(m_nCapacity == 0 ? nAll : nAll * 2); hr != S_OK) return hr;
    std::copy_n(source.m_Types.get(), source.m_nCount, m_Types.get() + m_nCount);
    m_nCount = nAll;
    source.m_nCount = 0;
    return S_OK;
}

HRESULT CMediaTypeList::LoadFromEnum(IEnumMediaTypes* pEnum) {
    if (!pEnum) return E_INVALIDARG;
    Clear();
    HRESULT hr = SEH_IEnumMediaTypes::Reset(pEnum);
    if (FAILED(hr)) return hr;
    do
        hr = AddNextOf(pEnum);
    while (hr == S_OK);
    if (hr == S_FALSE) return S_OK;
    Clear();
    return hr;
}

HRESULT CMediaTypeList::LoadFromPin(IPin* pPin) {
    IEnumMediaTypes* pEnum = nullptr;
    HRESULT hr = SEH_IPin::EnumMediaTypes(pPin, &pEnum);
    CComPtr<IEnumMediaTypes> spEnum;
    if (SUCCEEDED(hr)) spEnum.Attach(pEnum);
    if (hr == S_FALSE) return hr;
    if (hr != S_OK) return FailureOf(hr);

    CMediaTypeList scratch;
    int nWalks = 0;
    do
        hr = scratch.LoadFromEnum(spEnum.Get());
    while (hr == VFW_E_ENUM_OUT_OF_SYNC && ++nWalks < nMostWalks);
    if (hr != S_OK) return FailureOf(hr);
    return scratch.Types().empty() ? S_FALSE : Append(scratch);
}

void CMediaTypeList::Clear() { std::for_each_n(m_Types.get(), std::exchange(m_nCount, 0), MT_Free); }

/// Where the call did not succeed, what the enumerator left in the pointer is not looked at.
HRESULT CMediaTypeList::AddNextOf(IEnumMediaTypes* pEnum) {
    AM_MEDIA_TYPE* pmt = nullptr;
    ULONG cFetched = 0;
    const HRESULT hr = SEH_IEnumMediaTypes::Next(pEnum, 1, &pmt, &cFetched);
    if (hr != S_OK) return hr;
    return pmt ? Add(CMediaTypePtr(pmt)) : E_FAIL;
}

HRESULT CMediaTypeList::Grow(std::size_t nCapacity) {
    std::unique_ptr<AM_MEDIA_TYPE[]> types(new (std::nothrow) AM_MEDIA_TYPE[nCapacity]);
    if (!types) return E_OUTOFMEMORY;
    std::copy_n(m_Types.get(), m_nCount, types.get());
    m_Types = std::move(types);
    m_nCapacity = nCapacity;
    return S_OK;
}

} // namespace vellumcaster
