#include "engine/vellumcaster_filter.h"
#include "host/graph/graph_manager.h"
#include "host/graph/video_type.h"
#include "platform/kernel/trace.h"
#include "support/allocation_counter.h"
#include "support/fake_graph.h"
#include "support/flat_item.h"
#include "support/plain_sample.h"
#include "support/scripted_callback.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace vellumcaster {
namespace {

using namespace testing_support;
using namespace format_code;
using Bytes = std::vector<BYTE>;

constexpr BYTE nFrame = 10;   ///< what comes in
constexpr BYTE nOverlay = 90; ///< what the item draws

/// The filter with its types and its output's memory set by hand. The input frame is 4 x 2 top-down RGB32; an item of
/// 2 x 2 lies on its left.
class MixingPass : public testing::Test {
protected:
    MixingPass() {
        EXPECT_EQ(CCoVellumcaster::Make(m_spFilter), S_OK);
        EXPECT_EQ(m_spGraph->AddFilter(m_spFilter.Get(), u"Overlay"), S_OK);
        m_spIn = m_spFilter->m_spIn;
        m_spOut = m_spFilter->m_spOut;
        SetType(*m_spIn, {RGB32, 4, -2, 4});
        SetType(*m_spOut, {RGB32, 4, -2, 4});
        SetReadOnly(false);
        m_spOut->m_spMemInput.Set(m_spDownstream.Get());
        SetAllocator(m_spAllocator.Get());
        m_spAllocator->m_spSample = m_spOutputSample.Get();
    }
    ~MixingPass() override {
        SetAllocator(MakeCounted<COneSampleAllocator>().Get()); // lets go of the one that stands here
        m_spGraph->Clear();
    }

    template <class Pin>
    static void SetType(Pin& pin, const PictureFormat& pf) {
        CMediaTypeHolder type;
        ASSERT_EQ(MakeVideoType(pf, 400000, *type.Put()), S_OK);
        ASSERT_EQ(pin.SetMediaType(type.Get()), S_OK);
    }
    void SetReadOnly(bool bReadOnly) { EXPECT_EQ(m_spIn->NotifyAllocator(m_spAllocator.Get(), bReadOnly), S_OK); }
    void SetAllocator(IMemAllocator* pAllocator) {
        EXPECT_EQ(m_spOut->m_Allocator.ReagreeUpstreamAllocator(m_spDownstream.Get(), pAllocator, true), S_OK);
    }

    void AddItem() { EXPECT_EQ(m_spFilter->Engine().AddItem(FlatItem(RGB32, {2, 2}, nOverlay), nullptr), S_OK); }

    HRESULT Send() { return m_spFilter->Filter_SendSample(0, m_spInputSample.Get()); }

    /// A frame of two rows, given by the first byte of each pixel.
    static Bytes Frame(std::initializer_list<BYTE> pixels) {
        Bytes frame;
        for (const BYTE pixel : pixels)
            frame.insert(frame.end(), 4, pixel);
        return frame;
    }

    const Bytes m_Plain = Frame({10, 10, 10, 10, 10, 10, 10, 10});
    const Bytes m_Mixed = Frame({90, 90, 10, 10, 90, 90, 10, 10});

