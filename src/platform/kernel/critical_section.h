#pragma once

#include <mutex>

namespace vellumcaster {

/// A lock that the thread which holds it may enter again; it is free after as many leaves.
class CCriticalSection {
public:
    CCriticalSection() = default;
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;

    void Enter() { m_Mutex.lock(); }
    void Leave() { m_Mutex.unlock(); }

private:
    std::recursive_mutex m_Mutex;
};

/// Holds a critical section for the length of a scope.
class CAutoLock {
public:
    explicit CAutoLock(CCriticalSection& cs) : m_cs(cs) { m_cs.Enter(); }
    CAutoLock(const CAutoLock&) = delete;
    CAutoLock& operator=(const CAutoLock&) = delete;
    ~CAutoLock() { m_cs.Leave(); }

private:
    CCriticalSection& m_cs;
};

} // namespace vellumcaster
