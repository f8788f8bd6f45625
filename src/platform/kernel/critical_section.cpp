#include "platform/kernel/critical_section.h"

#include <chrono>

namespace vellumcaster {

namespace {

/// About what it costs to fall asleep and to be woken.
constexpr std::chrono::microseconds spinTime(50);

} // namespace

CCriticalSection::CCriticalSection() {
    // In no place has the turn come but in the first.
    for (std::uint32_t i = 1; i < nPlaces; ++i)
        m_Turns[i] = i - nPlaces;
    m_Turns[0] = 0;
}

void CCriticalSection::Wait(std::uint32_t nTicket) {
    const bool bNextInLine = Turn(nTicket - 1).load() == nTicket - 1;
    if (bNextInLine && Spin(nTicket)) return;
    std::atomic<std::uint32_t>& turn = Turn(nTicket);
    for (std::uint32_t nSeen = turn; nSeen != nTicket; nSeen = turn)
        turn.wait(nSeen);
}

bool CCriticalSection::Spin(std::uint32_t nTicket) {
    const auto end = std::chrono::steady_clock::now() + spinTime;
    do
        if (Turn(nTicket).load() == nTicket) return true;
    while (std::chrono::steady_clock::now() < end);
    return false;
}

void CCriticalSection::Wake(std::uint32_t nTicket) { Turn(nTicket).notify_all(); }

} // namespace vellumcaster
