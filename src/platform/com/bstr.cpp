#include "platform/com/bstr.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

namespace vellumcaster {

namespace {

constexpr std::size_t cbLengthPrefix = sizeof(DWORD);

std::byte* BlockOf(BSTR bs) { return reinterpret_cast<std::byte*>(bs) - cbLengthPrefix; }

} // namespace

BSTR SysAllocStringLen(const OLECHAR* pch, DWORD cch) {
    const std::size_t cbText = std::size_t{cch} * sizeof(OLECHAR);
    if (cbText > std::numeric_limits<DWORD>::max() - cbLengthPrefix - sizeof(OLECHAR)) return nullptr;

    auto* pBlock = static_cast<std::byte*>(std::malloc(cbLengthPrefix + cbText + sizeof(OLECHAR)));
    if (!pBlock) return nullptr;
    const auto cbStored = static_cast<DWORD>(cbText);
    std::memcpy(pBlock, &cbStored, cbLengthPrefix);
    auto* bs = reinterpret_cast<BSTR>(pBlock + cbLengthPrefix);
    if (pch) std::memcpy(bs, pch, cbText);
    bs[cch] = u'\0';
    return bs;
}

BSTR SysAllocString(const OLECHAR* psz) {
    if (!psz) return nullptr;
    const std::size_t cch = std::char_traits<OLECHAR>::length(psz);
    if (cch > std::numeric_limits<DWORD>::max()) return nullptr;
    return SysAllocStringLen(psz, static_cast<DWORD>(cch));
}

void SysFreeString(BSTR bs) {
    if (bs) std::free(BlockOf(bs));
}

DWORD SysStringLen(BSTR bs) {
    if (!bs) return 0;
    DWORD cbText = 0;
    std::memcpy(&cbText, BlockOf(bs), cbLengthPrefix);
    return cbText / static_cast<DWORD>(sizeof(OLECHAR));
}

HRESULT CBstr::Assign(BSTR bs) {
    if (bs) return Assign(std::u16string_view(bs, SysStringLen(bs)));
    SysFreeString(std::exchange(m_bs, nullptr));
    return S_OK;
}

HRESULT CBstr::Assign(std::u16string_view text) {
    if (text.size() > std::numeric_limits<DWORD>::max()) return E_OUTOFMEMORY;
    BSTR bsNew = SysAllocStringLen(text.data(), static_cast<DWORD>(text.size()));
    if (!bsNew) return E_OUTOFMEMORY;
    SysFreeString(std::exchange(m_bs, bsNew));
    return S_OK;
}

HRESULT CBstr::CopyTo(BSTR* pbs) const {
    *pbs = m_bs ? SysAllocStringLen(m_bs, SysStringLen(m_bs)) : nullptr;
    return m_bs && !*pbs ? E_OUTOFMEMORY : S_OK;
}

} // namespace vellumcaster
