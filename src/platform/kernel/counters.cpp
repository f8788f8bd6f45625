#include "platform/kernel/counters.h"

#include <chrono>

namespace vellumcaster {

namespace {

// The monotonic clock of Linux counts from the start of the system.
using SystemUptime = std::chrono::steady_clock;

} // namespace

DWORD GetTickCount() {
    const auto uptime = SystemUptime::now().time_since_epoch();
    return static_cast<DWORD>(std::chrono::duration_cast<std::chrono::milliseconds>(uptime).count());
}

LONGLONG QueryPerformanceCounter() { return SystemUptime::now().time_since_epoch().count(); }

LONGLONG QueryPerformanceFrequency() {
    static_assert(SystemUptime::period::num == 1);
    return SystemUptime::period::den;
}

} // namespace vellumcaster
