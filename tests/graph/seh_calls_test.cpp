#include "graph/seh_calls.h"

#include "support/scripted_peer.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

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

} // namespace
} // namespace vellumcaster
