#include "host/graph/graph_builder.h"
#include "host/graph/video_type.h"
#include "platform/com/marshal.h"
#include "support/scripted_peer.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace vellumcaster {
namespace {

/// A pin on the far side that has everything, and notes what reaches it.
class CFarPin final : public CUnknownImpl<IPin, IMediaSeeking, IKsPropertySet, IQualityControl> {
public:
    explicit CFarPin(PIN_DIRECTION direction) : m_Direction(direction) {}

    HRESULT QueryInterface(const GUID& iid, void** ppv) override {
        if (m_bBare && (iid == IMediaSeeking::IID || iid == IKsPropertySet::IID)) {
            *ppv = nullptr;
            return E_NOINTERFACE;
        }
        return CUnknownImpl::QueryInterface(iid, ppv);
    }

    HRESULT Connect(IPin*, const AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    HRESULT ReceiveConnection(IPin*, const AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    HRESULT Disconnect() override { return S_OK; }
    HRESULT ConnectedTo(IPin**) override { return E_NOTIMPL; }
    HRESULT ConnectionMediaType(AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    HRESULT QueryPinInfo(PIN_INFO*) override { return E_NOTIMPL; }
    HRESULT QueryDirection(PIN_DIRECTION* p) override { return *p = m_Direction, S_OK; }
    HRESULT QueryId(OLECHAR**) override { return E_NOTIMPL; }
    HRESULT QueryAccept(const AM_MEDIA_TYPE*) override { return S_OK; }
    HRESULT EnumMediaTypes(IEnumMediaTypes**) override { return E_NOTIMPL; }
    HRESULT QueryInternalConnections(IPin**, ULONG*) override { return E_NOTIMPL; }
    HRESULT EndOfStream() override { return Note("EndOfStream"); }
    HRESULT BeginFlush() override {
        if (m_onBeginFlush) std::thread(m_onBeginFlush).join();
        return Note("BeginFlush");
    }
    HRESULT EndFlush() override { return Note("EndFlush"); }
    HRESULT NewSegment(REFERENCE_TIME s, REFERENCE_TIME e, double r) override {
        return Note("NewSegment " + std::to_string(s) + ' ' + std::to_string(e) + ' ' + std::to_string(int(r)));
    }

    HRESULT GetCapabilities(DWORD*) override { return Note("GetCapabilities"); }
    HRESULT CheckCapabilities(DWORD*) override { return Note("CheckCapabilities"); }
    HRESULT IsFormatSupported(const GUID*) override { return Note("IsFormatSupported"); }
    HRESULT QueryPreferredFormat(GUID*) override { return Note("QueryPreferredFormat"); }
    HRESULT GetTimeFormat(GUID*) override { return Note("GetTimeFormat"); }
    HRESULT IsUsingTimeFormat(const GUID*) override { return Note("IsUsingTimeFormat"); }
    HRESULT SetTimeFormat(const GUID*) override { return Note("SetTimeFormat"); }
    HRESULT GetDuration(LONGLONG* p) override { return *p = 77, Note("GetDuration"); }
    HRESULT GetStopPosition(LONGLONG*) override { return Note("GetStopPosition"); }
    HRESULT GetCurrentPosition(LONGLONG*) override { return Note("GetCurrentPosition"); }
    HRESULT ConvertTimeFormat(LONGLONG*, const GUID*, LONGLONG, const GUID*) override {
        return Note("ConvertTimeFormat");
    }
    HRESULT SetPositions(LONGLONG* p, DWORD a, LONGLONG* q, DWORD b) override {
        return Note(std::string("SetPositions ") + (p || q ? "?" : "null") + std::to_string(a) + std::to_string(b));
    }
    HRESULT GetPositions(LONGLONG*, LONGLONG*) override { return Note("GetPositions"); }
    HRESULT GetAvailable(LONGLONG*, LONGLONG*) override { return Note("GetAvailable"); }
    HRESULT SetRate(double) override { return Note("SetRate"); }
    HRESULT GetRate(double*) override { return Note("GetRate"); }
    HRESULT GetPreroll(LONGLONG*) override { return Note("GetPreroll"); }

    HRESULT Set(const GUID&, DWORD n, void*, DWORD, void*, DWORD) override { return Note("Set " + std::to_string(n)); }
    HRESULT Get(const GUID&, DWORD n, void*, DWORD, void*, DWORD, DWORD*) override {
        return Note("Get " + std::to_string(n));
    }
    HRESULT QuerySupported(const GUID&, DWORD, DWORD*) override { return Note("QuerySupported"); }

    HRESULT Notify(IBaseFilter*, Quality q) override { return Note("Notify " + std::to_string(q.Proportion)); }
    HRESULT SetSink(IQualityControl*) override { return E_NOTIMPL; }

    std::string m_Last;
    HRESULT m_hr = S_FALSE; ///< what every call answers
    bool m_bFaults = false;
    std::function<void()> m_onBeginFlush; ///< on a thread of its own
    bool m_bBare = false;

private:
    HRESULT Note(std::string call) {
        m_Last = std::move(call);
        return m_bFaults ? testing_support::Fault() : m_hr;
    }

    PIN_DIRECTION m_Direction;
};

class FilterPins : public testing::Test {
protected:
    FilterPins() {
        EXPECT_EQ(CCoVellumcaster::Make(m_spFilter), S_OK);
        EXPECT_EQ(m_spGraph->AddFilter(m_spFilter.Get(), u"Overlay"), S_OK);
    }
    ~FilterPins() override {
        m_spFilter->m_spIn->m_spConnected.Set({});
        m_spFilter->m_spOut->m_spConnected.Set({});
        m_spGraph->Clear();
    }

    void ConnectUpstream() { m_spFilter->m_spIn->m_spConnected.Set(m_spUpstream.Get()); }
    void ConnectDownstream() { m_spFilter->m_spOut->m_spConnected.Set(m_spDownstream.Get()); }

    template <class Interface, class Pin>
    static HRESULT Ask(const CComPtr<Pin>& spPin, CComPtr<Interface>& sp) {
        return spPin->QueryInterface(Interface::IID, reinterpret_cast<void**>(sp.Put()));
    }

    CComPtr<CGraph> m_spGraph = MakeCounted<CGraph>();
    CComPtr<CCoVellumcaster> m_spFilter;
    CComPtr<CFarPin> m_spUpstream = MakeCounted<CFarPin>(PINDIR_OUTPUT);
    CComPtr<CFarPin> m_spDownstream = MakeCounted<CFarPin>(PINDIR_INPUT);
};

TEST_F(FilterPins, AreFoundByNumberAndByName) {
    CComPtr<IEnumPins> spEnum;
    ASSERT_EQ(m_spFilter->EnumPins(spEnum.Put()), S_OK);
    IPin* pins[3] = {};
    ULONG cFetched = 0;
    EXPECT_EQ(spEnum->Next(3, nullptr, &cFetched), E_POINTER);
    EXPECT_EQ(spEnum->Next(3, pins, nullptr), E_INVALIDARG);
    EXPECT_EQ(spEnum->Next(3, pins, &cFetched), S_FALSE);
    ASSERT_EQ(cFetched, 2u);
    for (ULONG i = 0; i < 2; ++i) {
        PIN_INFO info;
        ASSERT_EQ(pins[i]->QueryPinInfo(&info), S_OK);
        EXPECT_EQ(std::u16string(info.achName), i == 0 ? u"In" : u"Out");
        EXPECT_EQ(info.dir, i == 0 ? PINDIR_INPUT : PINDIR_OUTPUT);
        EXPECT_EQ(info.pFilter, static_cast<IBaseFilter*>(m_spFilter.Get()));
        info.pFilter->Release();
        CComPtr<IPin> spFound;
        EXPECT_EQ(m_spFilter->FindPin(info.achName, spFound.Put()), S_OK);
        EXPECT_EQ(spFound, pins[i]);
        pins[i]->Release();
    }
    EXPECT_EQ(spEnum->Skip(1), S_FALSE);
    EXPECT_EQ(spEnum->Reset(), S_OK);
    EXPECT_EQ(spEnum->Skip(1), S_OK);
    CComPtr<IEnumPins> spClone;
    ASSERT_EQ(spEnum->Clone(spClone.Put()), S_OK);
    CComPtr<IPin> spPin;
    EXPECT_EQ(spClone->Next(1, spPin.Put(), nullptr), S_OK);
    EXPECT_EQ(spPin, static_cast<IPin*>(m_spFilter->m_spOut.Get()));
    EXPECT_EQ(m_spFilter->FindPin(u"out", spPin.Put()), VFW_E_NOT_FOUND);
    EXPECT_EQ(m_spFilter->FindPin(nullptr, spPin.Put()), E_POINTER);
}

TEST_F(FilterPins, KnowTheirFilterWhileItIsInAGraph) {
    FILTER_INFO info;
    ASSERT_EQ(m_spFilter->QueryFilterInfo(&info), S_OK);
    EXPECT_EQ(std::u16string(info.achName), u"Overlay");
    EXPECT_EQ(info.pGraph, static_cast<IFilterGraph*>(m_spGraph.Get()));
    info.pGraph->Release();
    ASSERT_EQ(m_spGraph->RemoveFilter(m_spFilter.Get()), S_OK);
    ASSERT_EQ(m_spFilter->QueryFilterInfo(&info), S_OK);
    EXPECT_EQ(info.pGraph, nullptr);
    EXPECT_EQ(std::u16string(info.achName), u"");
    PIN_INFO pin;
    ASSERT_EQ(m_spFilter->m_spIn->QueryPinInfo(&pin), S_OK);
    EXPECT_EQ(pin.pFilter, nullptr);
    EXPECT_EQ(m_spFilter->QueryFilterInfo(nullptr), E_INVALIDARG);
    GUID id;
    EXPECT_EQ(m_spFilter->CBaseFilter::State(), State_Stopped);
    EXPECT_EQ(static_cast<IBaseFilter*>(m_spFilter.Get())->GetClassID(&id), S_OK);
    EXPECT_EQ(id, CLSID_CoVellumcaster);
}

TEST_F(FilterPins, AnswerWithoutAConnection) {
    CCoVellumcasterIn& in = *m_spFilter->m_spIn;
    CCoVellumcasterOut& out = *m_spFilter->m_spOut;
    AM_MEDIA_TYPE mt;
    CComPtr<IPin> spPin;
    ALLOCATOR_PROPERTIES props;
    const struct {
        const char* pszName;
        HRESULT hr;
        HRESULT hrExpected;
    } answers[] = {
        {"In.Connect", in.Connect(&out, nullptr), E_NOTIMPL},
        {"In.Disconnect", in.Disconnect(), S_FALSE},
        {"In.ConnectedTo", in.ConnectedTo(spPin.Put()), VFW_E_NOT_CONNECTED},
        {"In.ConnectionMediaType", in.ConnectionMediaType(&mt), VFW_E_NOT_CONNECTED},
        {"In.ReceiveConnection, null", in.ReceiveConnection(nullptr, &mt), E_POINTER},
        {"In.ReceiveConnection, of an input", in.ReceiveConnection(&in, &mt), VFW_E_INVALID_DIRECTION},
        {"In.ReceiveConnection, no type", in.ReceiveConnection(&out, &mt), VFW_E_TYPE_NOT_ACCEPTED},
        {"In.QueryAccept", in.QueryAccept(&mt), S_FALSE},
        {"In.EndOfStream", in.EndOfStream(), VFW_E_NOT_CONNECTED},
        {"In.BeginFlush", in.BeginFlush(), VFW_E_NOT_CONNECTED},
        {"In.EndOfStream, flushing", in.EndOfStream(), E_UNEXPECTED},
        {"In.Receive, null", in.Receive(nullptr), E_POINTER},
        {"In.EndFlush", in.EndFlush(), VFW_E_NOT_CONNECTED},
        {"In.NewSegment", in.NewSegment(1, 2, 3), VFW_E_NOT_CONNECTED},
        {"In.GetAllocatorRequirements", in.GetAllocatorRequirements(&props), E_NOTIMPL},
        {"In.ReceiveCanBlock", in.ReceiveCanBlock(), S_OK},
        {"In.Notify", in.Notify(nullptr, {}), E_NOTIMPL},
        {"Out.Connect, null", out.Connect(nullptr, nullptr), E_POINTER},
        {"Out.Connect, to an output", out.Connect(&out, nullptr), VFW_E_INVALID_DIRECTION},
        {"Out.Connect, before the input", out.Connect(&in, nullptr), E_FAIL},
        {"Out.ReceiveConnection", out.ReceiveConnection(&in, nullptr), E_NOTIMPL},
        {"Out.QueryAccept", out.QueryAccept(&mt), S_FALSE},
        {"Out.EndOfStream", out.EndOfStream(), E_NOTIMPL},
        {"Out.NewSegment", out.NewSegment(0, 0, 1), E_NOTIMPL},
        {"Out.Notify", out.Notify(nullptr, {}), VFW_E_NOT_CONNECTED},
        {"Out.SetSink", out.SetSink(nullptr), E_NOTIMPL},
        {"Stop", m_spFilter->Stop(), VFW_E_NOT_CONNECTED},
        {"Pause", m_spFilter->Pause(), VFW_E_WRONG_STATE},
    };
    for (const auto& answer : answers)
        EXPECT_EQ(answer.hr, answer.hrExpected) << answer.pszName;
    EXPECT_EQ(in.CurrentSegment().dRate, 3.0);
    in.EndFlush();
    EXPECT_EQ(in.CurrentSegment().dRate, 1.0);

    CComPtr<IEnumMediaTypes> spTypes;
    AM_MEDIA_TYPE* pmt = nullptr;
    ASSERT_EQ(in.EnumMediaTypes(spTypes.Put()), S_OK);
    ASSERT_EQ(spTypes->Next(1, &pmt, nullptr), S_OK) << "video, and no more is known";
    EXPECT_EQ(pmt->majortype, MEDIATYPE_Video);
    EXPECT_EQ(pmt->subtype, GUID{});
    MT_Delete(pmt);
    ASSERT_EQ(out.EnumMediaTypes(spTypes.Put()), S_OK);
    EXPECT_EQ(spTypes->Next(1, &pmt, nullptr), S_FALSE);
}

TEST_F(FilterPins, PassStreamCallsOnDownstream) {
    ConnectDownstream();
    m_spDownstream->m_hr = VFW_E_TIMEOUT;
    EXPECT_EQ(m_spFilter->m_spIn->EndOfStream(), VFW_E_TIMEOUT);
    EXPECT_EQ(m_spDownstream->m_Last, "EndOfStream");
    EXPECT_EQ(m_spFilter->m_spIn->NewSegment(5, 6, 2.0), VFW_E_TIMEOUT);
    EXPECT_EQ(m_spDownstream->m_Last, "NewSegment 5 6 2");
    EXPECT_EQ(m_spFilter->m_spIn->BeginFlush(), VFW_E_TIMEOUT);
    EXPECT_EQ(m_spDownstream->m_Last, "BeginFlush");
    EXPECT_EQ(m_spFilter->m_spIn->EndFlush(), VFW_E_TIMEOUT);
    EXPECT_EQ(m_spDownstream->m_Last, "EndFlush");
}

TEST_F(FilterPins, OfferSeekingAndPropertiesWhileTheFarSideHasThem) {
    CComPtr<IMediaSeeking> spSeeking;
    CComPtr<IKsPropertySet> spProperties;
    EXPECT_EQ(Ask(m_spFilter->m_spOut, spSeeking), E_NOINTERFACE);
    EXPECT_EQ(Ask(m_spFilter->m_spIn, spProperties), E_NOINTERFACE);
    ConnectUpstream();
    ConnectDownstream();
    EXPECT_EQ(Ask(m_spFilter->m_spIn, spSeeking), E_NOINTERFACE);
    EXPECT_EQ(Ask(m_spFilter->m_spOut, spProperties), E_NOINTERFACE);
    m_spUpstream->m_bBare = m_spDownstream->m_bBare = true;
    EXPECT_EQ(Ask(m_spFilter->m_spOut, spSeeking), E_NOINTERFACE);
    EXPECT_EQ(Ask(m_spFilter->m_spIn, spProperties), E_NOINTERFACE);
    m_spUpstream->m_bBare = m_spDownstream->m_bBare = false;
    ASSERT_EQ(Ask(m_spFilter->m_spOut, spSeeking), S_OK);
    ASSERT_EQ(Ask(m_spFilter->m_spIn, spProperties), S_OK);

    LONGLONG duration = 0;
    EXPECT_EQ(spSeeking->GetDuration(&duration), S_FALSE);
    EXPECT_EQ(duration, 77);
    EXPECT_EQ(spSeeking->SetPositions(nullptr, 1, nullptr, 2), S_FALSE);
    EXPECT_EQ(m_spUpstream->m_Last, "SetPositions null12") << "no argument is looked at";
    EXPECT_EQ(spProperties->Set(GUID{}, 9, nullptr, 0, nullptr, 0), S_FALSE);
    EXPECT_EQ(m_spDownstream->m_Last, "Set 9");

    m_spUpstream->m_bFaults = m_spDownstream->m_bFaults = true;
    EXPECT_EQ(spSeeking->GetDuration(&duration), E_UNEXPECTED);
    EXPECT_EQ(spProperties->Set(GUID{}, 9, nullptr, 0, nullptr, 0), E_UNEXPECTED);

    m_spFilter->m_spIn->m_spConnected.Set({});
    DWORD dw = 0;
    LONGLONG ll = 0;
    double d = 0;
    GUID id;
    for (const HRESULT hr :
         {spSeeking->GetCapabilities(&dw), spSeeking->CheckCapabilities(&dw), spSeeking->IsFormatSupported(&id),
          spSeeking->QueryPreferredFormat(&id), spSeeking->GetTimeFormat(&id), spSeeking->IsUsingTimeFormat(&id),
          spSeeking->SetTimeFormat(&id), spSeeking->GetDuration(&ll), spSeeking->GetStopPosition(&ll),
          spSeeking->GetCurrentPosition(&ll), spSeeking->ConvertTimeFormat(&ll, &id, 0, &id),
          spSeeking->SetPositions(&ll, 0, &ll, 0), spSeeking->GetPositions(&ll, &ll), spSeeking->GetAvailable(&ll, &ll),
          spSeeking->SetRate(1), spSeeking->GetRate(&d), spSeeking->GetPreroll(&ll)})
        EXPECT_EQ(hr, E_NOTIMPL) << "kept over a disconnection";
}

TEST_F(FilterPins, SendNoticesOfQualityUpstreamOrToTheSink) {
    ConnectUpstream();
    Quality q;
    q.Proportion = 800;
    EXPECT_EQ(m_spFilter->m_spOut->Notify(nullptr, q), S_FALSE);
    EXPECT_EQ(m_spUpstream->m_Last, "Notify 800");
    m_spDownstream->m_hr = S_OK;
    EXPECT_EQ(m_spFilter->m_spIn->SetSink(m_spDownstream.Get()), S_OK);
    q.Proportion = 900;
    EXPECT_EQ(m_spFilter->m_spOut->Notify(nullptr, q), S_OK);
    EXPECT_EQ(m_spDownstream->m_Last, "Notify 900");
    EXPECT_EQ(m_spUpstream->m_Last, "Notify 800");

    ConnectDownstream();
    m_spDownstream->m_onBeginFlush = [&] {
        CCoVellumcasterIn& in = *m_spFilter->m_spIn;
        EXPECT_EQ(m_spFilter->m_spOut->Notify(nullptr, q), S_OK) << "also from within a flush";
        EXPECT_EQ(in.Picture(), PictureFormat());
        EXPECT_EQ(in.AvgTimePerFrame(), 0);
    };
    EXPECT_EQ(m_spFilter->m_spIn->BeginFlush(), S_OK);
}

TEST_F(FilterPins, LeaveNothingOfAConnectionThatDidNotComeAbout) {
    ConnectDownstream();
    CMediaTypeHolder type;
    ASSERT_EQ(MakeVideoType({format_code::ARGB32, 16, 4, 16}, 0, *type.Put()), S_OK);
    EXPECT_EQ(m_spFilter->m_spIn->ReceiveConnection(m_spUpstream.Get(), type.Get()), E_NOTIMPL)
        << "the output cannot be connected anew";
    EXPECT_FALSE(m_spFilter->m_spIn->IsConnected());
    EXPECT_EQ(m_spFilter->m_spIn->Picture(), PictureFormat());
    ImageInfoTag info{2, -2, 32, 0, 16};
    const std::vector<BYTE> pixels(16, 255);
    LONG cookie = 0;
    EXPECT_EQ(m_spFilter->AddImageFromMemory2(&info, 16, pixels.data(), nullptr, -1, -1, nullptr, &cookie), S_OK)
        << "nothing is prepared in a format that is not the stream's";
}

TEST_F(FilterPins, AreGivenToAnyThread) {
    CComPtr<IMarshal> spMarshal;
    CComPtr<IBaseFilter> spBack;
    ASSERT_EQ(m_spFilter->QueryInterface(IMarshal::IID, reinterpret_cast<void**>(spMarshal.Put())), S_OK);
    ASSERT_EQ(spMarshal->QueryInterface(IBaseFilter::IID, reinterpret_cast<void**>(spBack.Put())), S_OK);
    EXPECT_EQ(spBack, static_cast<IBaseFilter*>(m_spFilter.Get())) << "one object";
}

TEST_F(FilterPins, NameTheirPropertyPage) {
    CAUUID pages;
    ASSERT_EQ(m_spFilter->GetPages(&pages), S_OK);
    ASSERT_EQ(pages.cElems, 1u);
    EXPECT_EQ(pages.pElems[0], CLSID_MixerPage);
    CoTaskMemFree(pages.pElems);
    EXPECT_EQ(m_spFilter->GetPages(nullptr), E_POINTER);
}

TEST(MemoryType, IsTheOneThatItsTimesSay) {
    const struct {
        MemoryTimes times;
        MemoryType type;
    } cases[] = {{{3, 1}, MemoryType::Video},           {{2, 1}, MemoryType::System},
                 {{99999, 99999}, MemoryType::System},  {{100000, 100000}, MemoryType::Unknown},
                 {{200001, 100000}, MemoryType::Video}, {{0, 0}, MemoryType::System}};
    for (const auto& c : cases)
        EXPECT_EQ(ClassifyMemory(c.times), c.type) << c.times.tRead << ' ' << c.times.tWrite;
    std::vector<BYTE> buffer(200000, 1);
    EXPECT_EQ(DetectMemoryType(buffer.data(), 0), MemoryType::Unknown);
    EXPECT_NE(DetectMemoryType(buffer.data(), 200000), MemoryType::Unknown);
    EXPECT_EQ(buffer[102400], 1) << "behind what is measured";
}

} // namespace
} // namespace vellumcaster
