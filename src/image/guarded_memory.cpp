#include "image/guarded_memory.h"

#include "platform/kernel/fault_guard.h"
#include "platform/kernel/trace.h"

#include <cstring>

namespace vellumcaster {

bool SEH_CopyMemory(void* pDst, const void* pSrc, std::size_t cb) {
    const FaultCode fault = CallGuarded([=] { std::memcpy(pDst, pSrc, cb); });
    if (fault == faultNone) return true;
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::CaughtFault,
                      "###Err### SEH_CopyMemory( pDst=0x%X, pSrc=0x%X, cb=0x%X ): Exception 0x%X\n", pDst, pSrc, cb,
                      fault);
    return false;
}

bool CopyRows(const RowPair& rows, std::ptrdiff_t nRows, std::size_t cbRow) {
    for (std::ptrdiff_t y = 0; y < nRows; ++y)
        if (!SEH_CopyMemory(rows.pDst + y * rows.dstPitch, rows.pSrc + y * rows.srcPitch, cbRow)) return false;
    return true;
}

} // namespace vellumcaster
