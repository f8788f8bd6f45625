#include "platform/kernel/virtual_memory.h"

#include <cstdlib>
#include <cstring>
#include <limits>

namespace vellumcaster {

void* VirtualAlloc(void* pAddress, std::size_t cb, DWORD flType, DWORD flProtect) {
    const bool bReadWrite = flProtect == PAGE_READWRITE || flProtect == PAGE_EXECUTE_READWRITE;
    const bool bFreshBlock = !pAddress && flType == MEM_COMMIT && bReadWrite;
    if (!bFreshBlock || cb == 0 || cb > std::numeric_limits<std::ptrdiff_t>::max()) return nullptr;

    const std::size_t cbWhole = RoundUpToPage(cb);
    // From the C heap and not from the kernel, so that the sanitizers see every byte beyond the block.
    void* p = std::aligned_alloc(cbPage, cbWhole);
    if (p) std::memset(p, 0, cbWhole);
    return p;
}

bool VirtualFree(void* pAddress, std::size_t cb, DWORD flType) {
    if (!pAddress || cb != 0 || flType != MEM_RELEASE) return false;
    std::free(pAddress);
    return true;
}

} // namespace vellumcaster
