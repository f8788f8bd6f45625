#include "graph/allocator_buffers.h"

#include "platform/com/no_exceptions.h"
#include "platform/kernel/trace.h"
#include "platform/kernel/virtual_memory.h"
#include "platform/media/graph_results.h"

#include <bit>
#include <limits>

namespace vellumcaster {

namespace {

constexpr std::uint64_t RoundUp(std::uint64_t value, std::uint64_t step) { return (value + step - 1) / step * step; }

/// \param nAlign  in: not a power of two; out: the next one above.
HRESULT CorrectAlignment(LONG& nAlign) {
    const auto asked = static_cast<DWORD>(nAlign);
    constexpr DWORD highest = DWORD{1} << 30; // the last one that a LONG holds
    if (asked > highest) return VFW_E_BADALIGN;
    const DWORD corrected = std::bit_ceil(asked);
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                      "WARNING. CAllocatorBuffers::Correct(): Alignment not a power of 2 (rgProps.cbAlign = 0x%X), "
                      "corrected alignment = 0x%X\n",
                      asked, corrected);
    nAlign = static_cast<LONG>(corrected);
    return S_OK;
}

} // namespace

HRESULT CAllocatorBuffers::Correct(ALLOCATOR_PROPERTIES& props) {
    const bool bPowerOfTwo = props.cbAlign == 0 || (props.cbAlign > 0 && std::has_single_bit(DWORD(props.cbAlign)));
    if (!bPowerOfTwo && FAILED(CorrectAlignment(props.cbAlign))) return VFW_E_BADALIGN;
    if (props.cBuffers < 1 || props.cbBuffer <= 0 || props.cbPrefix < 0) return VFW_E_SIZENOTSET;
    if (props.cbAlign == 0) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                          "WARNING. CAllocatorBuffers::Correct(): rgProps.cbAlign == 0\n");
        props.cbAlign = 1;
    }
    const auto cbPrefix = static_cast<std::uint64_t>(props.cbPrefix);
    const std::uint64_t cb =
        RoundUp(static_cast<std::uint64_t>(props.cbBuffer) + cbPrefix, static_cast<std::uint64_t>(props.cbAlign)) -
        cbPrefix;
    if (cb > std::uint64_t{std::numeric_limits<LONG>::max()}) return VFW_E_SIZENOTSET;
    if (static_cast<LONG>(cb) != props.cbBuffer) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                          "WARNING. CAllocatorBuffers::Correct(): input props = { %i, %i, %i, %i }, corrected size of "
                          "buffer = %i\n",
                          props.cBuffers, props.cbBuffer, props.cbAlign, props.cbPrefix, static_cast<LONG>(cb));
        props.cbBuffer = static_cast<LONG>(cb);
    }
    return S_OK;
}

HRESULT CAllocatorBuffers::Make(const ALLOCATOR_PROPERTIES& props) {
    Free();
    const auto cBuffers = static_cast<std::uint64_t>(props.cBuffers);
    const auto cbAlign = static_cast<std::uint64_t>(props.cbAlign);
    const auto cbPrefix = static_cast<std::uint64_t>(props.cbPrefix);
    const std::uint64_t cbWithPrefix = cbPrefix + static_cast<std::uint64_t>(props.cbBuffer);
    const std::uint64_t cbStride = RoundUp(cbWithPrefix, cbAlign);
    std::uint64_t cb = cbWithPrefix + cbStride * (cBuffers - 1);
    if (cbAlign > cbPage) cb += cbAlign - cbPage;

    return WithoutExceptions([&] {
        m_pBase = VirtualAlloc(nullptr, cb, MEM_COMMIT, PAGE_READWRITE);
        if (!m_pBase) return E_OUTOFMEMORY;
        m_Stack.resize(cBuffers);
        const std::uint64_t first = RoundUp(reinterpret_cast<std::uintptr_t>(m_pBase), cbAlign) + cbPrefix;
        for (std::size_t i = 0; i < m_Stack.size(); ++i)
            m_Stack[i] =
                static_cast<BYTE*>(m_pBase) + (first - reinterpret_cast<std::uintptr_t>(m_pBase)) + i * cbStride;
        m_cFree = m_Stack.size();
        return S_OK;
    });
}

BYTE* CAllocatorBuffers::Pop() { return m_cFree == 0 ? nullptr : m_Stack[--m_cFree]; }

void CAllocatorBuffers::Push(BYTE* pBuffer) { m_Stack[m_cFree++] = pBuffer; }

void CAllocatorBuffers::Free() {
    if (m_pBase) VirtualFree(m_pBase, 0, MEM_RELEASE);
    m_pBase = nullptr;
    m_Stack.clear();
    m_cFree = 0;
}

} // namespace vellumcaster
