#include "engine/timecode.h"

#include <gtest/gtest.h>

namespace vellumcaster {
namespace {

TEST(Timecode, IsPackedInDecimalDigits) {
    EXPECT_EQ(PackTimecode({12, 34, 56, 7}), 0x12345607);
    EXPECT_EQ(UnpackTimecode(0x12345607), (Timecode{12, 34, 56, 7}));
    EXPECT_EQ(UnpackTimecode(-1), (Timecode{165, 165, 165, 165}));
    EXPECT_EQ(PackTimecode({159, 59, 59, 24}), static_cast<LONG>(0xF9595924));
    EXPECT_EQ(PackTimecode({160, 0, 0, 0}), 0);
}

TEST(Timecode, TakesItsRateFromTheDurationOfAFrame) {
    const struct {
        REFERENCE_TIME duration;
        LONG nFrames, nDropped;
    } cases[] = {{416666, 24, 0}, {416667, 24, 0}, {417083, 24, 0},  {400000, 25, 0},  {333333, 30, 0},
                 {333334, 30, 0}, {333666, 30, 2}, {333667, 30, 2},  {333665, 30, 0},  {333668, 30, 0},
                 {166833, 60, 4}, {166834, 60, 4}, {166667, 60, 0},  {200000, 50, 0},  {100000, 100, 0},
                 {99502, 0, 0},   {99503, 100, 0}, {10000000, 1, 0}, {20000000, 1, 0}, {20000001, 0, 0},
                 {0, 0, 0},       {-400000, 0, 0}, {1, 0, 0},        {INT64_MAX, 0, 0}};
    for (const auto& c : cases) {
        const TimecodeRate rate = RateOfDuration(c.duration);
        EXPECT_TRUE(rate.nFramesPerSecond == c.nFrames && rate.nDroppedPerMinute == c.nDropped) << c.duration;
    }
}

/// The timecode of a frame by the count of frames: what was dropped up to it is put back in.
Timecode ByNumber(LONG nFrame, const TimecodeRate& rate) {
    const LONG nMinute = 60 * rate.nFramesPerSecond - rate.nDroppedPerMinute;
    const LONG nTenMinutes = 10 * nMinute + rate.nDroppedPerMinute;
    const LONG rest = nFrame % nTenMinutes;
    LONG nNumber = nFrame + nFrame / nTenMinutes * 9 * rate.nDroppedPerMinute;
    if (rest >= nMinute + rate.nDroppedPerMinute)
        nNumber += rate.nDroppedPerMinute * ((rest - rate.nDroppedPerMinute) / nMinute);
    const LONG nSecond = nNumber / rate.nFramesPerSecond;
    return {nSecond / 3600, nSecond / 60 % 60, nSecond % 60, nNumber % rate.nFramesPerSecond};
}

TEST(Timecode, CountsADayAsItsFormulaDoes) {
    for (const REFERENCE_TIME duration : {416667, 400000, 333333, 333667, 200000, 166833}) {
        const TimecodeRate rate = RateOfDuration(duration);
        Timecode counted;
        for (LONG nFrame = 0; counted.nHours < 24; ++nFrame) {
            ASSERT_EQ(counted, ByNumber(nFrame, rate)) << "frame " << nFrame << " of " << duration;
            counted = UnpackTimecode(PackTimecode(NextFrame(counted, rate)));
        }
        EXPECT_EQ(counted, (Timecode{24, 0, 0, 0}));
    }
    EXPECT_EQ(NextFrame({255, 59, 59, 24}, RateOfDuration(400000)), (Timecode{0, 0, 0, 0}));
}

} // namespace
} // namespace vellumcaster
