#pragma once

#include "platform/kernel/last_error.h"
#include "platform/kernel/system_time.h"

namespace vellumcaster {

/// The locale that the system is set to.
inline constexpr DWORD LOCALE_SYSTEM_DEFAULT = 0x0800;

/// A date by a picture: d and dd for the day, ddd and dddd for its name, short and whole; M and MM, MMM and MMMM the
/// same for the month; y and yy for the last two digits of the year, yyyy for all of them; g and gg, an era, for
/// nothing. Between single quotes everything stands as it is, and there two of them are one; so does whatever else
/// is no such letter. Names are those of the system's locale, in UTF-8.
///
/// \param locale  LOCALE_SYSTEM_DEFAULT. \param flags  0. \param pszFormat  UTF-8.
/// \param psz  room for `cch` bytes.
/// \return bytes written with the zero at the end; 0 with ERROR_INVALID_PARAMETER for a null argument or a date that is
///         not in the calendar, with ERROR_INSUFFICIENT_BUFFER where there is no room.
[[nodiscard]] int GetDateFormatA(DWORD locale, DWORD flags, const SYSTEMTIME* pDate, const char* pszFormat, char* psz,
                                 int cch);

/// A time of day by a picture: h and hh for the hour of 12, H and HH of 24, m and mm, s and ss, t and tt for one letter
/// or all of the word for the half of the day. The rest, arguments and results as `GetDateFormatA`.
[[nodiscard]] int GetTimeFormatA(DWORD locale, DWORD flags, const SYSTEMTIME* pTime, const char* pszFormat, char* psz,
                                 int cch);

} // namespace vellumcaster