    Bytes m_Input = Bytes(32, nFrame);
    Bytes m_Output = Bytes(32, 0);
    CComPtr<CPlainSample> m_spInputSample = MakeCounted<CPlainSample>(m_Input.data(), 32);
    CComPtr<CPlainSample> m_spOutputSample = MakeCounted<CPlainSample>(m_Output.data(), 32);
    CComPtr<COneSampleAllocator> m_spAllocator = MakeCounted<COneSampleAllocator>();
    int m_nDelivered = 0;
    IMediaSample* m_pDelivered = nullptr;
    CComPtr<CWatchingPin> m_spDownstream = MakeCounted<CWatchingPin>([this](IMediaSample& sample) {
        ++m_nDelivered;
        m_pDelivered = &sample;
        return S_OK;
    });
    CComPtr<CGraph> m_spGraph = MakeCounted<CGraph>();
    CComPtr<CCoVellumcaster> m_spFilter;
    CComPtr<CCoVellumcasterIn> m_spIn;
    CComPtr<CCoVellumcasterOut> m_spOut;
};

MemoryType SaysSystem(BYTE*, LONG) { return MemoryType::System; }
MemoryType SaysVideo(BYTE*, LONG) { return MemoryType::Video; }
MemoryType SaysUnknown(BYTE*, LONG) { return MemoryType::Unknown; }

TEST_F(MixingPass, ChoosesTheBufferByAllocatorsAndMemory) {
    enum class MixedIn { Input, Output, Extra };
    const struct {
        const char* pszName;
        bool bSeparated, bReadOnly;
        MemoryType (*probe)(BYTE*, LONG);
        bool bExtraBuffer;
        MixedIn mixedIn;
        MemoryType typeAfter;
    } paths[] = {
        {"through-pass", false, false, SaysVideo, true, MixedIn::Input, MemoryType::System},
        {"through-pass, read-only", false, true, SaysVideo, true, MixedIn::Input, MemoryType::System},
        {"separated, writable", true, false, SaysVideo, true, MixedIn::Input, MemoryType::Unknown},
        {"separated, read-only, system", true, true, SaysSystem, true, MixedIn::Output, MemoryType::System},
        {"separated, read-only, video", true, true, SaysVideo, true, MixedIn::Extra, MemoryType::Video},
        {"separated, read-only, unknown", true, true, SaysUnknown, true, MixedIn::Extra, MemoryType::Unknown},
        {"separated, video, no extra buffer", true, true, SaysVideo, false, MixedIn::Output, MemoryType::Video},
    };
    AddItem();
    for (const auto& path : paths) {
        SCOPED_TRACE(path.pszName);
        m_Input = m_Plain;
        m_Output.assign(32, 0);
        CVirtualBlob& extra = *m_spOut->m_Extra.Get();
        ASSERT_EQ(extra.Alloc(path.bExtraBuffer ? 32 : 0, true, 0), S_OK);
        m_spFilter->m_nMemoryType = MemoryType::Unknown;
        m_spFilter->m_pfnDetectMemoryType = path.probe;
        SetReadOnly(path.bReadOnly);
        m_spFilter->m_bSeparated = path.bSeparated;

        EXPECT_EQ(Send(), S_OK);
        EXPECT_EQ(m_Input, path.mixedIn == MixedIn::Input ? m_Mixed : m_Plain);
        EXPECT_EQ(m_Output, path.bSeparated ? m_Mixed : Bytes(32, 0));
        const Bytes expectedExtra = path.mixedIn == MixedIn::Extra ? m_Mixed : Bytes(extra.Size(), 0);
        EXPECT_EQ(Bytes(extra.Data(), extra.Data() + extra.Size()), expectedExtra);
        EXPECT_EQ(m_spFilter->m_nMemoryType, path.typeAfter);
        EXPECT_EQ(m_pDelivered, path.bSeparated ? m_spOutputSample.Get() : m_spInputSample.Get());
        EXPECT_EQ(m_spAllocator->m_bAskedPlainly, path.bSeparated);
    }
}

TEST_F(MixingPass, BringsTheOutputsGeometryAndRowOrderIn) {
    AddItem();
    SetType(*m_spOut, {RGB32, 3, 2, 4}); // bottom-up, a column less
    m_spFilter->m_bSeparated = true;
    const Bytes expected = Frame({90, 90, 10, 0, 90, 90, 10, 0});
    for (const bool bReadOnly : {false, true}) {
        m_Input = m_Plain;
        m_Output.assign(32, 0);
        SetReadOnly(bReadOnly);
        m_spFilter->m_bSeparated = true;
        EXPECT_EQ(Send(), S_OK);
        EXPECT_EQ(m_Output, expected);
    }
}

TEST_F(MixingPass, CarriesTheFrameAndItsPropertiesOver) {
    m_spFilter->m_bSeparated = true;
    m_spInputSample->SetDiscontinuity(1);
    m_spOutputSample->SetActualDataLength(5);
    ASSERT_EQ(Send(), S_OK);
    EXPECT_EQ(m_spOutputSample->IsDiscontinuity(), S_OK);
    EXPECT_EQ(m_spOutputSample->GetActualDataLength(), 32);
    EXPECT_EQ(m_Output, m_Plain) << "an empty list still copies the frame";
}

TEST_F(MixingPass, MeasuresTheOutputsMemoryOnceAConnection) {
    static int nMeasured = 0;
    SetReadOnly(true);
    m_spFilter->m_bSeparated = true;
    m_spFilter->m_pfnDetectMemoryType = [](BYTE*, LONG cb) {
        nMeasured += cb == 32;
        return MemoryType::System;
    };
    Send();
    Send();
    EXPECT_EQ(nMeasured, 1);
    EXPECT_EQ(m_spFilter->Filter_CompleteConnect(1), S_OK);
    Send();
    EXPECT_EQ(nMeasured, 2);
    EXPECT_EQ(m_spFilter->Filter_CompleteConnect(2), E_ABORT);
}

TEST_F(MixingPass, ComputesALengthThatIsMissing) {
    AddItem();
    m_spInputSample->SetActualDataLength(0);
    EXPECT_EQ(Send(), S_OK);
    EXPECT_EQ(m_spInputSample->GetActualDataLength(), 32);
    EXPECT_EQ(m_Input, m_Mixed);
}

TEST_F(MixingPass, DropsAFrameThatItCannotGet) {
    EXPECT_EQ(m_spFilter->Filter_SendSample(0, nullptr), E_INVALIDARG);
    m_spFilter->m_bSeparated = true;
    m_spAllocator->m_hr = VFW_E_NOT_COMMITTED;
    EXPECT_EQ(Send(), VFW_E_NOT_COMMITTED);
    m_spAllocator->m_hr = S_OK;
    m_spAllocator->m_spSample = MakeCounted<CPlainSample>(nullptr, 32).Get();
    EXPECT_EQ(Send(), S_OK) << "no buffer and no error: dropped without a word";
    m_spAllocator->m_spSample.Reset();
    EXPECT_EQ(Send(), E_UNEXPECTED);
    m_spOut->m_Allocator.Reset();
    EXPECT_EQ(Send(), E_INVALIDARG);
    m_spFilter->m_bSeparated = false;
    m_spInputSample = MakeCounted<CPlainSample>(nullptr, 32);
    EXPECT_EQ(Send(), S_OK);
    EXPECT_EQ(m_nDelivered, 0);
}

TEST_F(MixingPass, NeverWritesBeyondASampleThatIsTooSmall) {
    AddItem();
    m_spInputSample = MakeCounted<CPlainSample>(m_Input.data(), 31);
    LONG cookie = 0;
    int nCalls = 0;
    BSTR bsName = nullptr;
    ITEM_TYPE eType = eText;
    EXPECT_EQ(m_spFilter->Engine().GetItemInfo2(0, &cookie, &bsName, &eType), S_OK);
    SysFreeString(bsName);
    const auto spCallback = MakeCounted<CScriptedCallback>([&nCalls](OVERLAY_PROPS&) { return ++nCalls, S_FALSE; });
    EXPECT_EQ(m_spFilter->Engine().SetItemCallback(cookie, spCallback.Get()), S_OK);
    EXPECT_EQ(Send(), S_OK) << "the frame goes on as it stands";
    EXPECT_EQ(m_Input, m_Plain);
    EXPECT_EQ(nCalls, 1) << "and its time goes by";
    EXPECT_EQ(m_spFilter->Engine().MixFrame({m_Input.data(), 31, m_spIn->Picture()}, {4, 2}, {}), E_INVALIDARG);

    m_spInputSample = MakeCounted<CPlainSample>(m_Input.data(), 32);
    m_spFilter->m_bSeparated = true;
    m_spAllocator->m_spSample = MakeCounted<CPlainSample>(m_Output.data(), 16).Get();
    for (const bool bReadOnly : {false, true}) {
        SetReadOnly(bReadOnly);
        m_spFilter->m_bSeparated = true;
        EXPECT_EQ(Send(), S_OK);
        EXPECT_EQ(m_Output, Bytes(32, 0));
    }
    EXPECT_EQ(m_nDelivered, 3);
}

TEST_F(MixingPass, ReleasesTheItemLockBeforeItDelivers) {
    bool bFree = false;
    m_spOut->m_spMemInput.Set(MakeCounted<CWatchingPin>([&](IMediaSample&) {
                                  std::thread([&] {
                                      LONG nCount = 0;
                                      bFree = m_spFilter->Engine().GetItemCount2(&nCount) == S_OK;
                                  }).join();
                                  return S_OK;
                              }).Get());
    EXPECT_EQ(Send(), S_OK);
    EXPECT_TRUE(bFree);
}

TEST_F(MixingPass, AllocatesNothingOnTheFramePath) {
    if (bTracing) GTEST_SKIP() << "a line of diagnosis is put together in memory";
    AddItem();
    OverlayItem moving = FlatItem(RGB32, {2, 2}, nOverlay, 128);
    moving.props.dblXDelta = 0.5;
    moving.props.bNoOffscreen = 1;
    ASSERT_EQ(m_spFilter->Engine().AddItem(std::move(moving), nullptr), S_OK);
    ASSERT_EQ(m_spOut->m_Extra.Get()->Alloc(32, true, 0), S_OK);
    for (const bool bSeparated : {false, true}) {
        for (const bool bReadOnly : {false, true}) {
            m_spFilter->m_bSeparated = bSeparated;
            SetReadOnly(bReadOnly);
            m_spFilter->m_bSeparated = true;
            ASSERT_EQ(Send(), S_OK);
            const CAllocationCounter counter;
            for (int frame = 0; frame < 100; ++frame)
                Send();
            EXPECT_EQ(counter.Count(), 0u);
        }
    }
    const CAllocationCounter counter;
    Bytes proof(1);
    EXPECT_EQ(counter.Count(), 1u) << "the counter sees allocations";
}

} // namespace
} // namespace vellumcaster
