#include "platform/kernel/virtual_memory.h"

#include <cstdlib>
#include <cstring>
#include <limits>

#include <sys/mman.h>

namespace vellumcaster {

namespace {

constexpr std::size_t cbHugePage = std::size_t{1} << 21;

} // namespace

void* VirtualAlloc(void* pAddress, std::size_t cb, DWORD flType, DWORD flProtect) {
    const bool bReadWrite = flProtect == PAGE_READWRITE || flProtect == PAGE_EXECUTE_READWRITE;
    const bool bFreshBlock = !pAddress && flType == MEM_COMMIT && bReadWrite;
    if (!bFreshBlock || cb == 0 || cb > std::numeric_limits<std::ptrdiff_t>::max()) return nullptr;

    const std::size_t cbWhole = RoundUpToPage(cb);
    // From the C heap and not from the kernel, so that the sanitizers see every byte beyond the block.
    void* p = nullptr;
    if (posix_memalign(&p, cbWhole < cbHugePage ? cbPage : cbHugePage, cbWhole) != 0) return nullptr;
    // A frame in small pages is more than the processor has translations for; that it stays so is no failure.
    if (cbWhole >= cbHugePage) static_cast<void>(madvise(p, cbWhole, MADV_HUGEPAGE));
    std::memset(p, 0, cbWhole);
    return p;
}

bool VirtualFree(void* pAddress, std::size_t cb, DWORD flType) {
    if (!pAddress || cb != 0 || flType != MEM_RELEASE) return false;
    std::free(pAddress);
    return true;
}

} // namespace vellumcaster
