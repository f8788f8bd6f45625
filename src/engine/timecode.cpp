#include "engine/timecode.h"

#include <algorithm>
#include <array>

namespace vellumcaster {

namespace {

/// `nDigits` decimal digits of a number in nibbles, the last in the lowest. What is above the first digit goes into its
/// nibble, as far as there is room.
std::uint32_t ToDigits(LONG value, int nDigits) {
    std::uint32_t digits = 0;
    for (int i = 0; i < nDigits; ++i, value /= 10) {
        const LONG digit = i + 1 < nDigits ? value % 10 : value;
        digits |= (static_cast<std::uint32_t>(digit) & 15) << (4 * i);
    }
    return digits;
}

LONG FromDigits(std::uint32_t digits, int nDigits) {
    LONG value = 0;
    for (int i = nDigits; i-- > 0;)
        value = value * 10 + static_cast<LONG>(digits >> (4 * i) & 15);
    return value;
}

struct NamedRate {
    REFERENCE_TIME avgTimePerFrame;
    TimecodeRate rate;
};

/// Durations that do not come out whole are rounded up by some and down by others.
constexpr std::array<NamedRate, 9> namedRates{{
    {416666, {24, 0}},
    {416667, {24, 0}},
    {400000, {25, 0}},
    {333333, {30, 0}},
    {333334, {30, 0}},
    {333666, {30, 2}}, // 29.97
    {333667, {30, 2}},
    {166833, {60, 4}}, // 59.94
    {166834, {60, 4}},
}};

} // namespace

LONG PackTimecode(const Timecode& t) {
    return static_cast<LONG>(ToDigits(t.nHours, 2) << 24 | ToDigits(t.nMinutes, 2) << 16 |
                             ToDigits(t.nSeconds, 2) << 8 | ToDigits(t.nFrames, 2));
}

Timecode UnpackTimecode(LONG packed) {
    const auto digits = static_cast<std::uint32_t>(packed);
    return {FromDigits(digits >> 24, 2), FromDigits(digits >> 16, 2), FromDigits(digits >> 8, 2),
            FromDigits(digits, 2)};
}

LONG PackDate(const CalendarDate& date) {
    return static_cast<LONG>(ToDigits(date.nYear, 4) << 16 | ToDigits(date.nMonth, 2) << 8 | ToDigits(date.nDay, 2));
}

CalendarDate UnpackDate(LONG packed) {
    const auto digits = static_cast<std::uint32_t>(packed);
    return {FromDigits(digits >> 16, 4), FromDigits(digits >> 8, 2), FromDigits(digits, 2)};
}

TimecodeRate RateOfDuration(REFERENCE_TIME avgTimePerFrame) {
    constexpr REFERENCE_TIME second = 10'000'000;
    constexpr REFERENCE_TIME mostFrames = 100;
    const auto named = std::find_if(namedRates.begin(), namedRates.end(),
                                    [=](const NamedRate& entry) { return entry.avgTimePerFrame == avgTimePerFrame; });
    if (named != namedRates.end()) return named->rate;
    if (avgTimePerFrame <= 0 || avgTimePerFrame > 2 * second) return {};
    const REFERENCE_TIME nFrames = (second + avgTimePerFrame / 2) / avgTimePerFrame;
    return nFrames >= 1 && nFrames <= mostFrames ? TimecodeRate{static_cast<LONG>(nFrames), 0} : TimecodeRate{};
}

Timecode NextFrame(const Timecode& timecode, const TimecodeRate& rate) {
    Timecode next = timecode;
    next.nFrames += 1;
    next.nSeconds += next.nFrames / rate.nFramesPerSecond;
    next.nFrames %= rate.nFramesPerSecond;
    next.nMinutes += next.nSeconds / 60;
    next.nSeconds %= 60;
    next.nHours = (next.nHours + next.nMinutes / 60) & 0xFF;
    next.nMinutes %= 60;
    if (next.nFrames == 0 && next.nSeconds == 0 && next.nMinutes % 10 != 0) next.nFrames = rate.nDroppedPerMinute;
    return next;
}

} // namespace vellumcaster
