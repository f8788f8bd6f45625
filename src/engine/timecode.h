#pragma once

#include <vellumcaster/types.h>

namespace vellumcaster {

/// Hours, minutes, seconds and frames of a SMPTE timecode (ST 12-1), or of a clock, whose frames are 0.
struct Timecode {
    LONG nHours = 0;
    LONG nMinutes = 0;
    LONG nSeconds = 0;
    LONG nFrames = 0;

    friend constexpr bool operator==(const Timecode&, const Timecode&) = default;
};

struct CalendarDate {
    LONG nYear = 0;
    LONG nMonth = 0;
    LONG nDay = 0;

    friend constexpr bool operator==(const CalendarDate&, const CalendarDate&) = default;
};

/// The word in which a counter holds a timecode: two decimal digits a field, from hours in the top byte down. The
/// first digit of a field runs up to 15, behind which it is 0 again.
[[nodiscard]] LONG PackTimecode(const Timecode& timecode);
/// The inverse; digits are taken as they are, so that one may be up to 15.
[[nodiscard]] Timecode UnpackTimecode(LONG packed);

/// The same for a date: four digits of the year, two of the month, two of the day.
[[nodiscard]] LONG PackDate(const CalendarDate& date);
[[nodiscard]] CalendarDate UnpackDate(LONG packed);

/// How frames are counted.
struct TimecodeRate {
    LONG nFramesPerSecond = 0;  ///< 1 to 100; 0: not known
    LONG nDroppedPerMinute = 0; ///< frame numbers left out at the start of each minute but the tenth
};

/// The count for a frame of this duration in units of 100 ns: the rates of film and of television by their names, else
/// the nearest whole number of frames. Not known for a duration that is not above 0 or a rate that is not 1 to 100.
[[nodiscard]] TimecodeRate RateOfDuration(REFERENCE_TIME avgTimePerFrame);

/// The timecode of the next frame. Hours go on above 23. \param rate  known.
[[nodiscard]] Timecode NextFrame(const Timecode& timecode, const TimecodeRate& rate);

} // namespace vellumcaster
