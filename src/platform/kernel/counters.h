#pragma once

#include <vellumcaster/types.h>

namespace vellumcaster {

/// Milliseconds since the system started; goes round to 0 after 49.7 days.
[[nodiscard]] DWORD GetTickCount();

/// The fine counter, which never runs backwards.
[[nodiscard]] LONGLONG QueryPerformanceCounter();

/// Steps of the fine counter in a second.
[[nodiscard]] LONGLONG QueryPerformanceFrequency();

} // namespace vellumcaster
