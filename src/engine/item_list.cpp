#include "engine/item_list.h"

#include <algorithm>
#include <new>
#include <utility>

namespace vellumcaster {

HRESULT ItemMap::Add(Cookie cookie, const OverlayItem& item) {
    if (Find(cookie) >= 0) return E_INVALIDARG;
    OverlayItem copy;
    const HRESULT hr = copy.CopyFrom(item);
    if (FAILED(hr)) return hr;
    try {
        m_Keys.reserve(m_Keys.size() + 1);
        m_Values.reserve(m_Values.size() + 1);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    m_Keys.push_back(cookie);
    m_Values.push_back(std::move(copy));
    return S_OK;
}

LONG ItemMap::Find(Cookie cookie) const {
    const auto key = std::find(m_Keys.begin(), m_Keys.end(), cookie);
    return key == m_Keys.end() ? -1 : static_cast<LONG>(key - m_Keys.begin());
}

OverlayItem* ItemMap::Lookup(Cookie cookie) {
    const LONG index = Find(cookie);
    return index < 0 ? nullptr : &At(index);
}

bool ItemMap::Remove(Cookie cookie) {
    const LONG index = Find(cookie);
    if (index < 0) return false;
    m_Keys.erase(m_Keys.begin() + index);
    m_Values.erase(m_Values.begin() + index);
    return true;
}

void ItemMap::RemoveAll() {
    m_Keys.clear();
    m_Values.clear();
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
