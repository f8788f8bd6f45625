#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>

namespace vellumcaster {

/// A lock that the thread which holds it may enter again; it is free after as many leaves. Threads are served in the
/// order in which they came: one that leaves and comes back stands behind all that wait, so that a thread which asks
/// for the lock again and again holds another up by one turn at most.
///
/// Its destruction has to wait until every Leave has returned.
class CCriticalSection {
public:
    CCriticalSection();
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;

    void Enter() {
        const std::thread::id self = std::this_thread::get_id();
        if (m_Owner.load(std::memory_order_relaxed) != self) {
            m_nTicket = TakeTurn();
            m_Owner.store(self, std::memory_order_relaxed);
        }
        ++m_nDepth;
    }

    /// Only for the thread that entered.
    void Leave() {
        if (--m_nDepth != 0) return;
        m_Owner.store({}, std::memory_order_relaxed);
        const std::uint32_t nNext = m_nTicket + 1;
        // Either a thread that comes now finds its turn here, or it is seen below.
        Turn(nNext).store(nNext);
        if (m_nTickets.load() != nNext) Wake(nNext);
    }

    /// Threads that wait at this moment, seen by the thread that holds the lock.
    [[nodiscard]] std::uint32_t Waiting() const { return m_nTickets.load() - m_nTicket - 1; }

private:
    /// Places to sleep. A turn wakes only who sleeps in its own place; with more threads than places some wake to
    /// sleep on.
    static constexpr std::uint32_t nPlaces = 16;

    [[nodiscard]] std::atomic<std::uint32_t>& Turn(std::uint32_t nTicket) { return m_Turns[nTicket % nPlaces]; }

    [[nodiscard]] std::uint32_t TakeTurn() {
        const std::uint32_t nTicket = m_nTickets.fetch_add(1);
        if (Turn(nTicket).load() != nTicket) Wait(nTicket);
        return nTicket;
    }

    void Wait(std::uint32_t nTicket);
    /// \return whether the turn came within the time for which it is worth while to stay awake.
    [[nodiscard]] bool Spin(std::uint32_t nTicket);
    void Wake(std::uint32_t nTicket);

    std::atomic<std::uint32_t> m_nTickets = 0; ///< given out
    std::atomic<std::thread::id> m_Owner;
    std::uint32_t m_nTicket = 0;                 ///< the owner's
    std::uint32_t m_nDepth = 0;                  ///< how often the owner is in
    std::atomic<std::uint32_t> m_Turns[nPlaces]; ///< the last ticket whose turn came, by place
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
