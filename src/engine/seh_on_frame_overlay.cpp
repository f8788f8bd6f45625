#include "engine/seh_on_frame_overlay.h"

#include "platform/kernel/fault_guard.h"
#include "platform/kernel/trace.h"

#include <vellumcaster/results.h>

namespace vellumcaster {

namespace {

LONGLONG* PointerOrNull(std::optional<LONGLONG>& time) { return time ? &*time : nullptr; }

} // namespace

HRESULT SEH_OnFrameOverlay(IVellumcasterCallback* pCallback, OVERLAY_PROPS* pProps, FrameTimes times) {
    volatile HRESULT hr = S_OK;
    const FaultCode fault = CallGuarded([&] {
        hr = pCallback->OnFrameOverlay(pProps, PointerOrNull(times.mediaStart), PointerOrNull(times.mediaEnd),
                                       PointerOrNull(times.start), PointerOrNull(times.stop));
    });
    if (fault == faultNone) return hr;
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::CaughtFault,
                      "###Err### SEH_OnFrameOverlay( %08X ): Exception 0x%X\n", pCallback, fault);
    return E_UNEXPECTED;
}

} // namespace vellumcaster
