#pragma once

#include "platform/kernel/trace.h"

namespace vellumcaster {

/// Whether a register of the calling thread's x87 unit is in use, as it is where 64-bit vector code has not cleaned up
/// after itself. Never on other processors.
[[nodiscard]] bool IsX87InUse();

/// Looks at the x87 unit where a caller comes in and where it is left, and says so where it is in use.
class CX87Watch {
public:
    CX87Watch() { Look(); }
    CX87Watch(const CX87Watch&) = delete;
    CX87Watch& operator=(const CX87Watch&) = delete;
    ~CX87Watch() { Look(); }

private:
    static void Look() {
        if constexpr (bTracing) {
            if (IsX87InUse())
                VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error, "###Err### MMX state don't cleared !!!\n");
        }
    }
};

} // namespace vellumcaster
