#include "support/filter_in_graph.h"

#include "graph/memory_allocator.h"
#include "graph/seh_calls.h"
#include "host/graph/video_type.h"

#include <gtest/gtest.h>

#include <vector>

namespace vellumcaster {
namespace {

using namespace testing_support;
using Mode = CTransInPlaceAllocator::Mode;
using Memory = SourceManners::Memory;

struct MemoryCase {
    const char* pszName;
    Memory source;
    void (*manner)(SinkManners&);
    bool bExtraBuffer;
    bool bPassesThrough;
    Mode mode;
};

class MemoryAgreement : public FilterInGraph, public testing::WithParamInterface<MemoryCase> {};

TEST_P(MemoryAgreement, EndsAsBothSidesAllow) {
    const MemoryCase& c = GetParam();
    m_Source.memory = c.source;
    c.manner(m_Sink);
    ASSERT_EQ(Build(), S_OK);
    if (!c.bExtraBuffer) {
        ASSERT_EQ(m_spFilter->UseExtraBuffer2(0), S_OK);
    }
    EXPECT_EQ(m_spFilter->m_spOut->m_Allocator.GetMode(), c.mode);
    EXPECT_EQ(m_spFilter->m_bSeparated, !c.bPassesThrough);
    EXPECT_FALSE(m_spSink->IsReadOnly());
    AddBox();
    RunToEnd();
    EXPECT_EQ(m_nTaken, m_nFrames);
    EXPECT_EQ(m_bSameMemory, c.bPassesThrough) << "the same buffer goes on, or a copy";
    EXPECT_FALSE(IsBackground(0, 0));
    EXPECT_TRUE(IsBackground(8, 0));
    if (m_Sink.needs.cbAlign > 1) {
        EXPECT_GE(m_cbAlignment, static_cast<std::uintptr_t>(m_Sink.needs.cbAlign));
    }
}

void Plain(SinkManners&) {}
void OffersNone(SinkManners& m) { m.bOffersMemory = false; }
void Insists(SinkManners& m) { m.bInsistsOnItsMemory = true; }
void SaysNothing(SinkManners& m) { m.bTellsItsNeeds = false; }
void NeedsMuch(SinkManners& m) { m.needs = {7, 1000, 256, 256}; }

INSTANTIATE_TEST_SUITE_P(
    Rows, MemoryAgreement,
    testing::Values(MemoryCase{"Offered", Memory::Offered, Plain, true, true, Mode::Upstream},
                    MemoryCase{"OwnWritable", Memory::Own, Plain, true, true, Mode::Upstream},
                    MemoryCase{"OwnWritableNoneOffered", Memory::Own, OffersNone, true, true, Mode::Upstream},
                    MemoryCase{"OwnWritableNeedsUntold", Memory::Own, SaysNothing, true, true, Mode::Upstream},
                    MemoryCase{"OwnWritableMuchNeeded", Memory::Own, NeedsMuch, true, true, Mode::Upstream},
                    MemoryCase{"ReadOnly", Memory::OwnReadOnly, Plain, true, false, Mode::Downstream},
                    MemoryCase{"ReadOnlyNoneOffered", Memory::OwnReadOnly, OffersNone, true, false, Mode::Own},
                    MemoryCase{"Insisting", Memory::Own, Insists, true, false, Mode::Downstream},
                    MemoryCase{"InsistingMuchNeeded", Memory::Own,
                               [](SinkManners& m) {
                                   Insists(m);
                                   NeedsMuch(m);
                               },
                               true, false, Mode::Downstream},
                    MemoryCase{"InsistingOffered", Memory::Offered, Insists, true, false, Mode::Downstream},
                    MemoryCase{"InsistingOfferedUnbuffered", Memory::Offered, Insists, false, true, Mode::Downstream},
                    MemoryCase{"OfferedUnbuffered", Memory::Offered, Plain, false, true, Mode::Upstream}),
    [](const auto& row) { return row.param.pszName; });

/// One call that a neighbour refuses, and what comes of it.
struct Refusal {
    const char* pszName;
    PinCall call;
    HRESULT hr;
    HRESULT hrBuilt;   ///< what the connections end with
    HRESULT hrOutcome; ///< with what the stream ends, where there is one
    bool bBySource;
};

TEST_F(FilterInGraph, BearsARefusalOrEndsWithIt) {
    const Refusal refusals[] = {
        {"no direction", PinCall::QueryDirection, E_FAIL, VFW_E_INVALID_DIRECTION, S_OK, false},
        {"no types of its own", PinCall::EnumMediaTypes, E_NOTIMPL, S_OK, S_OK, false},
        {"no type is taken", PinCall::QueryAccept, S_FALSE, VFW_E_NO_ACCEPTABLE_TYPES, S_OK, false},
        {"no connection", PinCall::ReceiveConnection, E_ABORT, VFW_E_NO_ACCEPTABLE_TYPES, S_OK, false},
        {"a connection that is none", PinCall::ReceiveConnection, S_FALSE, VFW_E_NO_ACCEPTABLE_TYPES, S_OK, false},
        {"no samples", PinCall::QueryInterface, E_NOINTERFACE, E_NOINTERFACE, S_OK, false},
        {"no allocator", PinCall::GetAllocator, VFW_E_NO_ALLOCATOR, S_OK, S_OK, false},
        {"an allocator that is none", PinCall::GetAllocator, S_OK, S_OK, S_OK, false},
        {"no needs", PinCall::GetAllocatorRequirements, E_UNEXPECTED, S_OK, S_OK, false},
        {"no memory at all", PinCall::NotifyAllocator, VFW_E_BADALIGN, VFW_E_BADALIGN, S_OK, false},
        {"no frames", PinCall::Receive, VFW_E_TIMEOUT, S_OK, VFW_E_TIMEOUT, false},
        {"no end", PinCall::EndOfStream, E_FAIL, S_OK, S_OK, false},
        {"upstream has no direction", PinCall::QueryDirection, E_FAIL, VFW_E_INVALID_DIRECTION, S_OK, true},
        {"upstream would not change", PinCall::QueryAccept, S_FALSE, VFW_E_NO_ACCEPTABLE_TYPES, S_OK, true},
        {"upstream has no types", PinCall::EnumMediaTypes, E_ABORT, E_ABORT, S_OK, true},
    };
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.pszName);
        m_spGraph->Clear();
        m_nFilled = m_nTaken = 0;
        const auto refuse = [refusal](PinCall call) {
            return call == refusal.call ? std::optional(refusal.hr) : std::nullopt;
        };
        m_Source.answer = m_Sink.answer = nullptr;
        (refusal.bBySource ? m_Source.answer : m_Sink.answer) = refuse;
        EXPECT_EQ(Build(), refusal.hrBuilt);
        if (refusal.hrBuilt != S_OK) {
            CComPtr<IPin> spPeer;
            EXPECT_EQ(m_spSink->OwnPin()->ConnectedTo(spPeer.Put()), VFW_E_NOT_CONNECTED);
            EXPECT_FALSE(m_spFilter->m_spOut->IsConnected());
            EXPECT_EQ(m_spGraph->Run(), VFW_E_WRONG_STATE);
            EXPECT_EQ(m_spFilter->State(), State_Stopped);
            continue;
        }
        ASSERT_EQ(m_spGraph->Run(), S_OK);
        m_spSource->WaitForEnd();
        ASSERT_EQ(m_spGraph->Stop(), S_OK);
        EXPECT_EQ(m_spSource->Outcome(), refusal.hrOutcome);
        EXPECT_EQ(m_nTaken, refusal.hrOutcome == S_OK ? m_nFrames : 0);
    }
}

