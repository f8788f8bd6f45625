#pragma once

#include "engine/overlay_item.h"

#include <optional>
#include <vector>

namespace vellumcaster {

/// Names one item of a list. Applications treat it as opaque.
using Cookie = LONG;

/// The list of items, from the bottom of the stack to its top. A cookie is bound to a place in the list and not
/// to the record that stands there. There is no lock; the owner guards it.
class ItemMap {
public:
    /// Appends an item.
    /// \return S_OK; E_INVALIDARG for a cookie that is present; E_OUTOFMEMORY. After a failure list and item are as
    ///         before.
    [[nodiscard]] HRESULT Add(Cookie cookie, OverlayItem&& item);

    /// The index of a cookie, or -1.
    [[nodiscard]] LONG Find(Cookie cookie) const;

    /// The record of a cookie, or null.
    [[nodiscard]] OverlayItem* Lookup(Cookie cookie);

    /// \param index  0 to `Count() - 1`.
    [[nodiscard]] OverlayItem& At(LONG index) { return m_Values[static_cast<std::size_t>(index)]; }
    [[nodiscard]] Cookie Key(LONG index) const { return m_Keys[static_cast<std::size_t>(index)]; }
    [[nodiscard]] LONG Count() const { return static_cast<LONG>(m_Keys.size()); }

    /// Takes a record out and closes the gap. \return none where the cookie is not present.
    [[nodiscard]] std::optional<OverlayItem> Take(Cookie cookie);

    /// Swaps two records; the cookies stay where they are.
    void SwapRecords(LONG a, LONG b);

    /// A cookie that no item has: the low 32 bits of the address of the item's foreground plane, 0 without one,
    /// and from there on the first that is free.
    [[nodiscard]] Cookie ChooseCookie(const OverlayItem& item) const;

private:
    std::vector<Cookie> m_Keys;
    std::vector<OverlayItem> m_Values;
};

} // namespace vellumcaster
