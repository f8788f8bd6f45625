#pragma once

#include "platform/kernel/virtual_memory.h"

#include <sys/mman.h>

#include <new>

namespace vellumcaster::testing_support {

/// Pages between two that cannot be touched.
class CPageBuffer {
public:
    explicit CPageBuffer(std::size_t nPages) : m_cb(nPages * cbPage) {
        void* p = mmap(nullptr, m_cb + 2 * cbPage, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (p == MAP_FAILED) throw std::bad_alloc();
        m_pAll = static_cast<BYTE*>(p);
        Permit(Begin(), m_cb);
    }
    CPageBuffer(const CPageBuffer&) = delete;
    CPageBuffer& operator=(const CPageBuffer&) = delete;
    ~CPageBuffer() { munmap(m_pAll, m_cb + 2 * cbPage); }

    [[nodiscard]] BYTE* Begin() const { return m_pAll + cbPage; }
    [[nodiscard]] BYTE* End() const { return Begin() + m_cb; }

    void ForbidPage(std::size_t n) { mprotect(Begin() + n * cbPage, cbPage, PROT_NONE); }
    void PermitPage(std::size_t n) { Permit(Begin() + n * cbPage, cbPage); }

private:
    static void Permit(BYTE* p, std::size_t cb) {
        if (mprotect(p, cb, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
    }

    std::size_t m_cb;
    BYTE* m_pAll;
};

} // namespace vellumcaster::testing_support
