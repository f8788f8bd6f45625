#pragma once

#include "platform/media/mem_allocator.h"

#include <cstddef>
#include <vector>

namespace vellumcaster {

/// One block of memory cut into equal buffers, and a stack of those that are free: the last one to come home is the
/// first to go out again. There is no lock; the allocator guards it.
class CAllocatorBuffers {
public:
    CAllocatorBuffers() = default;
    CAllocatorBuffers(const CAllocatorBuffers&) = delete;
    CAllocatorBuffers& operator=(const CAllocatorBuffers&) = delete;
    ~CAllocatorBuffers() { Free(); }

    /// Brings what is asked of an allocator to what it can give: an alignment that is a power of two, and buffers that
    /// fill whole alignments together with their prefix.
    /// \return S_OK, also for a corrected value; VFW_E_SIZENOTSET for no buffers, empty ones, a negative prefix, or
    ///         buffers that would become larger than 31 bits; VFW_E_BADALIGN. A failure leaves `props` unspecified.
    [[nodiscard]] static HRESULT Correct(ALLOCATOR_PROPERTIES& props);

    /// Makes the buffers that corrected properties ask for, all of them free; earlier ones are thrown away.
    /// \return S_OK; E_OUTOFMEMORY.
    [[nodiscard]] HRESULT Make(const ALLOCATOR_PROPERTIES& props);

    /// A free buffer, or null.
    [[nodiscard]] BYTE* Pop();
    /// Takes a buffer back.
    void Push(BYTE* pBuffer);

    [[nodiscard]] LONG FreeCount() const { return static_cast<LONG>(m_cFree); }
    [[nodiscard]] bool AreAllFree() const { return m_cFree == m_Stack.size(); }

private:
    void Free();

    void* m_pBase = nullptr;
    std::vector<BYTE*> m_Stack; ///< as long as there are buffers; the first `m_cFree` are free
    std::size_t m_cFree = 0;
};

} // namespace vellumcaster
