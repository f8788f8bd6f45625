#include "host/interruption.h"

#include <array>
#include <atomic>
#include <csignal>

namespace vellumcaster {

namespace {

constexpr std::array interruptions{SIGINT, SIGTERM, SIGHUP};

std::atomic<int> g_nSignal = 0;
static_assert(std::atomic<int>::is_always_lock_free);

void Keep(int nSignal) { g_nSignal = nSignal; }

} // namespace

void WatchForInterruptions() {
    for (const int nSignal : interruptions) {
        struct sigaction action {};
        if (sigaction(nSignal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
        action.sa_handler = Keep;
        action.sa_flags = static_cast<int>(SA_RESETHAND); // and no SA_RESTART
        sigaction(nSignal, &action, nullptr);
    }
}

void EndIfInterrupted() {
    if (g_nSignal != 0) throw Interruption{g_nSignal};
}

CSignalsForOthers::CSignalsForOthers() {
    sigset_t set;
    sigemptyset(&set);
    for (const int nSignal : interruptions)
        sigaddset(&set, nSignal);
    pthread_sigmask(SIG_BLOCK, &set, &m_Before);
}

CSignalsForOthers::~CSignalsForOthers() { pthread_sigmask(SIG_SETMASK, &m_Before, nullptr); }

void EndBy(const Interruption& interruption) {
    static_cast<void>(std::signal(interruption.nSignal, SIG_DFL));
    static_cast<void>(std::raise(interruption.nSignal));
}

} // namespace vellumcaster
