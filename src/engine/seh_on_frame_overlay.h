#pragma once

#include "engine/frame_times.h"

#include <vellumcaster/callback.h>

namespace vellumcaster {

/// Calls an item's callback inside a fault guard. A time that the frame lacks is passed as null.
/// \param pCallback  not null.
/// \param times  of this call alone: the callback may write through the pointers that it is given.
/// \return what the callback answers; E_UNEXPECTED when it faulted or threw.
[[nodiscard]] HRESULT SEH_OnFrameOverlay(IVellumcasterCallback* pCallback, OVERLAY_PROPS* pProps, FrameTimes times);

} // namespace vellumcaster
