#include "platform/kernel/fault_guard.h"

#include <array>
#include <csignal>

#include <ucontext.h>

namespace vellumcaster {

namespace {

constexpr std::array hardwareSignals{SIGSEGV, SIGBUS, SIGFPE, SIGILL};

// The handler reads it: "initial-exec" promises that reading never allocates.
[[gnu::tls_model("initial-exec")]] constinit thread_local CFaultGuard* t_pInnermost = nullptr;

std::array<struct sigaction, hardwareSignals.size()> g_earlierActions;

const struct sigaction& EarlierAction(int signal) {
    std::size_t i = 0;
    while (hardwareSignals[i] != signal)
        ++i;
    return g_earlierActions[i];
}

void PassOn(int signal, siginfo_t* pInfo, void* pContext) {
    const struct sigaction& earlier = EarlierAction(signal);
    if (earlier.sa_flags & SA_SIGINFO) return earlier.sa_sigaction(signal, pInfo, pContext);

    const bool bSent = pInfo->si_code <= 0;
    if (earlier.sa_handler == SIG_IGN && bSent) return;
    if (earlier.sa_handler != SIG_DFL && earlier.sa_handler != SIG_IGN) return earlier.sa_handler(signal);

    // The default stands again, and the instruction that faulted meets it as soon as this handler returns.
    static_cast<void>(std::signal(signal, SIG_DFL));
    if (bSent) static_cast<void>(std::raise(signal));
}

void OnHardwareSignal(int signal, siginfo_t* pInfo, void* pContext) {
    CFaultGuard* pGuard = t_pInnermost;
    const bool bFault = pInfo->si_code > 0;
    if (!pGuard || !bFault) return PassOn(signal, pInfo, pContext);

    // As at the return from a handler, which this never comes to.
    pthread_sigmask(SIG_SETMASK, &static_cast<const ucontext_t*>(pContext)->uc_sigmask, nullptr);
    pGuard->m_Fault = static_cast<FaultCode>(signal);
    siglongjmp(pGuard->m_Landing, 1);
}

void InstallHandlers() {
    struct sigaction action {};
    action.sa_sigaction = OnHardwareSignal;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < hardwareSignals.size(); ++i)
        sigaction(hardwareSignals[i], &action, &g_earlierActions[i]);
}

} // namespace

CFaultGuard::CFaultGuard() noexcept : m_pOuter(t_pInnermost) {
    static const bool bInstalled = (InstallHandlers(), true);
    static_cast<void>(bInstalled);
    t_pInnermost = this;
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

CFaultGuard::~CFaultGuard() noexcept {
    std::atomic_signal_fence(std::memory_order_seq_cst);
    t_pInnermost = m_pOuter;
}

} // namespace vellumcaster
