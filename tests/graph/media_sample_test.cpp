#include "graph/media_sample.h"
#include "graph/memory_allocator.h"
#include "graph/sample_copier.h"
#include "graph/sample_snapshot.h"
#include "platform/media/media_type_ids.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <functional>

namespace vellumcaster {
namespace {

using Props = AM_SAMPLE2_PROPERTIES;

class MediaSample : public testing::Test {
protected:
    MediaSample() {
        ALLOCATOR_PROPERTIES props{2, 100, 1, 0};
        EXPECT_EQ(CMemoryAllocator::Make(m_spAllocator), S_OK);
        EXPECT_EQ(m_spAllocator->SetProperties(&props, &props), S_OK);
        EXPECT_EQ(m_spAllocator->Commit(), S_OK);
        m_sp = Make();
    }
    ~MediaSample() override {
        m_sp.Reset();
        m_spAllocator->Decommit();
    }

    CComPtr<IMediaSample2> Make() {
        CComPtr<IMediaSample> sp;
        EXPECT_EQ(m_spAllocator->GetBuffer(sp.Put(), nullptr, nullptr, 0), S_OK);
        CComPtr<IMediaSample2> spSecond;
        EXPECT_EQ(sp->QueryInterface(IMediaSample2::IID, reinterpret_cast<void**>(spSecond.Put())), S_OK);
        return spSecond;
    }

    Props Read() {
        Props props;
        EXPECT_EQ(m_sp->GetProperties(sizeof props, reinterpret_cast<BYTE*>(&props)), S_OK);
        return props;
    }

    HRESULT Write(Props props, std::size_t cb = sizeof(Props)) {
        props.cbData = static_cast<DWORD>(cb);
        return m_sp->SetProperties(static_cast<DWORD>(cb), reinterpret_cast<const BYTE*>(&props));
    }

