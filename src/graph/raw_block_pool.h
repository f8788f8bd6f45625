#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace vellumcaster {

/// Memory for objects of one kind, each of which is built and ended in place. There is no lock; the owner guards it.
template <class Object>
class CRawBlockPool {
public:
    /// Makes `c` blocks; earlier ones are thrown away, so all of them have to be at home. Throws `std::bad_alloc`.
    void Make(std::size_t c) {
        std::vector<void*> free(c);
        m_spBlocks = std::make_unique<Block[]>(c);
        for (std::size_t i = 0; i < c; ++i)
            free[i] = &m_spBlocks[i];
        m_Free = std::move(free);
    }

    /// A block for one object; there is one for each object that is not alive.
    [[nodiscard]] void* Pop() {
        void* pBlock = m_Free.back();
        m_Free.pop_back();
        return pBlock;
    }

    /// Takes a block back whose object has ended.
    void Push(void* pBlock) noexcept { m_Free.push_back(pBlock); }

private:
    struct Block {
        alignas(Object) std::byte bytes[sizeof(Object)];
    };

    std::unique_ptr<Block[]> m_spBlocks;
    std::vector<void*> m_Free; ///< a stack, with room for all blocks
};

} // namespace vellumcaster