TEST_F(FilterInGraph, HasOneTypeOnBothSides) {
    m_Source.streams = {{{format_code::RGB565, 16, 4, 16}, 0}, // not taken by the filter
                        {{format_code::YUY2, 16, 4, 16}, 0},   // not by the sink
                        {{format_code::UYVY, 16, 4, 16}, 0}};
    m_Sink.formats = {format_code::UYVY};
    ASSERT_EQ(Build(), S_OK);
    CMediaTypeHolder in;
    CMediaTypeHolder out;
    ASSERT_EQ(m_spFilter->m_spIn->CopyMediaType(in.Put()), S_OK);
    ASSERT_EQ(m_spFilter->m_spOut->CopyMediaType(out.Put()), S_OK);
    EXPECT_TRUE(MT_IsEqual(in.Get(), out.Get()));
    EXPECT_EQ(m_spFilter->m_spIn->Picture().dwFormat, format_code::UYVY)
        << "the input was connected anew in what downstream takes";
    const int nReconnections = m_spGraph->ReconnectionCount();
    ASSERT_EQ(m_spGraph->ReconnectEx(m_spFilter->m_spIn.Get(), nullptr), S_OK);
    EXPECT_EQ(m_spGraph->ReconnectionCount(), nReconnections + 1) << "equal types end it";
    CMediaTypeHolder unwanted;
    ASSERT_EQ(MakeVideoType({format_code::YUY2, 16, 4, 16}, 0, *unwanted.Put()), S_OK);
    EXPECT_EQ(m_spGraph->ReconnectEx(m_spFilter->m_spIn.Get(), unwanted.Get()), VFW_E_TYPE_NOT_ACCEPTED);
    EXPECT_EQ(m_spFilter->m_spIn->Picture().dwFormat, format_code::UYVY) << "all is as it was";
    RunToEnd();
    EXPECT_EQ(m_nTaken, m_nFrames);
}

