#pragma once

#include "platform/com/task_memory.h"
#include "platform/kernel/fault_guard.h"
#include "platform/kernel/trace.h"
#include "platform/kernel/virtual_memory.h"

#include <vellumcaster/results.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <span>
#include <utility>

namespace vellumcaster {

/// Where a holder's memory comes from. A policy allocates `cb` bytes, more than 0, or answers null, and says how
/// many bytes a block of `cb` really has.
struct HeapMemory {
    static void* Alloc(std::size_t cb) { return std::malloc(cb); }
    static void Free(void* p) { std::free(p); }
    static std::size_t AllocatedSize(std::size_t cb) { return cb; }
};

/// Memory that may be handed over an interface.
struct TaskMemory {
    static void* Alloc(std::size_t cb) { return CoTaskMemAlloc(cb); }
    static void Free(void* p) { CoTaskMemFree(p); }
    static std::size_t AllocatedSize(std::size_t cb) { return cb; }
};

/// Whole pages, zero-filled when they are fresh.
struct VirtualMemory {
    static void* Alloc(std::size_t cb) { return VirtualAlloc(nullptr, cb, MEM_COMMIT, PAGE_EXECUTE_READWRITE); }
    static void Free(void* p) {
        if (p) VirtualFree(p, 0, MEM_RELEASE);
    }
    static std::size_t AllocatedSize(std::size_t cb) { return RoundUpToPage(cb); }
};

/// Owns one block of bytes: a picture, a plane, a frame. The block never shrinks, so that a plane which is rebuilt
/// at the same or a smaller size keeps its memory; where it has to grow, its content is lost.
///
/// There is no lock; the owner guards it. Nothing here throws: a holder whose memory could not be had is empty.
template <class Memory>
class CBLOBHolder {
public:
    CBLOBHolder() = default;
    CBLOBHolder(const CBLOBHolder& other) { *this = other; }
    CBLOBHolder(CBLOBHolder&& other) noexcept { Swap(other); }
    ~CBLOBHolder() { Memory::Free(m_pData); }

    CBLOBHolder& operator=(const CBLOBHolder& other) {
        if (this == &other) return *this;
        if (SUCCEEDED(Resize(other.m_cbUsed)) && m_cbUsed != 0) std::memcpy(m_pData, other.m_pData, m_cbUsed);
        return *this;
    }
    CBLOBHolder& operator=(CBLOBHolder&& other) noexcept {
        Swap(other);
        return *this;
    }

    /// Makes `cb` bytes the used size.
    /// \return S_OK; E_OUTOFMEMORY when the block had to grow and could not, and the holder is then empty.
    [[nodiscard]] HRESULT Resize(std::size_t cb) {
        if (cb > m_cbAllocated) {
            Free();
            m_pData = static_cast<BYTE*>(Memory::Alloc(cb));
            if (!m_pData) return E_OUTOFMEMORY;
            m_cbAllocated = Memory::AllocatedSize(cb);
        }
        m_cbUsed = cb;
        return S_OK;
    }

    /// `Resize`; where `bFill` is set, every used byte then becomes `value`. \return as `Resize`.
    [[nodiscard]] HRESULT Alloc(std::size_t cb, bool bFill = false, BYTE value = 0) {
        const HRESULT hr = Resize(cb);
        if (hr == S_OK && bFill && cb != 0) std::memset(m_pData, value, cb);
        return hr;
    }

    /// Copies `cb` bytes, or as many as there is room for, to `offset`. A fault ends the copy and is not told.
    void MemCopy(const void* pSrc, std::size_t cb, std::size_t offset) {
        const std::size_t cbCopied = std::min(cb, m_cbUsed - std::min(offset, m_cbUsed));
        if (cbCopied == 0) return;
        if (CallGuarded([&] { std::memcpy(m_pData + offset, pSrc, cbCopied); }) != faultNone)
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::CaughtFault,
                              "###Err### CBLOBHolder::MemCopy - HANDLED EXCEPTION\n");
    }

    /// Frees the own block and owns `p` from here on, a block of this policy with `cb` used bytes.
    void TakeOver(void* p, std::size_t cb) {
        Free();
        m_pData = static_cast<BYTE*>(p);
        m_cbUsed = m_cbAllocated = cb;
    }

    /// Hands the block to the caller, who frees it by this policy; null when there is none.
    [[nodiscard]] std::span<BYTE> Detach() {
        m_cbAllocated = 0;
        return {std::exchange(m_pData, nullptr), std::exchange(m_cbUsed, 0)};
    }

    /// Empties the holder and keeps the block.
    void Clear() { m_cbUsed = 0; }

    [[nodiscard]] bool IsEmpty() const { return m_cbUsed == 0; }
    [[nodiscard]] std::size_t Size() const { return m_cbUsed; }
    [[nodiscard]] std::size_t AllocatedSize() const { return m_cbAllocated; }
    [[nodiscard]] BYTE* Data() { return m_pData; }
    [[nodiscard]] const BYTE* Data() const { return m_pData; }

private:
    void Free() {
        Memory::Free(m_pData);
        m_pData = nullptr;
        m_cbUsed = m_cbAllocated = 0;
    }

    void Swap(CBLOBHolder& other) noexcept {
        std::swap(m_cbUsed, other.m_cbUsed);
        std::swap(m_pData, other.m_pData);
        std::swap(m_cbAllocated, other.m_cbAllocated);
    }

    std::size_t m_cbUsed = 0;
    BYTE* m_pData = nullptr;
    std::size_t m_cbAllocated = 0;
};

using CHeapBlob = CBLOBHolder<HeapMemory>;
using CTaskBlob = CBLOBHolder<TaskMemory>;
using CVirtualBlob = CBLOBHolder<VirtualMemory>;

} // namespace vellumcaster
