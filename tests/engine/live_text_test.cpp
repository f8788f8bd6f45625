#include "engine/live_text.h"

#include "engine/timecode.h"
#include "image/picture_format.h"
#include "platform/kernel/system_time.h"
#include "support/flat_item.h"

#include <gtest/gtest.h>

#include <limits>

namespace vellumcaster {
namespace {

using testing_support::NamedItem;

/// A local clock that goes when a test says so.
class CSetClock {
public:
    explicit CSetClock(const SYSTEMTIME& now) : m_earlier(SetLocalClock([] { return s_now; })) { s_now = now; }
    ~CSetClock() { SetLocalClock(m_earlier); }
    CSetClock(const CSetClock&) = delete;
    CSetClock& operator=(const CSetClock&) = delete;

    void Advance(LONGLONG nSeconds) {
        FILETIME moment = 0;
        ASSERT_TRUE(SystemTimeToFileTime(&s_now, &moment));
        moment += nSeconds * llFileTimeSecond;
        ASSERT_TRUE(FileTimeToSystemTime(&moment, &s_now));
    }

private:
    static inline SYSTEMTIME s_now;
    LocalClock m_earlier;
};

constexpr LiveStream stream25{0, 400000};

OverlayItem MakeItem(ITEM_TYPE eType, LONG nCounter, std::u16string_view picture = u"HH:mm:ss") {
    OverlayItem item = NamedItem(eType, picture);
    item.props.nCounterStart = item.props.nCounterCur = nCounter;
    item.props.lForeColor = -1;
    item.llClockOffset = llAnchorClockAnew;
    return item;
}

/// Whether a text was drawn since the last question.
bool WasDrawn(OverlayItem& item) {
    const bool bDrawn = !item.layerFore.blobAlpha.IsEmpty();
    item.layerFore.blobAlpha.Clear();
    return bDrawn;
}

TEST(LiveText, CountsFramesDrawnOrNot) {
    OverlayItem number = MakeItem(eFrameNumber, 999);
    OverlayItem code = MakeItem(eSMPTETimeCode, 0x00595924);
    for (const bool bDraw : {true, false, true})
        for (OverlayItem* pItem : {&number, &code}) {
            EXPECT_EQ(UpdateLiveItem(*pItem, bDraw, stream25), S_OK);
            EXPECT_EQ(WasDrawn(*pItem), bDraw);
        }
    EXPECT_EQ(number.props.nCounterCur, 1002);
    EXPECT_EQ(code.props.nCounterCur, 0x01000002);
    EXPECT_EQ(UpdateLiveItem(code, false, {0, 0}), S_OK);
    EXPECT_EQ(code.props.nCounterCur, 0x01000002) << "without a rate it stays";
    number.props.nCounterCur = std::numeric_limits<LONG>::max();
    EXPECT_EQ(UpdateLiveItem(number, false, stream25), S_OK);
    EXPECT_EQ(number.props.nCounterCur, std::numeric_limits<LONG>::min());
}

TEST(LiveText, RunsAClockFromWhereItWasAnchored) {
    CSetClock clock({2024, 2, 0, 28, 17, 30, 5, 300});
    OverlayItem machine = MakeItem(eTime, -1);
    OverlayItem set = MakeItem(eTime, 0x12000000);
    const auto update = [](OverlayItem& item) { EXPECT_EQ(UpdateLiveItem(item, true, stream25), S_OK); };
    update(machine);
    update(set);
    EXPECT_EQ(machine.props.nCounterCur, 0x17300500);
    EXPECT_EQ(set.props.nCounterCur, 0x12000000);
    clock.Advance(12 * 3600); // over midnight, and as long as a pause
    update(machine);
    update(set);
    EXPECT_EQ(machine.props.nCounterCur, 0x05300500);
    EXPECT_EQ(set.props.nCounterCur, 0x00000000);
    set.props.nCounterCur = 0x08000000;
    EXPECT_EQ(UpdateTime(set, true, stream25), S_OK);
    clock.Advance(61);
    EXPECT_EQ(UpdateLiveItem(set, false, stream25), S_OK);
    EXPECT_EQ(set.props.nCounterCur, 0x08000000) << "hidden, it does nothing";
    update(set);
    EXPECT_EQ(set.props.nCounterCur, 0x08010100);
}

TEST(LiveText, RunsADateOverTheEndsOfMonths) {
    const struct {
        SYSTEMTIME now;
        LONG nStart;
        LONG nFirst, nNext;
    } cases[] = {{{2023, 12, 0, 31, 23, 59, 59}, -1, 0x20231231, 0x20240101},
                 {{2024, 1, 0, 1, 12, 0, 0}, 0x20060706, 0x20060706, 0x20060706},
                 {{2024, 1, 0, 1, 12, 0, 0}, 0x20060231, 0x16010101, 0x16010101}};
    for (const auto& c : cases) {
        CSetClock clock(c.now);
        OverlayItem item = MakeItem(eDate, c.nStart, u"yyyy/MM/dd");
        EXPECT_EQ(UpdateLiveItem(item, true, stream25), S_OK);
        EXPECT_EQ(item.props.nCounterCur, c.nFirst);
        clock.Advance(1);
        static_cast<void>(UpdateLiveItem(item, true, stream25));
        EXPECT_EQ(item.props.nCounterCur, c.nNext);
    }
}

TEST(LiveText, DrawsAClockOnlyWhenItShowsSomethingElse) {
    CSetClock clock({2024, 5, 0, 5, 10, 0, 0});
    const LiveStream stream{format_code::I420, 400000};
    OverlayItem time = MakeItem(eTime, -1);
    OverlayItem date = MakeItem(eDate, -1, u"d.M.");
    EXPECT_EQ(UpdateTime(time, false, stream), S_OK);
    EXPECT_EQ(UpdateDate(date, false, stream), S_OK);
    EXPECT_TRUE(WasDrawn(time) && WasDrawn(date));
    EXPECT_EQ(UpdateTime(time, false, stream), S_OK);
    EXPECT_EQ(UpdateTime(time, true, stream), S_OK);
    EXPECT_EQ(UpdateDate(date, false, stream), S_FALSE);
    EXPECT_FALSE(WasDrawn(time) || WasDrawn(date));
    EXPECT_EQ(UpdateDate(date, true, stream), S_OK);
    EXPECT_TRUE(WasDrawn(date));
    clock.Advance(24 * 3600 + 1);
    EXPECT_EQ(UpdateTime(time, false, stream), S_OK);
    EXPECT_EQ(UpdateDate(date, false, stream), S_OK);
    EXPECT_TRUE(WasDrawn(time) && WasDrawn(date));
}

TEST(LiveText, KeepsItsTextWhereThePictureHasNoRoom) {
    CSetClock clock({2024, 9, 0, 4, 10, 0, 0});
    OverlayItem item = MakeItem(eDate, -1, u"ddddMMMMddddMMMMdddd");
    EXPECT_EQ(UpdateDate(item, false, stream25), static_cast<HRESULT>(0x8007007A));
    EXPECT_EQ(item.props.nCounterCur, -1);
    EXPECT_FALSE(WasDrawn(item));
}

} // namespace
} // namespace vellumcaster
