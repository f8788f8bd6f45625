#pragma once

namespace vellumcaster::bench {

/// Whether everything here is compiled for AVX2.
#if defined(__AVX2__)
inline constexpr bool bWideBuild = true;
#else
inline constexpr bool bWideBuild = false;
#endif

#if defined(VELLUM_BENCH_LIBYUV)
/// Holds libyuv to the instructions that this build is compiled for. \param bFromSsse3  also where those end at SSE2:
/// some of its functions know none below SSSE3.
void HoldLibyuvToThisBuild(bool bFromSsse3);
#endif

} // namespace vellumcaster::bench
