#pragma once

#include <vellumcaster/types.h>

#include <atomic>
#include <csetjmp>
#include <cxxabi.h>

namespace vellumcaster {

/// What ended a guarded call: 0 for nothing, the number of the hardware signal (SIGSEGV, SIGBUS, SIGFPE,
/// SIGILL), or `faultCppException`.
using FaultCode = std::uint32_t;
inline constexpr FaultCode faultNone = 0;
inline constexpr FaultCode faultCppException = 0x100;

/// One open guard on this thread, the innermost at the head of the thread's chain. The calls below open guards;
/// nobody else needs this class.
///
/// A fault that strikes while a guard is open goes to the innermost one of the thread it strikes; a thread
/// without an open guard gets the handler that stood before. A signal that some process sent is no fault. The
/// frames between the fault and the guard are left without their destructors being run.
class CFaultGuard {
public:
    CFaultGuard() noexcept;
    CFaultGuard(const CFaultGuard&) = delete;
    CFaultGuard& operator=(const CFaultGuard&) = delete;
    ~CFaultGuard() noexcept;

    sigjmp_buf m_Landing;
    volatile FaultCode m_Fault = faultNone;

private:
    CFaultGuard* m_pOuter;
};

/// Runs `call()`.
/// \return `faultNone`, or what ended it. Memory that the call was writing may be partly written.
template <class Call>
[[nodiscard]] FaultCode CallGuarded(Call&& call) {
    CFaultGuard guard;
    // The signal mask is not saved: that would be a system call each way. The handler restores the mask by itself.
    if (sigsetjmp(guard.m_Landing, 0) != 0) return guard.m_Fault;
    try {
        call();
    } catch (abi::__forced_unwind&) {
        throw; // the thread is being cancelled
    } catch (...) {
        return faultCppException;
    }
    std::atomic_signal_fence(std::memory_order_seq_cst);
    return faultNone;
}

/// The loop of `RunStepsGuarded`. It stands by itself, since a function that a fault may land in keeps nothing in
/// registers.
template <class Step>
[[gnu::noinline]] void RunSteps(volatile LONG& begun, LONG count, Step step) {
    for (LONG i = begun; i < count; ++i) {
        begun = i + 1;
        step(i);
        std::atomic_signal_fence(std::memory_order_seq_cst);
    }
}

/// Runs `step(i)` for i from 0 to `count` - 1 under one guard, which costs a guard a loop and not a guard a step.
/// A fault ends the step that it strikes, `onFault(i, code)` is told, and the loop goes on behind it. Neither of
/// the two may throw.
template <class Step, class OnFault>
void RunStepsGuarded(LONG count, const Step& step, const OnFault& onFault) {
    volatile LONG begun = 0;
    CFaultGuard guard;
    if (sigsetjmp(guard.m_Landing, 0) != 0) onFault(begun - 1, guard.m_Fault);
    RunSteps(begun, count, step);
}

} // namespace vellumcaster
