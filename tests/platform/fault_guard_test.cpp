#include "platform/kernel/fault_guard.h"

#include "platform/kernel/virtual_memory.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

namespace vellumcaster {
namespace {

// The sanitizers would end the program at what these are made for.
__attribute__((no_sanitize("undefined"), noinline)) void TouchNull() {
    volatile int* volatile p = nullptr;
    *p = 1;
}

void TouchBehindTheEndOfAFile() {
    static const auto* const p = [] {
        std::FILE* const pFile = std::tmpfile();
        const void* pEmpty = mmap(nullptr, cbPage, PROT_READ, MAP_PRIVATE, fileno(pFile), 0);
        std::fclose(pFile);
        return static_cast<const volatile char*>(pEmpty);
    }();
    [[maybe_unused]] const char c = *p;
}

#if defined(__x86_64__)
__attribute__((no_sanitize("undefined"), noinline)) void DivideByZero() {
    volatile int n = 1;
    volatile int zero = 0;
    n = n / zero;
}

void RunWhatIsNoInstruction() { asm volatile("ud2"); }
#endif

struct Fault {
    void (*pCause)();
    FaultCode code;
};

constexpr Fault faults[] = {
    {TouchNull, SIGSEGV},
    {TouchBehindTheEndOfAFile, SIGBUS},
#if defined(__x86_64__)
    {DivideByZero, SIGFPE},
    {RunWhatIsNoInstruction, SIGILL},
#endif
};

TEST(FaultGuard, EndsTheCallAtEachHardwareSignalAgainAndAgain) {
    for (const Fault& fault : faults)
        for (int time = 0; time < 3; ++time) { // a signal that stayed blocked would kill at the second
            EXPECT_EQ(CallGuarded([&] {
                          fault.pCause();
                          ADD_FAILURE() << "went on";
                      }),
                      fault.code);
        }
    EXPECT_EQ(CallGuarded([] {}), faultNone);
}

TEST(FaultGuard, LeavesTheSignalMaskAsTheFaultFoundIt) {
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &blocked, nullptr), 0);
    EXPECT_EQ(CallGuarded(TouchNull), FaultCode{SIGSEGV});
    sigset_t after;
    ASSERT_EQ(pthread_sigmask(SIG_UNBLOCK, &blocked, &after), 0);
    for (const int signal : {SIGUSR1, SIGUSR2, SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        EXPECT_EQ(sigismember(&after, signal), signal == SIGUSR1) << signal;
}

TEST(FaultGuard, CountsAnExceptionAsAFault) {
    EXPECT_EQ(CallGuarded([] { throw 1; }), faultCppException);
    EXPECT_EQ(CallGuarded(TouchNull), FaultCode{SIGSEGV});
}

TEST(FaultGuard, GivesAFaultToTheInnermostGuardThatIsOpen) {
    const std::pair<std::function<void()>, FaultCode> inner[] = {
        {[] {}, faultNone}, {TouchNull, SIGSEGV}, {[] { throw 1; }, faultCppException}};
    for (const auto& c : inner)
        EXPECT_EQ(CallGuarded([&] {
                      EXPECT_EQ(CallGuarded(c.first), c.second);
                      TouchBehindTheEndOfAFile();
                  }),
                  FaultCode{SIGBUS});
}

TEST(FaultGuard, GoesOnBehindTheStepThatAFaultStrikes) {
    std::vector<LONG> done;
    std::vector<std::pair<LONG, FaultCode>> told;
    RunStepsGuarded(
        6,
        [&](LONG i) {
            if (i == 1 || i == 2) TouchNull();
            if (i == 5) TouchBehindTheEndOfAFile();
            done.push_back(i);
        },
        [&](LONG i, FaultCode code) { told.emplace_back(i, code); });
    EXPECT_EQ(done, (std::vector<LONG>{0, 3, 4}));
    EXPECT_EQ(told, (std::vector<std::pair<LONG, FaultCode>>{{1, SIGSEGV}, {2, SIGSEGV}, {5, SIGBUS}}));
    for (const LONG none : {0, -1})
        RunStepsGuarded(
            none, [](LONG) { FAIL(); }, [](LONG, FaultCode) { FAIL(); });
}

TEST(FaultGuard, KeepsTheFaultsOfThreadsApart) {
    constexpr int nRounds = 300;
    std::vector<int> caught(std::size(faults), 0);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < caught.size(); ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < nRounds; ++i)
                if (CallGuarded(faults[t].pCause) == faults[t].code) ++caught[t];
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(caught, std::vector<int>(caught.size(), nRounds));
}

// A sanitizer takes the signal before the system does, reports it and exits.
bool DiedOfSegv(int status) { return WIFSIGNALED(status) ? WTERMSIG(status) == SIGSEGV : WEXITSTATUS(status) != 0; }

void InstallEarlierHandler(int signal, void (*pHandler)(int)) {
    struct sigaction action {};
    action.sa_handler = pHandler;
    sigaction(signal, &action, nullptr);
}

volatile sig_atomic_t g_nEarlierCalls = 0;

// The handlers are installed with the first guard of a process, so each of these needs a process of its own.
class FaultGuardDeathTest : public testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(FaultGuardDeathTest, SwallowsNoFaultOfAnotherThread) {
    EXPECT_EXIT(static_cast<void>(CallGuarded([] { std::thread(TouchNull).join(); })), DiedOfSegv, "");
}

TEST_F(FaultGuardDeathTest, LeavesAFaultOutsideOfAGuardToTheEarlierHandler) {
    EXPECT_EXIT(
        {
            InstallEarlierHandler(SIGSEGV, [](int) { _exit(42); });
            if (CallGuarded(TouchNull) != SIGSEGV) _exit(1);
            TouchNull();
        },
        testing::ExitedWithCode(42), "");
}

TEST_F(FaultGuardDeathTest, TakesNoSentSignalForAFault) {
    EXPECT_EXIT(
        {
            InstallEarlierHandler(SIGFPE, [](int) { g_nEarlierCalls = g_nEarlierCalls + 1; });
            const FaultCode code = CallGuarded([] {
                std::raise(SIGFPE);
                kill(getpid(), SIGFPE);
            });
            _exit(code == faultNone && g_nEarlierCalls == 2 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EXIT(static_cast<void>(CallGuarded([] { std::raise(SIGSEGV); })), DiedOfSegv, "");
}

} // namespace
} // namespace vellumcaster
