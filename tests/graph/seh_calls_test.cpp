#include "graph/seh_calls.h"

#include "support/fake_graph.h"
#include "support/page_buffer.h"
#include "support/plain_sample.h"
#include "support/scripted_peer.h"

#include <gtest/gtest.h>

#include <array>
#include <barrier>
#include <stdexcept>
#include <thread>

namespace vellumcaster {
namespace {

using testing_support::CScriptedPeer;
using testing_support::Fault;

struct GuardedCall {
    std::string name; ///< with the arguments as the line of diagnosis has them
    HRESULT (*pfn)(CScriptedPeer*);
};

const GuardedCall callsOnPeers[] = {
    {"IPin::EnumMediaTypes(ppEnum)", [](CScriptedPeer* p) { return SEH_IPin::EnumMediaTypes(p, nullptr); }},
    {"IPin::QueryDirection(pPinDir)", [](CScriptedPeer* p) { return SEH_IPin::QueryDirection(p, nullptr); }},
    {"IEnumMediaTypes::Next(cMediaTypes, ppMediaTypes, pcFetched)",
     [](CScriptedPeer* p) { return SEH_IEnumMediaTypes::Next(p, 1, nullptr, nullptr); }},
    {"IEnumMediaTypes::Reset()", [](CScriptedPeer* p) { return SEH_IEnumMediaTypes::Reset(p); }},
    {"IBaseFilter::EnumPins(ppEnum)", [](CScriptedPeer* p) { return SEH_IBaseFilter::EnumPins(p, nullptr); }},
    {"IEnumPins::Next(cPins, ppPins, pcFetched)",
     [](CScriptedPeer* p) { return SEH_IEnumPins::Next(p, 1, nullptr, nullptr); }},
    {"IEnumPins::Reset()", [](CScriptedPeer* p) { return SEH_IEnumPins::Reset(p); }},
};

TEST(GuardedCall, AnswersForAPeerThatFaultsAndGoesOnWithTheNextCall) {
    static std::string traced;
    const TraceSink earlier = SetTraceSink([](TraceCategory, TraceLevel, std::string_view line) { traced = line; });
    for (const GuardedCall& call : callsOnPeers) {
        SCOPED_TRACE(call.name);
        CScriptedPeer::Script script = [] { return S_FALSE; };
        const auto spPeer = MakeCounted<CScriptedPeer>([&] { return script(); });
        EXPECT_EQ(call.pfn(nullptr), E_INVALIDARG);
        EXPECT_EQ(call.pfn(spPeer.Get()), S_FALSE);
        script = Fault;
        EXPECT_EQ(call.pfn(spPeer.Get()), E_UNEXPECTED);
        EXPECT_EQ(traced, bTracing ? "###Err### SEH_" + call.name + ": Exception 0xB\n" : "");
        script = []() -> HRESULT { throw std::runtime_error("peer"); };
        EXPECT_EQ(call.pfn(spPeer.Get()), E_UNEXPECTED);
        script = [] { return VFW_E_ENUM_OUT_OF_SYNC; };
        EXPECT_EQ(call.pfn(spPeer.Get()), VFW_E_ENUM_OUT_OF_SYNC);
    }
    SetTraceSink(earlier);
}

TEST(GuardedCall, ContainsAFaultingReceiverAndAllocator) {
    CScriptedPeer::Script script = Fault;
    const auto spPin = MakeCounted<testing_support::CWatchingPin>([&](IMediaSample&) { return script(); });
    const auto spSample = MakeCounted<testing_support::CPlainSample>(nullptr, 0);
    EXPECT_EQ(SEH_IMemInputPin::Receive(nullptr, spSample.Get()), E_INVALIDARG);
    EXPECT_EQ(SEH_IMemInputPin::Receive(spPin.Get(), spSample.Get()), E_UNEXPECTED);
    script = [] { return S_FALSE; };
    EXPECT_EQ(SEH_IMemInputPin::Receive(spPin.Get(), spSample.Get()), S_FALSE);

    const auto spAllocator = MakeCounted<testing_support::COneSampleAllocator>();
    const testing_support::CPageBuffer pages(1);
    auto** const ppBehind = reinterpret_cast<IMediaSample**>(pages.End());
    EXPECT_EQ(SEH_IMemAllocator::GetBuffer(nullptr, ppBehind, nullptr, nullptr, 0), E_INVALIDARG);
    EXPECT_EQ(SEH_IMemAllocator::GetBuffer(spAllocator.Get(), ppBehind, nullptr, nullptr, 0), E_UNEXPECTED);
    EXPECT_EQ(SEH_IMemAllocator::GetBuffer(spAllocator.Get(), ppBehind - 1, nullptr, nullptr, 0), S_OK);
}

TEST(GuardedCall, ContainsTheFaultOfACallWithinACall) {
    const auto spInner = MakeCounted<CScriptedPeer>(Fault);
    bool bOuterFaults = false;
    const auto spOuter = MakeCounted<CScriptedPeer>([&] {
        const HRESULT hr = SEH_IEnumPins::Reset(spInner.Get());
        return bOuterFaults ? Fault() : hr == E_UNEXPECTED ? S_FALSE : hr;
    });
    EXPECT_EQ(SEH_IPin::QueryDirection(spOuter.Get(), nullptr), S_FALSE);
    bOuterFaults = true;
    EXPECT_EQ(SEH_IPin::QueryDirection(spOuter.Get(), nullptr), E_UNEXPECTED);
}

TEST(GuardedCall, ContainsFaultsOfTwoThreadsAtOnce) {
    constexpr int nRounds = 200;
    std::barrier bothInside(2);
    std::array<int, 2> contained{};
    const auto faultOften = [&](int& nContained) {
        const auto spPeer = MakeCounted<CScriptedPeer>([&] { return bothInside.arrive_and_wait(), Fault(); });
        for (int i = 0; i < nRounds; ++i)
            nContained += SEH_IPin::QueryDirection(spPeer.Get(), nullptr) == E_UNEXPECTED;
    };
    std::thread other(faultOften, std::ref(contained[0]));
    faultOften(contained[1]);
    other.join();
    EXPECT_EQ(contained, (std::array{nRounds, nRounds}));
}

} // namespace
} // namespace vellumcaster
