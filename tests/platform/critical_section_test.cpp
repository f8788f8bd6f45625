#include "platform/kernel/critical_section.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace vellumcaster {
namespace {

constexpr int nThreads = 24; // more than the lock has places to sleep

TEST(CriticalSection, IsFreeAfterAsManyLeavesAsEnters) {
    CCriticalSection cs;
    std::atomic<bool> bIn = false;
    cs.Enter();
    cs.Enter();
    std::thread other([&] {
        const CAutoLock lock(cs);
        bIn = true;
    });
    while (cs.Waiting() != 1)
        std::this_thread::yield();
    cs.Leave();
    EXPECT_FALSE(bIn) << "one enter is left";
    EXPECT_EQ(cs.Waiting(), 1u);
    cs.Leave();
    other.join();
    EXPECT_TRUE(bIn);
}

TEST(CriticalSection, LetsOneThreadInAtATime) {
    constexpr int nTurns = 2000;
    CCriticalSection cs;
    int nCount = 0; // not atomic
    std::vector<std::thread> threads;
    for (int i = 0; i < nThreads; ++i)
        threads.emplace_back([&] {
            for (int turn = 0; turn < nTurns; ++turn) {
                const CAutoLock lock(cs), again(cs);
                const int nSeen = nCount;
                if (turn % 64 == 0) std::this_thread::yield();
                nCount = nSeen + 1;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nCount, nThreads * nTurns);
}

TEST(CriticalSection, ServesThreadsInTheOrderInWhichTheyCame) {
    CCriticalSection cs;
    std::vector<int> served; // guarded by the lock
    std::vector<std::thread> threads;
    cs.Enter();
    for (int i = 0; i < nThreads; ++i) {
        threads.emplace_back([&, i] {
            const CAutoLock lock(cs);
            served.push_back(i);
        });
        while (cs.Waiting() != static_cast<std::uint32_t>(i) + 1)
            std::this_thread::yield();
    }
    cs.Leave();
    cs.Enter(); // back at once, and behind all of them
    served.push_back(nThreads);
    cs.Leave();
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(served.size(), std::size_t{nThreads} + 1);
    EXPECT_TRUE(std::is_sorted(served.begin(), served.end()));
}

} // namespace
} // namespace vellumcaster
