#pragma once

#include <vellumcaster/types.h>

namespace vellumcaster {

/// A date and a time of day, as the local clock shows them.
struct SYSTEMTIME {
    WORD wYear = 0;
    WORD wMonth = 0;     ///< 1 to 12
    WORD wDayOfWeek = 0; ///< 0 is Sunday; looked at by nobody
    WORD wDay = 0;       ///< 1 to 31
    WORD wHour = 0;
    WORD wMinute = 0;
    WORD wSecond = 0;
    WORD wMilliseconds = 0;

    friend constexpr bool operator==(const SYSTEMTIME&, const SYSTEMTIME&) = default;
};

/// A moment in units of 100 ns from the start of the year 1601.
using FILETIME = LONGLONG;

inline constexpr LONGLONG llFileTimeSecond = 10'000'000;

/// What the local clock shows now.
void GetLocalTime(SYSTEMTIME* pTime);

/// Where the local clock's time comes from.
using LocalClock = SYSTEMTIME (*)();

/// Replaces the clock, null for the machine's. \return the earlier one, null for the machine's.
LocalClock SetLocalClock(LocalClock clock);

/// \return false for a date that is not in the calendar, a year outside of 1601 to 30827, or a time of day that no clock
///         shows; nothing is then written.
[[nodiscard]] bool SystemTimeToFileTime(const SYSTEMTIME* pTime, FILETIME* pFileTime);

/// \return false for a moment before the year 1601; nothing is then written.
[[nodiscard]] bool FileTimeToSystemTime(const FILETIME* pFileTime, SYSTEMTIME* pTime);

} // namespace vellumcaster