TEST_F(FilterInGraph, ReconnectsInAGraphThatCannotBeToldTheType) {
    m_spGraph = MakeCounted<CGraph>(false);
    ASSERT_EQ(Build(), S_OK);
    EXPECT_GT(m_spGraph->ReconnectionCount(), 0);
    RunToEnd();
}

TEST_F(FilterInGraph, DrawsInEveryFormatAndRowOrder) {
    const struct {
        std::uint32_t dwFormat;
        LONG nHeight;
        bool bDraws;
    } cases[] = {{format_code::I420, 4, true},   {format_code::YV12, 4, true},  {format_code::YUY2, 4, true},
                 {format_code::UYVY, 4, true},   {format_code::YVYU, 4, true},  {format_code::RGB32, 4, true},
                 {format_code::RGB32, -4, true}, {format_code::RGB24, 4, true}, {format_code::RGB24, -4, true},
                 {format_code::ARGB32, 4, false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.dwFormat);
        m_spGraph->Clear();
        m_nFilled = m_nTaken = 0;
        m_Source.streams = {{{c.dwFormat, 16, c.nHeight, 16}, 0}};
        ASSERT_EQ(Build(), S_OK);
        if (c.bDraws) AddBox();
        RunToEnd();
        EXPECT_EQ(m_nTaken, m_nFrames);
        EXPECT_EQ(m_LastFormat.dwFormat, c.dwFormat);
        EXPECT_EQ(IsBackground(0, 0), !c.bDraws);
        EXPECT_TRUE(IsBackground(0, 3)) << "the box is at the top";
    }
}

TEST_F(FilterInGraph, FollowsATypeThatComesWithASample) {
    const OfferedStream after{{format_code::RGB32, 8, -4, 8}, 400000};
    m_Source.needs.cbBuffer = 1000;
    m_Source.fill = [&](IMediaSample& sample, const PictureFormat& pf) {
        if (m_nFilled < 2) return Fill(sample, pf);
        CMediaTypeHolder type;
        EXPECT_EQ(MakeVideoType(after.pf, after.avgTimePerFrame, *type.Put()), S_OK);
        if (m_nFilled == 2) sample.SetMediaType(type.Get());
        return Fill(sample, after.pf);
    };
    for (const Memory memory : {Memory::Own, Memory::OwnReadOnly}) {
        m_spGraph->Clear();
        m_nFilled = m_nTaken = 0;
        m_Source.memory = memory;
        m_Sink.needs.cbBuffer = 1000;
        ASSERT_EQ(Build(), S_OK);
        AddBox();
        RunToEnd();
        EXPECT_EQ(m_nTaken, m_nFrames);
        EXPECT_EQ(m_LastFormat.dwFormat, format_code::RGB32);
        EXPECT_EQ(m_spFilter->m_spOut->Picture().dwFormat, format_code::RGB32);
        EXPECT_FALSE(IsBackground(0, 0)) << "items are prepared in the new format";
        EXPECT_TRUE(IsBackground(4, 0));
    }
}

TEST_F(FilterInGraph, FollowsATypeThatDownstreamGives) {
    const PictureFormat narrower{format_code::I420, 8, 4, 8};
    const PictureFormat other{format_code::RGB32, 16, -4, 16};
    const PictureFormat fromUpstream{format_code::YUY2, 16, 4, 16};
    m_Source.memory = Memory::OwnReadOnly;
    m_Source.needs.cbBuffer = m_Sink.needs.cbBuffer = 1000;
    for (const PictureFormat& given : {narrower, other}) {
        for (const bool bUpstreamToo : {false, true}) {
            m_spGraph->Clear();
            m_nFilled = m_nTaken = 0;
            m_Source.fill = [&](IMediaSample& sample, const PictureFormat& pf) {
                if (m_nFilled == 2) {
                    CComPtr<IMemAllocatorEx> spOutput;
                    CMediaTypeHolder type;
                    EXPECT_EQ(MakeVideoType(given, 400000, *type.Put()), S_OK);
                    EXPECT_EQ(SEH_IUnknown::Ask(m_spSink->Allocator().Get(), spOutput), S_OK);
                    EXPECT_EQ(spOutput->SetMediaType(type.Get()), S_OK);
                    EXPECT_EQ(MakeVideoType(fromUpstream, 400000, *type.Put()), S_OK);
                    if (bUpstreamToo) sample.SetMediaType(type.Get());
                }
                return Fill(sample, bUpstreamToo && m_nFilled >= 2 ? fromUpstream : pf);
            };
            ASSERT_EQ(Build(), S_OK);
            AddBox();
            RunToEnd();
            EXPECT_EQ(m_nTaken, m_nFrames);
            const PictureFormat expected = bUpstreamToo ? fromUpstream : given;
            EXPECT_EQ(m_LastFormat, expected) << "what was told last";
            EXPECT_EQ(m_spFilter->m_spOut->Picture(), expected);
            if (expected.dwFormat == other.dwFormat) continue; // the frame itself cannot be carried over
            EXPECT_FALSE(IsBackground(0, 0));
            EXPECT_TRUE(IsBackground(4, 0));
        }
    }
}

