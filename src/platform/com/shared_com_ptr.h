#pragma once

#include "platform/kernel/critical_section.h"

#include <vellumcaster/counted_ptr.h>

#include <utility>

namespace vellumcaster {

/// A counted pointer that one thread changes while others read it. Its lock is held for nothing else, so that it may be
/// read with any lock held, or none.
template <class Interface>
class CSharedComPtr {
public:
    [[nodiscard]] CComPtr<Interface> Get() const {
        CAutoLock lock(m_cs);
        return m_sp;
    }
    void Set(CComPtr<Interface> sp) {
        CAutoLock lock(m_cs);
        std::swap(m_sp, sp); // the former one goes when the lock is free
    }
    /// Gives the pointer out, so that there is none.
    [[nodiscard]] CComPtr<Interface> Take() {
        CAutoLock lock(m_cs);
        return std::exchange(m_sp, {});
    }
    explicit operator bool() const { return bool(Get()); }

private:
    mutable CCriticalSection m_cs;
    CComPtr<Interface> m_sp;
};

} // namespace vellumcaster
