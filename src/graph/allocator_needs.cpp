#include "graph/allocator_needs.h"

#include "graph/seh_calls.h"

#include <vellumcaster/results.h>

#include <algorithm>
#include <array>
#include <bit>

namespace vellumcaster {

namespace {

constexpr std::array needs{&ALLOCATOR_PROPERTIES::cBuffers, &ALLOCATOR_PROPERTIES::cbBuffer,
                           &ALLOCATOR_PROPERTIES::cbAlign, &ALLOCATOR_PROPERTIES::cbPrefix};

constexpr ALLOCATOR_PROPERTIES leastNeeds{1, 1, 1, 0};

bool Exceeds(const ALLOCATOR_PROPERTIES& a, const ALLOCATOR_PROPERTIES& b) {
    return std::any_of(needs.begin(), needs.end(), [&](auto need) { return a.*need > b.*need; });
}

CComPtr<IUnknown> IdentityOf(IUnknown* p) {
    CComPtr<IUnknown> sp;
    return SEH_IUnknown::Ask(p, sp) == S_OK ? sp : CComPtr<IUnknown>(p);
}

} // namespace

bool IsSameObject(IUnknown* pA, IUnknown* pB) { return pA == pB || IdentityOf(pA) == IdentityOf(pB).Get(); }

bool MergeRequirements(ALLOCATOR_PROPERTIES& a, const ALLOCATOR_PROPERTIES& b) {
    for (const auto need : needs)
        a.*need = std::max(a.*need, b.*need);
    return Exceeds(a, b);
}

void GetRequirements(IMemInputPin* pMemInput, ALLOCATOR_PROPERTIES& props) {
    props = {};
    if (FAILED(SEH_IMemInputPin::GetAllocatorRequirements(pMemInput, &props))) props = {};
    MergeRequirements(props, leastNeeds);
}

HRESULT CheckProperties(const ALLOCATOR_PROPERTIES& required, const ALLOCATOR_PROPERTIES& actual) {
    const bool bPowerOfTwo = actual.cbAlign > 0 && std::has_single_bit(static_cast<DWORD>(actual.cbAlign));
    return Exceeds(required, actual) || !bPowerOfTwo ? E_FAIL : S_OK;
}

HRESULT TryAllocator(IMemInputPin* pMemInput, IMemAllocator* pAllocator, const ALLOCATOR_PROPERTIES& required,
                     bool bReadOnly) {
    if (!bReadOnly) {
        ALLOCATOR_PROPERTIES asked = required;
        ALLOCATOR_PROPERTIES actual;
        HRESULT hr = SEH_IMemAllocator::SetProperties(pAllocator, &asked, &actual);
        if (hr == S_OK) hr = CheckProperties(required, actual);
        if (hr != S_OK) return hr;
    }
    return SEH_IMemInputPin::NotifyAllocator(pMemInput, pAllocator, bReadOnly ? 1 : 0);
}

} // namespace vellumcaster
