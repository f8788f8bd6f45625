#include "host/interruption.h"

#include <csignal>
#include <initializer_list>

namespace vellumcaster {

namespace {

volatile std::sig_atomic_t g_nSignal = 0;

void Keep(int nSignal) { g_nSignal = nSignal; }

} // namespace

void WatchForInterruptions() {
    for (const int nSignal : {SIGINT, SIGTERM, SIGHUP}) {
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

void EndBy(const Interruption& interruption) {
    static_cast<void>(std::signal(interruption.nSignal, SIG_DFL));
    static_cast<void>(std::raise(interruption.nSignal));
}

} // namespace vellumcaster