TEST_F(FilterInGraph, StopsASampleWhoseTypeItCannotTake) {
    m_Source.fill = [&](IMediaSample& sample, const PictureFormat& pf) {
        CMediaTypeHolder type;
        EXPECT_EQ(MakeVideoType({format_code::RGB565, 16, 4, 16}, 0, *type.Put()), S_OK);
        sample.SetMediaType(type.Get());
        return Fill(sample, pf);
    };
    ASSERT_EQ(Build(), S_OK);
    ASSERT_EQ(m_spGraph->Run(), S_OK);
    m_spSink->WaitForEnd();
    EXPECT_EQ(m_spSource->Outcome(), VFW_E_INVALIDMEDIATYPE);
    EXPECT_EQ(m_nTaken, 0);
    EXPECT_EQ(m_spFilter->m_spIn->Picture().dwFormat, format_code::I420);
}

TEST_F(FilterInGraph, MeetsADemandedColourSpace) {
    m_Source.streams = {{{format_code::I420, 16, 4, 16}, 0}, {{format_code::YUY2, 16, 4, 16}, 0}};
    ASSERT_EQ(Build(), S_OK);
    CBstr yuy2;
    CBstr rgb32;
    ASSERT_EQ(yuy2.Assign(std::u16string_view(u"YUY2")), S_OK);
    ASSERT_EQ(rgb32.Assign(std::u16string_view(u"RGB32")), S_OK);
    EXPECT_EQ(m_spFilter->SetColorSpace(rgb32.Get()), VFW_E_TYPE_NOT_ACCEPTED) << "upstream has none";
    EXPECT_EQ(m_spFilter->SetColorSpace(yuy2.Get()), S_OK);
    EXPECT_EQ(m_spFilter->m_spIn->Picture().dwFormat, format_code::YUY2);
    EXPECT_EQ(m_spFilter->m_spOut->Picture().dwFormat, format_code::YUY2);
    EXPECT_EQ(m_spFilter->IsDirty(), S_FALSE) << "the connection is no part of the stack";
    RunToEnd();
    EXPECT_EQ(m_LastFormat.dwFormat, format_code::YUY2);
}

TEST_F(FilterInGraph, GoesThroughItsStatesWithItsAllocator) {
    m_nFrames = 1 << 30;
    ASSERT_EQ(Build(), S_OK);
    const CComPtr<IMemAllocator> spAllocator = m_spFilter->m_spOut->m_Allocator.Get();
    FILTER_STATE state = State_Running;
    EXPECT_EQ(m_spFilter->Run(5), S_OK);
    EXPECT_EQ(m_spFilter->GetState(0, &state), S_OK);
    EXPECT_EQ(state, State_Running);
    CComPtr<IMediaSample> spSample;
    EXPECT_EQ(spAllocator->GetBuffer(spSample.Put(), nullptr, nullptr, 0), S_OK) << "committed";
    EXPECT_EQ(m_spFilter->UseExtraBuffer2(1), VFW_E_NOT_STOPPED) << "also for what it is";
    EXPECT_EQ(m_spFilter->m_spIn->Disconnect(), VFW_E_NOT_STOPPED);
    EXPECT_EQ(m_spFilter->m_spOut->Disconnect(), VFW_E_NOT_STOPPED);
    EXPECT_EQ(m_spFilter->UseExtraBuffer2(0), VFW_E_NOT_STOPPED);
    spSample.Reset();
    EXPECT_EQ(m_spFilter->Stop(), S_OK);
    EXPECT_EQ(spAllocator->GetBuffer(spSample.Put(), nullptr, nullptr, 0), VFW_E_NOT_COMMITTED);

    EXPECT_EQ(m_spFilter->m_spOut->Disconnect(), S_OK);
    CComPtr<IPin> spPeer;
    EXPECT_EQ(m_spSink->OwnPin()->ConnectedTo(spPeer.Put()), VFW_E_NOT_CONNECTED) << "the far side forgets it too";
    EXPECT_EQ(m_spFilter->m_spOut->Disconnect(), S_FALSE);
    EXPECT_EQ(m_spFilter->Stop(), VFW_E_NOT_CONNECTED);
    EXPECT_EQ(m_spFilter->Pause(), VFW_E_WRONG_STATE);
}

} // namespace
} // namespace vellumcaster
