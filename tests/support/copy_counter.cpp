#include "support/copy_counter.h"

#include "image/guarded_memory.h"

#include <atomic>

namespace vellumcaster::testing_support {

namespace {

std::atomic<std::uint64_t> g_cbCopied = 0;

} // namespace

std::uint64_t CopiedBytes() { return g_cbCopied; }

// Under these names the linker knows what calls of the two are led to, and the two themselves: see `--wrap` of ld.
bool RealCopyMemory(void* pDst, const void* pSrc,
                    std::size_t cb) asm("__real__ZN12vellumcaster14SEH_CopyMemoryEPvPKvm");
bool CountedCopyMemory(void* pDst, const void* pSrc,
                       std::size_t cb) asm("__wrap__ZN12vellumcaster14SEH_CopyMemoryEPvPKvm");
bool RealCopyRows(const RowPair& rows, std::ptrdiff_t nRows,
                  std::size_t cbRow) asm("__real__ZN12vellumcaster8CopyRowsERKNS_7RowPairElm");
bool CountedCopyRows(const RowPair& rows, std::ptrdiff_t nRows,
                     std::size_t cbRow) asm("__wrap__ZN12vellumcaster8CopyRowsERKNS_7RowPairElm");

bool CountedCopyMemory(void* pDst, const void* pSrc, std::size_t cb) {
    g_cbCopied += cb;
    return RealCopyMemory(pDst, pSrc, cb);
}

bool CountedCopyRows(const RowPair& rows, std::ptrdiff_t nRows, std::size_t cbRow) {
    g_cbCopied += static_cast<std::uint64_t>(nRows) * cbRow;
    return RealCopyRows(rows, nRows, cbRow);
}

} // namespace vellumcaster::testing_support
