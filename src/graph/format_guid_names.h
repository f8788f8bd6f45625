#pragma once

#include <vellumcaster/types.h>

#include <array>
#include <span>

namespace vellumcaster {

/// A GUID as its sixteen bytes stand in a record: the order of the name tables.
constexpr std::array<BYTE, 16> BytesOf(const GUID& guid) {
    std::array<BYTE, 16> bytes{};
    for (std::size_t i = 0; i < 4; ++i)
        bytes[i] = static_cast<BYTE>(guid.Data1 >> 8 * i);
    for (std::size_t i = 0; i < 2; ++i) {
        bytes[4 + i] = static_cast<BYTE>(guid.Data2 >> 8 * i);
        bytes[6 + i] = static_cast<BYTE>(guid.Data3 >> 8 * i);
    }
    for (std::size_t i = 0; i < 8; ++i)
        bytes[8 + i] = guid.Data4[i];
    return bytes;
}

struct GuidName {
    GUID guid;
    const char* pszName;
};

/// Names of GUIDs, and the table to look in when a GUID is not among them.
class GuidNameTable {
public:
    /// \param rows  sorted by `BytesOf`, each GUID once; they must outlive this.
    constexpr explicit GuidNameTable(std::span<const GuidName> rows, const GuidNameTable* pNext = nullptr)
        : m_Rows(rows), m_pNext(pNext) {}

    /// The name in the first table that has one, or null.
    [[nodiscard]] const char* Find(const GUID& guid) const;

private:
    std::span<const GuidName> m_Rows;
    const GuidNameTable* m_pNext;
};

/// The published names, and behind them the decoders of other makers.
[[nodiscard]] const GuidNameTable& GuidNames();

} // namespace vellumcaster
