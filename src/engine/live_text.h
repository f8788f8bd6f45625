#pragma once

#include "engine/overlay_item.h"

namespace vellumcaster {

/// What live texts need to know of the stream.
struct LiveStream {
    std::uint32_t dwInput = 0;          ///< format of the input pin's stream; 0 while it is not connected
    REFERENCE_TIME avgTimePerFrame = 0; ///< duration of a frame in units of 100 ns; 0: not known
};

/// Once a frame for each item. A frame number or a timecode shows its value and then counts, drawn or not; a date or a
/// time is brought up to date where it is drawn. A timecode whose rate is not known stays as it is.
/// \return S_OK, or what drawing answered.
[[nodiscard]] HRESULT UpdateLiveItem(OverlayItem& item, bool bDraw, const LiveStream& stream);

/// Brings the time that an item shows up to date, and draws it where it has changed. The clock runs from the item's
/// counter at the pace of real time; a counter of -1 is the machine's clock.
/// \param bForce  anchors the clock anew at the counter.
/// \return S_OK; for a format string that cannot be filled in the platform's error.
[[nodiscard]] HRESULT UpdateTime(OverlayItem& item, bool bForce, const LiveStream& stream);

/// The same for a date, which is drawn again whenever it was anchored.
/// \return also S_FALSE when nothing had to be drawn.
[[nodiscard]] HRESULT UpdateDate(OverlayItem& item, bool bForce, const LiveStream& stream);

} // namespace vellumcaster
