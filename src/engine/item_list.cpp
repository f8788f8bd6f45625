#include "engine/item_list.h"

#include "platform/com/no_exceptions.h"

#include <algorithm>
#include <utility>

namespace vellumcaster {

HRESULT ItemMap::Add(Cookie cookie, OverlayItem&& item) {
    if (Find(cookie) >= 0) return E_INVALIDARG;
    return WithoutExceptions([&] {
        m_Keys.push_back(cookie);
        try {
            m_Values.push_back(std::move(item));
        } catch (...) {
            m_Keys.pop_back();
            throw;
        }
        return S_OK;
    });
}

LONG ItemMap::Find(Cookie cookie) const {
    const auto key = std::find(m_Keys.begin(), m_Keys.end(), cookie);
    return key == m_Keys.end() ? -1 : static_cast<LONG>(key - m_Keys.begin());
}

OverlayItem* ItemMap::Lookup(Cookie cookie) {
    const LONG index = Find(cookie);
    return index < 0 ? nullptr : &At(index);
}

std::optional<OverlayItem> ItemMap::Take(Cookie cookie) {
    const LONG index = Find(cookie);
    if (index < 0) return {};
    OverlayItem item = std::move(At(index));
    m_Keys.erase(m_Keys.begin() + index);
    m_Values.erase(m_Values.begin() + index);
    return item;
}

void ItemMap::SwapRecords(LONG a, LONG b) { std::swap(At(a), At(b)); }

Cookie ItemMap::ChooseCookie(const OverlayItem& item) const {
    const CVirtualBlob& plane = item.layerFore.planeColor;
    auto candidate = plane.IsEmpty() ? DWORD{0} : static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(plane.Data()));
    while (Find(static_cast<Cookie>(candidate)) >= 0)
        ++candidate;
    return static_cast<Cookie>(candidate);
}

} // namespace vellumcaster
