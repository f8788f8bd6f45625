#include "support/this_build.h"

#if defined(VELLUM_BENCH_LIBYUV)
#include <libyuv.h>
#endif

namespace vellumcaster::bench {

#if defined(VELLUM_BENCH_LIBYUV)
void HoldLibyuvToThisBuild([[maybe_unused]] bool bFromSsse3) {
#if defined(__x86_64__) && !defined(__AVX2__)
    libyuv::MaskCpuFlags(libyuv::kCpuHasX86 | libyuv::kCpuHasSSE2 | (bFromSsse3 ? libyuv::kCpuHasSSSE3 : 0));
#elif defined(__x86_64__) && !defined(__AVX512F__)
    libyuv::MaskCpuFlags(libyuv::kCpuHasAVX512BW - 1);
#endif
}
#endif

} // namespace vellumcaster::bench
