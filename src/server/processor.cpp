#include "server/processor.h"

#include <cstdio>

namespace vellumcaster {

#ifdef VELLUM_NEEDS_V3

namespace {

bool AskProcessor() {
    __builtin_cpu_init();
    const bool bSuffices = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
                           __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("fma");
    if (!bSuffices)
        static_cast<void>(
            std::fputs("libvellumcaster: this build needs a processor of the class x86-64-v3 (AVX2)\n", stderr));
    return bSuffices;
}

} // namespace

bool ProcessorSuffices() {
    static const bool bSuffices = AskProcessor();
    return bSuffices;
}

#else

bool ProcessorSuffices() { return true; }

#endif

} // namespace vellumcaster
