#pragma once

#include "platform/text/kept_pictures.h"
#include "platform/text/shape_masks.h"

/// Pictures of shapes, kept for the next text in which they stand.
namespace vellumcaster::CShapeCache {

/// How wide a pen may be and how high an em square for pictures to be kept by bits.
inline constexpr LONG nWidestPen = 1024;
inline constexpr double nLargestEm = 4096;

/// The shape's smoothed fill. Called under the lock, as the others.
[[nodiscard]] std::shared_ptr<const ByteImage> Smooth(const PlacedShape& placed);

/// The shape's fill or stroke in one bit.
[[nodiscard]] std::shared_ptr<const BitMask> Bits(const PlacedShape& placed, LONG nPen);

/// `AverageBlocks` of its bits. \param x, y  place of the shape in its block, from 0.
[[nodiscard]] std::shared_ptr<const ByteImage> Blocks(const PlacedShape& placed, LONG nPen, LONG nBlock, LONG x,
                                                      LONG y);

} // namespace vellumcaster::CShapeCache
