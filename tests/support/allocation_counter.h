#pragma once

#include <cstddef>

namespace vellumcaster::testing_support {

/// Counts the allocations that this thread makes while the object lives: malloc and its kin, and so `new` too.
class CAllocationCounter {
public:
    CAllocationCounter();
    [[nodiscard]] std::size_t Count() const;

private:
    std::size_t m_nBefore;
};

/// While it lives, one allocation of this thread fails: the `nth`, counted from 0. Not under a sanitizer, whose
/// allocator cannot be stood in for.
class CFailingAllocation {
public:
    explicit CFailingAllocation(std::size_t nth);
    CFailingAllocation(const CFailingAllocation&) = delete;
    CFailingAllocation& operator=(const CFailingAllocation&) = delete;
    ~CFailingAllocation();

    /// Whether the allocation was asked for, and so has failed.
    [[nodiscard]] bool HasFailed() const;

    [[nodiscard]] static bool IsAvailable();
};

} // namespace vellumcaster::testing_support
