#pragma once

#include "engine/overlay_item.h"

namespace vellumcaster {

/// Takes an item one frame further along its movement: the exact position advances by the deltas, an item that
/// has left the frame by more than its own size comes in at the opposite edge where it asks for that, and the
/// exact position is rounded into the set one, halves away from zero.
/// \param sizeFrame  of the stream's frame, both positive.
void MoveItem(OverlayItem& item, const SIZE& sizeFrame);

} // namespace vellumcaster
