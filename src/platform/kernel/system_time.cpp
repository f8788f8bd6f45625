#include "platform/kernel/system_time.h"

#include <atomic>
#include <chrono>
#include <ctime>

namespace vellumcaster {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days epoch = std::chrono::year{1601} / 1 / 1;
constexpr int nFirstYear = 1601;
constexpr int nLastYear = 30827;
constexpr LONGLONG llMillisecond = llFileTimeSecond / 1000;
constexpr LONGLONG llDay = 86400 * llFileTimeSecond;

SYSTEMTIME MachineClock() {
    timespec now{};
    static_cast<void>(clock_gettime(CLOCK_REALTIME, &now));
    tm local{};
    localtime_r(&now.tv_sec, &local);
    constexpr int firstYearOfTm = 1900;
    constexpr int lastSecond = 59; // a leap second repeats the one before
    const auto word = [](long value) { return static_cast<WORD>(value); };
    return {word(local.tm_year + firstYearOfTm),
            word(local.tm_mon + 1),
            word(local.tm_wday),
            word(local.tm_mday),
            word(local.tm_hour),
            word(local.tm_min),
            word(local.tm_sec < lastSecond ? local.tm_sec : lastSecond),
            word(now.tv_nsec / 1'000'000)};
}

std::atomic<LocalClock> g_clock = nullptr;

/// The years of std::chrono end at 32767, behind those that are taken here.
year_month_day DateOf(const SYSTEMTIME& time) {
    return std::chrono::year{time.wYear} / std::chrono::month{time.wMonth} / std::chrono::day{time.wDay};
}

} // namespace

void GetLocalTime(SYSTEMTIME* pTime) {
    const LocalClock clock = g_clock;
    *pTime = clock ? clock() : MachineClock();
}

LocalClock SetLocalClock(LocalClock clock) { return g_clock.exchange(clock); }

bool SystemTimeToFileTime(const SYSTEMTIME* pTime, FILETIME* pFileTime) {
    const SYSTEMTIME& time = *pTime;
    if (time.wYear < nFirstYear || time.wYear > nLastYear || !DateOf(time).ok()) return false;
    if (time.wHour > 23 || time.wMinute > 59 || time.wSecond > 59 || time.wMilliseconds > 999) return false;
    const LONGLONG nDays = (sys_days(DateOf(time)) - epoch).count();
    const LONGLONG nSeconds = (time.wHour * 60 + time.wMinute) * 60 + time.wSecond;
    *pFileTime = nDays * llDay + nSeconds * llFileTimeSecond + time.wMilliseconds * llMillisecond;
    return true;
}

bool FileTimeToSystemTime(const FILETIME* pFileTime, SYSTEMTIME* pTime) {
    if (*pFileTime < 0) return false;
    const auto nDays = static_cast<int>(*pFileTime / llDay);
    const sys_days day = epoch + std::chrono::days{nDays};
    const year_month_day date = day;
    const LONGLONG rest = *pFileTime % llDay;
    const auto part = [rest](LONGLONG unit, LONGLONG count) { return static_cast<WORD>(rest / unit % count); };
    if (static_cast<int>(date.year()) > nLastYear) return false;
    pTime->wYear = static_cast<WORD>(static_cast<int>(date.year()));
    pTime->wMonth = static_cast<WORD>(static_cast<unsigned>(date.month()));
    pTime->wDayOfWeek = static_cast<WORD>(std::chrono::weekday{day}.c_encoding());
    pTime->wDay = static_cast<WORD>(static_cast<unsigned>(date.day()));
    pTime->wHour = part(3600 * llFileTimeSecond, 24);
    pTime->wMinute = part(60 * llFileTimeSecond, 60);
    pTime->wSecond = part(llFileTimeSecond, 60);
    pTime->wMilliseconds = part(llMillisecond, 1000);
    return true;
}

} // namespace vellumcaster
