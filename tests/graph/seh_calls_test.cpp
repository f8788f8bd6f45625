#include "graph/seh_calls.h"

#include "support/fake_graph.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>

namespace vellumcaster {
namespace {

TEST(GuardedCall, TurnsAFaultIntoAResult) {
    enum class Do { Answer, Throw, Fault };
    Do what = Do::Answer;
    const auto spPin = MakeCounted<testing_support::CWatchingPin>([&what](IMediaSample&) -> HRESULT {
        if (what == Do::Throw) throw std::runtime_error("downstream");
        if (what == Do::Fault) *reinterpret_cast<volatile int*>(std::uintptr_t{4096}) = 1; // never mapped
        return S_FALSE;
    });
    const auto spSample = MakeCounted<CPlainSample>(nullptr, 0);
    EXPECT_EQ(SEH_IMemInputPin::Receive(nullptr, spSample.Get()), E_INVALIDARG);
    EXPECT_EQ(SEH_IMemInputPin::Receive(spPin.Get(), spSample.Get()), S_FALSE);
    what = Do::Throw;
    EXPECT_EQ(SEH_IMemInputPin::Receive(spPin.Get(), spSample.Get()), E_UNEXPECTED);
    what = Do::Fault;
    EXPECT_EQ(SEH_IMemInputPin::Receive(spPin.Get(), spSample.Get()), E_UNEXPECTED);
    what = Do::Answer;
    EXPECT_EQ(SEH_IMemInputPin::Receive(spPin.Get(), spSample.Get()), S_FALSE);
    EXPECT_EQ(SEH_IMemAllocator::GetBuffer(nullptr, nullptr, nullptr, nullptr, 0), E_INVALIDARG);
}

} // namespace
} // namespace vellumcaster
