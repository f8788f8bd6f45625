#include "platform/kernel/critical_section.h"

namespace vellumcaster {

CCriticalSection::CCriticalSection() {
    // In no place has the turn come but in the first.
    for (std::uint32_t i = 1; i < nPlaces; ++i)
        m_Turns[i] = i - nPlaces;
    m_Turns[0] = 0;
}

void CCriticalSection::Wait(std::uint32_t nTicket) {
    std::atomic<std::uint32_t>& turn = Turn(nTicket);
    for (std::uint32_t nSeen = turn; nSeen != nTicket; nSeen = turn)
        turn.wait(nSeen); // spins for a moment before it sleeps
}

void CCriticalSection::Wake(std::uint32_t nTicket) { Turn(nTicket).notify_all(); }

} // namespace vellumcaster
