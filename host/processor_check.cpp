// Compiled for any processor of the family, unlike everything else, and run before anything else is: a processor that
// cannot run the rest is told so in one sentence.

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include <unistd.h>

namespace {

/// Earlier than the constructors of any object of the program.
constexpr int firstOfAll = 101;

[[gnu::constructor(firstOfAll)]] void CheckProcessor() {
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2") &&
        __builtin_cpu_supports("fma"))
        return;
    dprintf(STDERR_FILENO, "%s: this build needs a processor of the class x86-64-v3 (AVX2)\n",
            program_invocation_short_name);
    _exit(EXIT_FAILURE);
}

} // namespace
