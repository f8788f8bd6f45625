// Compiled for any processor of the family, unlike everything else: it has to run where the rest cannot.
#include "host/vellumcast.h"

#include <cstdio>

int main(int argc, char** argv) {
#ifdef VELLUM_BUILT_FOR_V3
    __builtin_cpu_init();
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("bmi2") || !__builtin_cpu_supports("fma")) {
        static_cast<void>(
            std::fputs("vellumcast: this build needs a processor of the class x86-64-v3 (AVX2)\n", stderr));
        return 1;
    }
#endif
    return vellumcaster::RunVellumcast(argc, argv);
}
