#include "graph/media_type.h"

#include "graph/media_type_list.h"
#include "graph/media_type_match.h"
#include "platform/com/unknown_impl.h"
#include "platform/media/media_type_ids.h"
#include "platform/media/video_info.h"
#include "support/page_buffer.h"
#include "support/scripted_peer.h"

#include <gtest/gtest.h>

#include <vector>

namespace vellumcaster {
namespace {

using testing_support::CScriptedPeer;

/// A value record that frees what it owns.
struct OwnedType : AM_MEDIA_TYPE {
    OwnedType() = default;
    OwnedType(const GUID& fourCC, const VIDEOINFOHEADER& format) {
        EXPECT_EQ(MT_Set(*this, MEDIATYPE_Video, fourCC, FORMAT_VideoInfo, sizeof(format), &format), S_OK);
    }
    OwnedType(const OwnedType&) = delete;
    ~OwnedType() { MT_Free(*this); }
};

constexpr VIDEOINFOHEADER thirtyFrames{{}, {}, 0, 0, 333333, {}};

class CCountedObject final : public CUnknownImpl<IUnknown> {
public:
    ULONG References() { return AddRef(), Release(); }
};

TEST(MediaType, IsCopiedWithItsFormatAndItsReference) {
    const auto spObject = MakeCounted<CCountedObject>();
    OwnedType src(MEDIASUBTYPE_YV12, thirtyFrames);
    src.pUnk = CComPtr<IUnknown>(spObject.Get()).Detach();
    OwnedType dst(MEDIASUBTYPE_YUY2, {});
    ASSERT_EQ(MT_Assign(dst, &src), S_OK);
    EXPECT_NE(dst.pbFormat, src.pbFormat);
    EXPECT_TRUE(MT_IsEqual(&dst, &src));
    ASSERT_EQ(MT_Assign(dst, &dst), S_OK);
    EXPECT_EQ(MT_AvgTimePerFrame(&dst), 333333);
    CMediaTypePtr(MT_Clone(&dst)).reset();
    EXPECT_EQ(spObject->References(), 3u);

    ASSERT_EQ(MT_Assign(dst, nullptr), S_OK);
    EXPECT_EQ(spObject->References(), 2u);
    EXPECT_FALSE(MT_IsSet(&dst));
    EXPECT_EQ(dst.bFixedSizeSamples, 1);
    EXPECT_EQ(dst.lSampleSize, 1u);

    ASSERT_EQ(MT_Set(src, src.majortype, src.subtype, FORMAT_VideoInfo2, src.cbFormat, src.pbFormat), S_OK);
    EXPECT_EQ(src.subtype, MEDIASUBTYPE_YV12);
    EXPECT_EQ(MT_AvgTimePerFrame(&src), 333333);
    EXPECT_EQ(spObject->References(), 1u);
}

TEST(MediaType, IsRefusedWhereItsFormatIsNotWhatItSays) {
    const testing_support::CPageBuffer pages(1);
    BYTE* const pLastBytes = pages.End() - sizeof(VIDEOINFOHEADER);
    const struct {
        BYTE* pb;
        ULONG cb;
        HRESULT hr;
    } cases[] = {
        {pLastBytes, 0, E_UNEXPECTED},
        {nullptr, 88, E_UNEXPECTED},
        {pLastBytes, 89, E_UNEXPECTED}, // behind it nothing can be read
        {pLastBytes, 0xFFFFFFFF, E_OUTOFMEMORY},
    };
    for (const auto& c : cases) {
        const AM_MEDIA_TYPE lie{MEDIATYPE_Video, MEDIASUBTYPE_YV12, 1, 0, 1, FORMAT_VideoInfo, nullptr, c.cb, c.pb};
        const AM_MEDIA_TYPE sameLie = lie;
        OwnedType dst(MEDIASUBTYPE_YUY2, thirtyFrames);
        EXPECT_EQ(MT_Assign(dst, &lie), c.hr) << c.cb;
        EXPECT_EQ(MT_AvgTimePerFrame(&dst), 333333);
        EXPECT_EQ(MT_Clone(&lie), nullptr);
        EXPECT_TRUE(MT_IsEqual(&lie, &lie));
        EXPECT_EQ(MT_IsEqual(&lie, &sameLie), c.cb == 0);
    }
}

TEST(MediaType, IsEqualByWhatDescribesTheStream) {
    const OwnedType a(MEDIASUBTYPE_YV12, thirtyFrames);
    const auto isEqualWith = [&a](auto change) {
        OwnedType b;
        EXPECT_EQ(MT_Assign(b, &a), S_OK);
        change(b);
        return MT_IsEqual(&a, &b);
    };
    EXPECT_TRUE(isEqualWith([](AM_MEDIA_TYPE& b) { b.lSampleSize = 5, b.bTemporalCompression = 1; }));
    EXPECT_TRUE(isEqualWith([](AM_MEDIA_TYPE& b) { b.subtype.Data1 |= 0x2020; })); // small letters
    EXPECT_FALSE(isEqualWith([](AM_MEDIA_TYPE& b) { b.cbFormat -= 1; }));
    EXPECT_FALSE(isEqualWith([](AM_MEDIA_TYPE& b) { b.pbFormat[87] ^= 1; }));
    EXPECT_FALSE(MT_IsEqual(nullptr, nullptr));
}

TEST(MediaType, ComparesSubtypesWithoutRegardToTheCaseOfAFourCC) {
    GUID noTail = MEDIASUBTYPE_YV12;
    GUID noTailSmall = SubtypeOfFourCC(0x32317679);
    noTail.Data2 = noTailSmall.Data2 = 1;
    const struct {
        GUID a, b;
        bool bEqual;
    } cases[] = {
        {MEDIASUBTYPE_YV12, SubtypeOfFourCC(0x32317679), true},
        {noTail, noTailSmall, false},
        {SubtypeOfFourCC(0x40414141), SubtypeOfFourCC(0x60414141), false}, // '@' and '`' are no letters
        {SubtypeOfFourCC(0x7F414141), SubtypeOfFourCC(0x7F414161), false},
        {SubtypeOfFourCC(0x1F414141), SubtypeOfFourCC(0x1F414161), false},
        {SubtypeOfFourCC(0x1F414141), SubtypeOfFourCC(0x1F414141), true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(MT_SubtypeEqual(c.a, c.b), c.bEqual) << std::hex << c.a.Data1 << ' ' << c.b.Data1;
        EXPECT_EQ(MT_SubtypeEqual(c.b, c.a), c.bEqual) << std::hex << c.b.Data1 << ' ' << c.a.Data1;
    }
}

TEST(MediaType, IsCompleteByTheNeedsOfItsMajorType) {
    const struct {
        GUID major;
        bool bBare, bSubtype, bFormat; ///< complete with nothing else, with a subtype, with a format as well
    } cases[] = {
        {GUID_NULL, false, false, false},
        {MEDIATYPE_Video, false, false, true},
        {MEDIATYPE_VBI, false, true, true},
        {MEDIATYPE_Text, true, false, false},
        {SubtypeOfFourCC(0x12345678), true, true, true},
    };
    for (const auto& c : cases) {
        AM_MEDIA_TYPE bare;
        MT_Init(bare, c.major, GUID_NULL);
        OwnedType mt(MEDIASUBTYPE_YV12, thirtyFrames);
        mt.majortype = c.major;
        EXPECT_EQ(MT_IsComplete(&bare), c.bBare) << c.major.Data1;
        EXPECT_EQ(MT_IsComplete(&mt), c.bFormat) << c.major.Data1;
        mt.formattype = FORMAT_None;
        EXPECT_EQ(MT_IsComplete(&mt), c.bSubtype) << c.major.Data1;
        EXPECT_EQ(MT_AvgTimePerFrame(&mt), 0);
    }
}

CMediaTypePtr FrameTimeType(int nTime) {
    return CMediaTypePtr(MT_Clone(
        &static_cast<const AM_MEDIA_TYPE&>(OwnedType(MEDIASUBTYPE_YV12, VIDEOINFOHEADER{{}, {}, 0, 0, nTime, {}}))));
}

TEST(MediaTypeList, GrowsByDoublingAndTakesWholeLists) {
    CMediaTypeList list;
    CMediaTypeList all;
    for (const std::size_t capacity : {1u, 2u, 4u, 4u, 8u}) {
        ASSERT_EQ(list.Add(FrameTimeType(1)), S_OK);
        EXPECT_EQ(list.Capacity(), capacity);
    }
    ASSERT_EQ(all.Append(list), S_OK);
    EXPECT_TRUE(list.Types().empty());
    EXPECT_EQ(all.Capacity(), 5u);
    ASSERT_EQ(list.Add(FrameTimeType(2)), S_OK);
    ASSERT_EQ(all.Append(list), S_OK);
    EXPECT_EQ(all.Capacity(), 12u);
    EXPECT_EQ(MT_AvgTimePerFrame(&all.Types()[5]), 2);
}

TEST(MediaTypeList, LoadsWhatAPinOffers) {
    constexpr HRESULT otherSuccess = 2;
    constexpr HRESULT outOfSync = VFW_E_ENUM_OUT_OF_SYNC;
    const struct {
        std::vector<HRESULT> ends; ///< of one walk after the other
        int nTypes;
        HRESULT hr;
    } cases[] = {
        {{S_FALSE}, 3, S_OK},
        {{S_FALSE}, 0, S_FALSE},
        {{E_ABORT}, 1, E_ABORT},
        {{otherSuccess}, 1, E_FAIL},
        {{S_OK}, 1, E_FAIL}, // with a null type
        {{outOfSync, outOfSync, S_FALSE}, 2, S_OK},
        {std::vector<HRESULT>(16, outOfSync), 2, outOfSync},
    };
    for (const auto& c : cases) {
        const auto spPeer = MakeCounted<CScriptedPeer>([] { return S_OK; });
        int nNext = 0;
        std::size_t nWalks = 0;
        spPeer->m_onNextType = [&](AM_MEDIA_TYPE** ppmt) {
            if (nNext == c.nTypes) return nNext = 0, c.ends.at(nWalks++);
            return *ppmt = FrameTimeType(++nNext).release(), S_OK;
        };
        CMediaTypeList list;
        EXPECT_EQ(list.LoadFromPin(spPeer.Get()), c.hr);
        EXPECT_EQ(nWalks, c.ends.size());
        EXPECT_EQ(list.Types().size(), c.hr == S_OK ? static_cast<std::size_t>(c.nTypes) : 0);
    }
}

TEST(MediaTypeList, GivesUpOnAPeerThatFaults) {
    const auto spBad = MakeCounted<CScriptedPeer>(testing_support::Fault);
    CMediaTypeList list;
    ASSERT_EQ(list.Add(FrameTimeType(1)), S_OK);
    EXPECT_EQ(list.LoadFromPin(spBad.Get()), E_UNEXPECTED);
    EXPECT_EQ(list.Types().size(), 1u);
    EXPECT_EQ(list.LoadFromEnum(spBad.Get()), E_UNEXPECTED);
    EXPECT_TRUE(list.Types().empty());
}

} // namespace
} // namespace vellumcaster
