#include "platform/kernel/date_format.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <clocale>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include <langinfo.h>

namespace vellumcaster {

namespace {

struct FreeLocale {
    void operator()(locale_t locale) const { freelocale(locale); }
};
using OwnedLocale = std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale>;

/// The locale whose names are used: the system's, or where that is not in UTF-8 the plain one.
locale_t SystemLocale() {
    static const OwnedLocale locale = [] {
        OwnedLocale system(newlocale(LC_CTYPE_MASK | LC_TIME_MASK, "", nullptr));
        const bool bUtf8 = system && std::strcmp(nl_langinfo_l(CODESET, system.get()), "UTF-8") == 0;
        return bUtf8 ? std::move(system) : OwnedLocale(newlocale(LC_ALL_MASK, "C", nullptr));
    }();
    return locale.get();
}

/// The `nth` name of a row that the C library keeps in order from `first` on.
std::string NameOf(nl_item first, unsigned nth) {
    const locale_t locale = SystemLocale();
    return locale ? nl_langinfo_l(first + static_cast<nl_item>(nth), locale) : "";
}

std::string Digits(unsigned value, std::size_t nLeast) {
    std::string digits = std::to_string(value);
    return digits.size() < nLeast ? std::string(nLeast - digits.size(), '0') + digits : digits;
}

/// The first character of a text in UTF-8.
std::string FirstCharacter(const std::string& text) {
    const auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    const auto end = text.empty() ? text.end() : std::find_if_not(text.begin() + 1, text.end(), isContinuation);
    return {text.begin(), end};
}

std::string DayText(const SYSTEMTIME& date, std::size_t nLetters) {
    if (nLetters <= 2) return Digits(date.wDay, nLetters);
    const std::chrono::sys_days day =
        std::chrono::year{date.wYear} / std::chrono::month{date.wMonth} / std::chrono::day{date.wDay};
    return NameOf(nLetters == 3 ? ABDAY_1 : DAY_1, std::chrono::weekday{day}.c_encoding());
}

std::string MonthText(const SYSTEMTIME& date, std::size_t nLetters) {
    if (nLetters <= 2) return Digits(date.wMonth, nLetters);
    return NameOf(nLetters == 3 ? ABMON_1 : MON_1, date.wMonth - 1u);
}

std::string YearText(const SYSTEMTIME& date, std::size_t nLetters) {
    return nLetters <= 2 ? Digits(date.wYear % 100u, nLetters) : Digits(date.wYear, 4);
}

std::string EraText(const SYSTEMTIME&, std::size_t) { return {}; }

std::string HourOf12Text(const SYSTEMTIME& time, std::size_t nLetters) {
    return Digits((time.wHour + 11u) % 12u + 1u, std::min<std::size_t>(nLetters, 2));
}

std::string HourText(const SYSTEMTIME& time, std::size_t nLetters) {
    return Digits(time.wHour, std::min<std::size_t>(nLetters, 2));
}

std::string MinuteText(const SYSTEMTIME& time, std::size_t nLetters) {
    return Digits(time.wMinute, std::min<std::size_t>(nLetters, 2));
}

std::string SecondText(const SYSTEMTIME& time, std::size_t nLetters) {
    return Digits(time.wSecond, std::min<std::size_t>(nLetters, 2));
}

std::string HalfOfDayText(const SYSTEMTIME& time, std::size_t nLetters) {
    const std::string word = NameOf(time.wHour < 12 ? AM_STR : PM_STR, 0);
    return nLetters == 1 ? FirstCharacter(word) : word;
}

/// What a run of one letter stands for.
struct PictureField {
    char letter;
    std::string (*pfnText)(const SYSTEMTIME& time, std::size_t nLetters);
};

constexpr std::array dateFields{PictureField{'d', DayText}, PictureField{'M', MonthText}, PictureField{'y', YearText},
                                PictureField{'g', EraText}};
constexpr std::array timeFields{PictureField{'h', HourOf12Text}, PictureField{'H', HourText},
                                PictureField{'m', MinuteText}, PictureField{'s', SecondText},
                                PictureField{'t', HalfOfDayText}};

/// Takes the text between quotes off the picture, whose first character is the opening one.
std::string TakeQuoted(std::string_view& picture) {
    std::string text;
    picture.remove_prefix(1);
    while (!picture.empty()) {
        const char c = picture.front();
        picture.remove_prefix(1);
        if (c == '\'') {
            if (picture.empty() || picture.front() != '\'') return text;
            picture.remove_prefix(1);
        }
        text += c;
    }
    return text;
}

std::string FillPicture(std::string_view picture, const SYSTEMTIME& time, std::span<const PictureField> fields) {
    std::string text;
    while (!picture.empty()) {
        const char c = picture.front();
        if (c == '\'') {
            text += TakeQuoted(picture);
            continue;
        }
        const auto field =
            std::find_if(fields.begin(), fields.end(), [c](const PictureField& f) { return f.letter == c; });
        const std::size_t nLetters = field == fields.end() ? 1 : std::min(picture.find_first_not_of(c), picture.size());
        text += field == fields.end() ? std::string(1, c) : field->pfnText(time, nLetters);
        picture.remove_prefix(nLetters);
    }
    return text;
}

int Fail(DWORD error) {
    SetLastError(error);
    return 0;
}

int Format(const SYSTEMTIME& time, const char* pszFormat, std::span<const PictureField> fields, char* psz, int cch) {
    const std::string text = FillPicture(pszFormat, time, fields);
    if (cch < 0 || text.size() >= static_cast<std::size_t>(cch)) return Fail(ERROR_INSUFFICIENT_BUFFER);
    std::memcpy(psz, text.c_str(), text.size() + 1);
    return static_cast<int>(text.size()) + 1;
}

} // namespace

int GetDateFormatA(DWORD locale, DWORD flags, const SYSTEMTIME* pDate, const char* pszFormat, char* psz, int cch) {
    if (locale != LOCALE_SYSTEM_DEFAULT || flags != 0 || !pDate || !pszFormat || !psz)
        return Fail(ERROR_INVALID_PARAMETER);
    FILETIME moment = 0;
    const SYSTEMTIME date{pDate->wYear, pDate->wMonth, 0, pDate->wDay, 0, 0, 0, 0};
    if (!SystemTimeToFileTime(&date, &moment)) return Fail(ERROR_INVALID_PARAMETER);
    return Format(date, pszFormat, dateFields, psz, cch);
}

int GetTimeFormatA(DWORD locale, DWORD flags, const SYSTEMTIME* pTime, const char* pszFormat, char* psz, int cch) {
    if (locale != LOCALE_SYSTEM_DEFAULT || flags != 0 || !pTime || !pszFormat || !psz)
        return Fail(ERROR_INVALID_PARAMETER);
    if (pTime->wHour > 23 || pTime->wMinute > 59 || pTime->wSecond > 59) return Fail(ERROR_INVALID_PARAMETER);
    return Format(*pTime, pszFormat, timeFields, psz, cch);
}

} // namespace vellumcaster
