#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <unordered_map>

namespace vellumcaster {

/// Keeps values by their keys as long as their costs come to no more than a budget; the one that was not asked for
/// longest goes first. What somebody still holds lives on. There is no lock; the owner guards it.
template <class Key, class Value, class Hash>
class CRecentlyUsed {
public:
    explicit CRecentlyUsed(std::size_t budget) : m_nBudget(budget) {}

    /// \return null where there is none.
    [[nodiscard]] std::shared_ptr<Value> Find(const Key& key) {
        const auto found = m_Index.find(key);
        if (found == m_Index.end()) return nullptr;
        m_Entries.splice(m_Entries.begin(), m_Entries, found->second);
        return found->second->spValue;
    }

    /// Keeps a value under a key that has none. One that costs more than the budget is not kept.
    void Insert(const Key& key, std::shared_ptr<Value> spValue, std::size_t cost) {
        if (cost > m_nBudget) return;
        while (m_nCost > m_nBudget - cost)
            DropOldest();
        m_Entries.push_front({key, std::move(spValue), cost});
        m_Index.emplace(key, m_Entries.begin());
        m_nCost += cost;
    }

    void Clear() {
        m_Index.clear();
        m_Entries.clear();
        m_nCost = 0;
    }

    [[nodiscard]] std::size_t Cost() const { return m_nCost; }

private:
    struct Entry {
        Key key;
        std::shared_ptr<Value> spValue;
        std::size_t cost;
    };

    void DropOldest() {
        m_nCost -= m_Entries.back().cost;
        m_Index.erase(m_Entries.back().key);
        m_Entries.pop_back();
    }

    std::size_t m_nBudget;
    std::size_t m_nCost = 0;
    std::list<Entry> m_Entries; ///< the one that was asked for last comes first
    std::unordered_map<Key, typename std::list<Entry>::iterator, Hash> m_Index;
};

} // namespace vellumcaster
