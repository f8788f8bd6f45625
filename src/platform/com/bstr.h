#pragma once

#include <vellumcaster/bstr.h>
#include <vellumcaster/results.h>
#include <vellumcaster/types.h>

#include <string_view>
#include <utility>

namespace vellumcaster {

/// Owns one BSTR. Null and the empty string are different values here, as an item without a name differs from
/// one whose name is empty.
class CBstr {
public:
    CBstr() = default;
    CBstr(CBstr&& other) noexcept : m_bs(std::exchange(other.m_bs, nullptr)) {}
    CBstr(const CBstr&) = delete;
    ~CBstr() { SysFreeString(m_bs); }

    CBstr& operator=(CBstr&& other) noexcept {
        std::swap(m_bs, other.m_bs);
        return *this;
    }
    CBstr& operator=(const CBstr&) = delete;

    /// Takes a copy of `bs`, null included; `bs` may be the own string.
    /// \return E_OUTOFMEMORY leaves the old string in place.
    [[nodiscard]] HRESULT Assign(BSTR bs);
    /// Takes a copy of `text`. \return E_OUTOFMEMORY leaves the old string in place.
    [[nodiscard]] HRESULT Assign(std::u16string_view text);

    /// A new copy that the caller frees; null stays null.
    /// \return E_OUTOFMEMORY, with `*pbs` null.
    [[nodiscard]] HRESULT CopyTo(BSTR* pbs) const;

    [[nodiscard]] BSTR Get() const { return m_bs; }
    [[nodiscard]] std::u16string_view View() const { return View(m_bs); }
    /// What any string holds; null is empty.
    [[nodiscard]] static std::u16string_view View(BSTR bs) { return {bs, SysStringLen(bs)}; }
    explicit operator bool() const { return m_bs != nullptr; }

private:
    BSTR m_bs = nullptr;
};

} // namespace vellumcaster
