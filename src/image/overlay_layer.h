#pragma once

#include "image/blob_holder.h"

namespace vellumcaster {

/// One drawing layer of an item. All pictures in it have the item's size; the planes are in the stream's pixel
/// format, top-down, rows as `GetPlaneLayout` has them.
struct OverlayLayer {
    /// Coverage as a 32-bit grey picture; for an image the picture after its colour key was applied.
    CTaskBlob blobAlpha;
    /// The same coverage in the stream's format.
    CVirtualBlob planeAlpha;
    /// A flat fill in the layer's colour; for an image the picture.
    CVirtualBlob planeColor;
    /// One weight for every byte of `planeColor`, 0 (the frame stays) to 255 (the overlay's byte).
    CVirtualBlob planeWeight;

    /// A layer without colour or without weights costs nothing on a frame.
    [[nodiscard]] bool TakesPartInMixing() const { return !planeColor.IsEmpty() && !planeWeight.IsEmpty(); }
};

} // namespace vellumcaster