    CComPtr<CMemoryAllocator> m_spAllocator;
    CComPtr<IMediaSample2> m_sp;
};

TEST_F(MediaSample, HoldsTimesAsFarAsTheyWereSet) {
    REFERENCE_TIME s = 0;
    REFERENCE_TIME e = 0;
    REFERENCE_TIME ten = 10;
    REFERENCE_TIME nine = 9;
    EXPECT_EQ(m_sp->GetTime(&s, &e), VFW_E_SAMPLE_TIME_NOT_SET);
    EXPECT_EQ(m_sp->GetTime(nullptr, &e), E_INVALIDARG);
    EXPECT_EQ(m_sp->SetTime(&ten, nullptr), S_OK);
    EXPECT_EQ(m_sp->GetTime(&s, &e), VFW_S_NO_STOP_TIME);
    EXPECT_EQ(e, 11);
    REFERENCE_TIME last = INT64_MAX;
    EXPECT_EQ(m_sp->SetTime(&last, nullptr), S_OK);
    EXPECT_EQ(m_sp->GetTime(&s, &e), VFW_S_NO_STOP_TIME);
    EXPECT_EQ(e, last) << "there is no unit behind it";
    EXPECT_EQ(m_sp->SetTime(&ten, nullptr), S_OK);
    EXPECT_EQ(m_sp->SetTime(&ten, &nine), E_INVALIDARG);
    EXPECT_EQ(m_sp->GetTime(&s, &e), VFW_S_NO_STOP_TIME) << "nothing changed";
    EXPECT_EQ(m_sp->SetTime(&ten, &ten), S_OK);
    EXPECT_EQ(m_sp->GetTime(&s, &e), S_OK);
    EXPECT_EQ(e, 10);
    EXPECT_EQ(m_sp->SetTime(nullptr, &ten), S_OK);
    EXPECT_EQ(m_sp->GetTime(&s, &e), VFW_E_SAMPLE_TIME_NOT_SET);

    EXPECT_EQ(m_sp->SetMediaTime(&ten, nullptr), E_INVALIDARG);
    EXPECT_EQ(m_sp->SetMediaTime(&ten, &nine), E_INVALIDARG);
    EXPECT_EQ(m_sp->SetMediaTime(&ten, &ten), S_OK);
    EXPECT_EQ(m_sp->GetMediaTime(&s, &e), S_OK);
    EXPECT_EQ(m_sp->SetMediaTime(nullptr, nullptr), S_OK);
    EXPECT_EQ(m_sp->GetMediaTime(&s, &e), VFW_E_MEDIA_TIME_NOT_SET);
    EXPECT_EQ(s, 0);
}

TEST_F(MediaSample, KnowsTheRoomOfItsBuffer) {
    EXPECT_EQ(m_sp->GetSize(), 100);
    EXPECT_EQ(m_sp->GetActualDataLength(), 0);
    EXPECT_EQ(m_sp->SetActualDataLength(101), VFW_E_BUFFER_OVERFLOW);
    EXPECT_EQ(m_sp->SetActualDataLength(100), S_OK);
    EXPECT_EQ(m_sp->GetActualDataLength(), 100);
    EXPECT_EQ(m_sp->GetPointer(nullptr), E_POINTER);
}

TEST_F(MediaSample, TakesARecordAsFarAsItIsGiven) {
    const auto upTo = [](std::size_t offset, std::size_t cb) { return offset + cb; };
    Props props;
    props.dwTypeSpecificFlags = 7;
    props.dwSampleFlags = AM_SAMPLE_SPLICEPOINT | AM_SAMPLE_TIMEVALID | AM_SAMPLE_STOPVALID;
    props.lActual = 50;
    props.tStart = 5;
    props.tStop = 6;
    props.dwStreamId = 3;
    EXPECT_EQ(Write(props, 7), S_OK);
    EXPECT_EQ(Read().dwTypeSpecificFlags, 0u) << "less than its first field";
    EXPECT_EQ(Write(props, upTo(offsetof(Props, dwTypeSpecificFlags), 4)), S_OK);
    EXPECT_EQ(Read().dwTypeSpecificFlags, 7u);
    EXPECT_EQ(Read().dwSampleFlags, 0u);
    EXPECT_EQ(Write(props, upTo(offsetof(Props, tStart), 8)), E_INVALIDARG) << "a start that would have no stop";
    EXPECT_EQ(Write(props, upTo(offsetof(Props, tStop), 8)), S_OK);
    EXPECT_EQ(Read().tStop, 6);
    EXPECT_EQ(Read().dwStreamId, 0u);
    EXPECT_EQ(Write(props, upTo(offsetof(Props, dwStreamId), 4)), S_OK);
    EXPECT_EQ(Read().dwStreamId, 3u);
    EXPECT_EQ(m_sp->IsSyncPoint(), S_OK);

    Props small;
    small.tStart = 99;
    EXPECT_EQ(m_sp->GetProperties(upTo(offsetof(Props, lActual), 4), reinterpret_cast<BYTE*>(&small)), S_OK);
    EXPECT_EQ(small.cbData, 16u);
    EXPECT_EQ(small.lActual, 50);
    EXPECT_EQ(small.tStart, 99) << "behind what was asked for";
    EXPECT_EQ(m_sp->GetProperties(0, nullptr), S_OK);
    EXPECT_EQ(m_sp->GetProperties(8, nullptr), E_POINTER);
    EXPECT_EQ(m_sp->SetProperties(8, nullptr), E_POINTER);
}

TEST_F(MediaSample, RefusesARecordThatContradictsIt) {
    BYTE other = 0;
    const struct {
        const char* pszName;
        std::function<void(Props&)> change;
        HRESULT hr;
    } cases[] = {
        {"as it is", [](Props&) {}, S_OK},
        {"own flag", [](Props& p) { p.dwSampleFlags = 0x20; }, E_INVALIDARG},
        {"unknown flag", [](Props& p) { p.dwSampleFlags = 0x200; }, E_INVALIDARG},
        {"other buffer", [&](Props& p) { p.pbBuffer = &other; }, E_INVALIDARG},
        {"other size", [](Props& p) { p.cbBuffer = 99; }, E_INVALIDARG},
        {"more data than room", [](Props& p) { p.lActual = 101; }, E_INVALIDARG},
        {"no type", [](Props& p) { p.dwSampleFlags = AM_SAMPLE_TYPECHANGED; }, E_POINTER},
    };
    for (const auto& c : cases) {
        Props props = Read();
        c.change(props);
        EXPECT_EQ(Write(props), c.hr) << c.pszName;
    }
    EXPECT_EQ(m_sp->SetProperties(sizeof(Props) + 8, nullptr), E_POINTER);
    EXPECT_EQ(Read().lActual, 0);
}

TEST_F(MediaSample, CarriesATypeOfItsOwn) {
    AM_MEDIA_TYPE mt;
    MT_Init(mt, MEDIATYPE_Video, GUID{});
    AM_MEDIA_TYPE* pmt = nullptr;
    EXPECT_EQ(m_sp->GetMediaType(&pmt), S_FALSE);
    Props props = Read();
    props.dwSampleFlags = AM_SAMPLE_TYPECHANGED;
    props.pMediaType = &mt;
    EXPECT_EQ(Write(props), S_OK);
    ASSERT_EQ(m_sp->GetMediaType(&pmt), S_OK);
    EXPECT_NE(pmt, &mt);
    MT_Delete(pmt);
    EXPECT_EQ(m_sp->SetMediaType(Read().pMediaType), S_OK) << "its own record";
    ASSERT_EQ(m_sp->GetMediaType(&pmt), S_OK);
    EXPECT_EQ(pmt->majortype, MEDIATYPE_Video);
    MT_Delete(pmt);
    EXPECT_EQ(m_sp->SetMediaType(nullptr), S_OK);
    EXPECT_EQ(m_sp->GetMediaType(&pmt), S_FALSE);
    EXPECT_EQ(pmt, nullptr);
}

TEST_F(MediaSample, IsCopiedWithAllThatItSays) {
    const CComPtr<IMediaSample2> spTo = Make();
    BYTE* pData = nullptr;
    REFERENCE_TIME start = 30;
    REFERENCE_TIME stop = 20;
    LONGLONG first = 4;
    LONGLONG last = 5;
    AM_MEDIA_TYPE mt;
    MT_Init(mt, MEDIATYPE_Video, GUID{});
    ASSERT_EQ(m_sp->GetPointer(&pData), S_OK);
    std::memset(pData, 9, 100);
    m_sp->SetActualDataLength(60);
    m_sp->SetMediaTime(&first, &last);
    m_sp->SetDiscontinuity(1);
    m_sp->SetMediaType(&mt);
    Props props = Read();
    props.dwTypeSpecificFlags = 8;
    props.dwSampleFlags |= AM_SAMPLE_TIMEVALID | AM_SAMPLE_STOPVALID;
    props.tStart = start;
    props.tStop = stop;
    ASSERT_EQ(Write(props), S_OK);

    EXPECT_EQ(CSampleCopier::Copy(spTo.Get(), m_sp.Get(), sampleEverything), S_OK);
    ASSERT_EQ(spTo->GetPointer(&pData), S_OK);
    EXPECT_EQ(pData[59], 9);
    EXPECT_EQ(pData[60], 0);
    EXPECT_EQ(spTo->GetActualDataLength(), 60);
    EXPECT_EQ(spTo->GetTime(&start, &stop), S_OK);
    EXPECT_EQ(stop, 31) << "a stop that does not lie behind its start is put there";
    EXPECT_EQ(spTo->GetMediaTime(&first, &last), S_OK);
    EXPECT_EQ(spTo->IsSyncPoint(), S_FALSE);
    EXPECT_EQ(spTo->IsDiscontinuity(), S_OK);
    AM_MEDIA_TYPE* pmt = nullptr;
    EXPECT_EQ(spTo->GetMediaType(&pmt), S_OK);
    MT_Delete(pmt);
    Props copied;
    ASSERT_EQ(spTo->GetProperties(8, reinterpret_cast<BYTE*>(&copied)), S_OK);
    EXPECT_EQ(copied.dwTypeSpecificFlags, 8u);
}

TEST_F(MediaSample, IsCopiedWithoutWhatItLacks) {
    CSampleT snapshot;
    EXPECT_EQ(snapshot.Save(m_sp.Get(), sampleEverything), E_FAIL) << "not loaded";
    EXPECT_EQ(snapshot.Load(nullptr, sampleEverything), E_INVALIDARG);
    EXPECT_EQ(snapshot.Load(m_sp.Get(), 0), E_INVALIDARG);
    EXPECT_EQ(snapshot.Load(m_sp.Get(), sampleStart | sampleStop), E_FAIL) << "no times at all";
    EXPECT_EQ(snapshot.Load(m_sp.Get(), sampleStart | samplePreroll), S_FALSE);
    EXPECT_EQ(snapshot.Load(m_sp.Get(), sampleEverything), S_OK);
    EXPECT_FALSE(snapshot.Holds(sampleMediaTimes));
    EXPECT_EQ(snapshot.Save(m_sp.Get(), sampleMediaTimes), S_FALSE);

    REFERENCE_TIME start = 3;
    m_sp->SetTime(&start, nullptr);
    EXPECT_EQ(snapshot.Load(m_sp.Get(), sampleEverything), S_OK);
    EXPECT_TRUE(snapshot.Holds(sampleStart));
    EXPECT_FALSE(snapshot.Holds(sampleStop));
    EXPECT_EQ(snapshot.m_tE, 4);
    const CComPtr<IMediaSample2> spTo = Make();
    REFERENCE_TIME stop = 0;
    EXPECT_EQ(snapshot.Save(spTo.Get(), sampleEverything), S_OK);
    EXPECT_EQ(spTo->GetTime(&start, &stop), VFW_S_NO_STOP_TIME);
}

TEST_F(MediaSample, TakesAPayloadOnlyWithItsLengthAndIntoRoomEnough) {
    const BYTE data[120] = {};
    constexpr WORD both = samplePayload | sampleActualLength;
    EXPECT_EQ(CSampleCopier::CopyBuffer(m_sp.Get(), nullptr, 5, both), E_INVALIDARG);
    EXPECT_EQ(CSampleCopier::CopyBuffer(m_sp.Get(), data, 5, samplePayload), E_INVALIDARG);
    EXPECT_EQ(CSampleCopier::CopyBuffer(m_sp.Get(), data, 120, both), E_FAIL);
    EXPECT_EQ(m_sp->GetActualDataLength(), 0);
    EXPECT_EQ(CSampleCopier::CopyBuffer(m_sp.Get(), data, 0, 0x0FFF), S_OK) << "nothing was wanted";
    EXPECT_EQ(CSampleCopier::CopyBuffer(m_sp.Get(), data, 100, both), S_OK);
    EXPECT_EQ(CSampleCopier::CopyBuffer(m_sp.Get(), data, 0, both), S_OK);
    EXPECT_EQ(m_sp->GetActualDataLength(), 0);
}

} // namespace
} // namespace vellumcaster
