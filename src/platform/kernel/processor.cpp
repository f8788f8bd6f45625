#include "platform/kernel/processor.h"

#if defined(__x86_64__)
#include <cpuid.h>
#endif

namespace vellumcaster {

CpuidSource ProcessorCpuid() {
#if defined(__x86_64__)
    return [](std::uint32_t leaf) {
        CpuidWords words;
        __cpuid(leaf, words.eax, words.ebx, words.ecx, words.edx);
        return words;
    };
#else
    return nullptr;
#endif
}

} // namespace vellumcaster
