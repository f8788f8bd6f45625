#pragma once

#include "image/mix_scene.h"

namespace vellumcaster::bench {

/// What no mixing can beat: reads the three streams and writes one of them back, without arithmetic, by the widest
/// loads that this build has.
void MoveRow(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight, std::size_t cb);

/// `MoveRow` over everything that the case mixes.
void MoveItems(const CMixScene& scene, BYTE* pFrame);

#if defined(VELLUM_BENCH_LIBYUV)
/// libyuv's blending over everything that the case mixes. Its rounding is the same as the kernel's.
void BlendItems(const CMixScene& scene, BYTE* pFrame);

void BlendRow(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight, std::size_t cb);
#endif

} // namespace vellumcaster::bench
