#pragma once

#include "support/random_bytes.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace vellumcaster::testing_support {

/// Random bytes that begin a given distance behind an aligned address, with random bytes before and behind them
/// that nobody has any business with. A copy has the same content, at any address.
class CGuardedBuffer {
public:
    CGuardedBuffer(std::size_t cb, std::size_t offset, std::uint64_t seed)
        : m_All(cbAlignment + cbGuard + offset + cb + cbGuard), m_cb(cb) {
        FillRandom(m_All, seed);
        const std::size_t beyond = reinterpret_cast<std::uintptr_t>(m_All.data()) % cbAlignment;
        m_nStart = cbAlignment - beyond + cbGuard + offset;
    }

    [[nodiscard]] BYTE* Data() { return m_All.data() + m_nStart; }
    [[nodiscard]] std::size_t Size() const { return m_cb; }

    /// Says where this differs first from what it should be, guards included.
    [[nodiscard]] std::optional<std::string> DifferenceFrom(const CGuardedBuffer& want) const {
        const auto [got, wanted] = std::mismatch(m_All.begin(), m_All.end(), want.m_All.begin());
        if (got == m_All.end()) return std::nullopt;
        const auto at = got - m_All.begin() - static_cast<std::ptrdiff_t>(m_nStart);
        const char* pszWhere = at < 0 ? " (before the first)" : at < std::ptrdiff_t(m_cb) ? "" : " (behind the last)";
        std::ostringstream text;
        text << "byte " << at << pszWhere << ": got " << int{*got} << ", want " << int{*wanted};
        return text.str();
    }

private:
    static constexpr std::size_t cbGuard = 64;
    static constexpr std::size_t cbAlignment = 64;

    std::vector<BYTE> m_All;
    std::size_t m_cb;
    std::size_t m_nStart = 0;
};

} // namespace vellumcaster::testing_support
