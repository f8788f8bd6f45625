#pragma once

#include <vellumcaster/types.h>

#include <cstddef>

namespace vellumcaster {

/// Lays `cb` overlay bytes over `cb` frame bytes, each by the weight at its own place:
///
///     dst = (dst * (255 - w) + src * w + 255) >> 8
///
/// so that a weight of 0 leaves the frame byte and 255 gives the overlay byte, exactly. The same kernel serves
/// every pixel format, because there is a weight for every byte. No alignment is asked for. The three blocks may
/// not overlap.
void MixMemory(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight, std::size_t cb);

/// `MixMemory` for one row of a block. It also has the caches fetch the start of the next row, which they cannot
/// foresee where rows do not follow each other without a gap.
/// \param framePitch, overlayPitch  bytes to the next row, in `pDst` and in the other two; 0 for the last row.
void MixRow(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight, std::size_t cb, std::ptrdiff_t framePitch,
            std::ptrdiff_t overlayPitch);

/// Scales `cb` weights by an alpha: dst = (src * alpha + half) >> shift, where half rounds. The last `cb` mod 8
/// bytes are not rounded: dst = (src * alpha) >> shift.
/// \param alpha  0 to 255.
/// \param shift  8, which divides by 256: alpha 255 takes a weight of 255 to 254.
void MixScaleWeights(const BYTE* pSrc, BYTE* pDst, std::uint32_t alpha, std::uint32_t shift, std::size_t cb);

} // namespace vellumcaster
