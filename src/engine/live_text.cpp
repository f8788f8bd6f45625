#include "engine/live_text.h"

#include "engine/text_item.h"
#include "engine/timecode.h"
#include "graph/format_text.h"
#include "platform/com/utf8.h"
#include "platform/kernel/date_format.h"
#include "platform/kernel/trace.h"

#include <cstdio>

namespace vellumcaster {

namespace {

constexpr LONG nMachineClock = -1;

FILETIME Now() {
    SYSTEMTIME local;
    FILETIME now = 0;
    GetLocalTime(&local);
    static_cast<void>(SystemTimeToFileTime(&local, &now));
    return now;
}

/// What the item's clock shows at a moment of the local one; all zero before its calendar begins.
SYSTEMTIME ShownAt(const OverlayItem& item, FILETIME now) {
    SYSTEMTIME shown;
    const FILETIME moment = now + item.llClockOffset;
    static_cast<void>(FileTimeToSystemTime(&moment, &shown));
    return shown;
}

/// A time of day as a moment; only its distance from others counts.
FILETIME StartOfTime(LONG nCounter) {
    const Timecode start = UnpackTimecode(nCounter);
    return (start.nHours * 3600 + start.nMinutes * 60 + start.nSeconds) * llFileTimeSecond;
}

/// 0 for a date that is not in the calendar.
FILETIME StartOfDate(LONG nCounter) {
    const CalendarDate date = UnpackDate(nCounter);
    SYSTEMTIME start;
    start.wYear = static_cast<WORD>(date.nYear);
    start.wMonth = static_cast<WORD>(date.nMonth);
    start.wDay = static_cast<WORD>(date.nDay);
    FILETIME moment = 0;
    static_cast<void>(SystemTimeToFileTime(&start, &moment));
    return moment;
}

/// \return whether the clock was anchored.
bool AnchorWhereAsked(OverlayItem& item, bool bForce, FILETIME now, FILETIME (*pfnStart)(LONG nCounter)) {
    if (!bForce && item.llClockOffset != llAnchorClockAnew) return false;
    const LONG nCounter = item.props.nCounterCur;
    item.llClockOffset = nCounter == nMachineClock ? 0 : pfnStart(nCounter) - now;
    return true;
}

using FormatByPicture = int(DWORD, DWORD, const SYSTEMTIME*, const char*, char*, int);

/// Draws what the item's format string makes of a time, which the counter then holds.
HRESULT DrawClock(OverlayItem& item, const SYSTEMTIME& time, LONG packed, FormatByPicture& format,
                  const LiveStream& stream) {
    constexpr std::size_t cbLongerThanPicture = 16;
    const std::string picture = ToUtf8(item.bsName.View());
    std::string text(picture.size() + cbLongerThanPicture, '\0');
    if (format(LOCALE_SYSTEM_DEFAULT, 0, &time, picture.c_str(), text.data(), static_cast<int>(text.size())) == 0) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CCoVellumcaster::UpdateTime - GetDateFormat('%s') FAILED dwErr=%d\n", picture,
                          GetLastError());
        return LastErrorAsResult();
    }
    static_cast<void>(UpdateTextItem(item, text.c_str(), stream.dwInput));
    item.props.nCounterCur = packed;
    return S_OK;
}

HRESULT UpdateFrameNumber(OverlayItem& item, bool bDraw, const LiveStream& stream) {
    HRESULT hr = S_OK;
    if (bDraw) hr = UpdateTextItem(item, FormatGrouped(item.props.nCounterCur).c_str(), stream.dwInput);
    item.props.nCounterCur = static_cast<LONG>(static_cast<std::uint32_t>(item.props.nCounterCur) + 1);
    return hr;
}

HRESULT UpdateTimecode(OverlayItem& item, bool bDraw, const LiveStream& stream) {
    HRESULT hr = S_OK;
    const Timecode shown = UnpackTimecode(item.props.nCounterCur);
    if (bDraw) {
        char text[64];
        static_cast<void>(std::snprintf(text, sizeof text, "%02d:%02d:%02d:%02d", shown.nHours, shown.nMinutes,
                                        shown.nSeconds, shown.nFrames));
        hr = UpdateTextItem(item, text, stream.dwInput);
    }
    const TimecodeRate rate = RateOfDuration(stream.avgTimePerFrame);
    if (rate.nFramesPerSecond != 0) item.props.nCounterCur = PackTimecode(NextFrame(shown, rate));
    return hr;
}

} // namespace

HRESULT UpdateLiveItem(OverlayItem& item, bool bDraw, const LiveStream& stream) {
    switch (item.eType) {
    case eDate: return bDraw ? UpdateDate(item, false, stream) : S_OK;
    case eTime: return bDraw ? UpdateTime(item, false, stream) : S_OK;
    case eFrameNumber: return UpdateFrameNumber(item, bDraw, stream);
    case eSMPTETimeCode: return UpdateTimecode(item, bDraw, stream);
    default: return S_OK;
    }
}

HRESULT UpdateTime(OverlayItem& item, bool bForce, const LiveStream& stream) {
    const FILETIME now = Now();
    AnchorWhereAsked(item, bForce, now, StartOfTime);
    const SYSTEMTIME shown = ShownAt(item, now);
    const LONG packed = PackTimecode({shown.wHour, shown.wMinute, shown.wSecond, 0});
    if (packed == item.props.nCounterCur && !item.layerFore.planeColor.IsEmpty()) return S_OK;

    SYSTEMTIME time;
    time.wHour = shown.wHour;
    time.wMinute = shown.wMinute;
    time.wSecond = shown.wSecond;
    return DrawClock(item, time, packed, GetTimeFormatA, stream);
}

HRESULT UpdateDate(OverlayItem& item, bool bForce, const LiveStream& stream) {
    const FILETIME now = Now();
    const bool bAnchored = AnchorWhereAsked(item, bForce, now, StartOfDate);
    const SYSTEMTIME shown = ShownAt(item, now);
    const LONG packed = PackDate({shown.wYear, shown.wMonth, shown.wDay});
    if (!bAnchored && packed == item.props.nCounterCur && !item.layerFore.planeColor.IsEmpty()) return S_FALSE;

    SYSTEMTIME date;
    date.wYear = shown.wYear;
    date.wMonth = shown.wMonth;
    date.wDay = shown.wDay;
    return DrawClock(item, date, packed, GetDateFormatA, stream);
}

} // namespace vellumcaster
