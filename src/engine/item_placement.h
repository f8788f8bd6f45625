#pragma once

#include <vellumcaster/item.h>

namespace vellumcaster {

/// The block of the frame that an item covers, with the position and the size brought down to what the format can
/// address: pairs of pixels in all but `RGB32` and `RGB24`, pairs of rows in `YV12` and `I420`. It may lie partly
/// or wholly outside of the frame. A position so far out that the block would end beyond 32 bits is brought back
/// to where it ends within them.
[[nodiscard]] RECT PlaceItem(std::uint32_t dwFormat, const SIZE& sizeItem, LONG nPosX, LONG nPosY);

} // namespace vellumcaster
