#pragma once

#include "image/plane_layout.h"
#include "image/primitives/primitive_types.h"
#include "image/resize_plane.h"

namespace vellumcaster {

/// One side of a scaling.
template <class Byte>
struct ResizeSide {
    Byte* pBuffer;
    PlaneLayout layout;       ///< packed YUV as if unpacked
    std::int32_t packedPitch; ///< bytes from row to row of packed YUV
    PrimSize size;            ///< of the picture
    PrimRect block;           ///< in it, rows from the start of the buffer
};

/// A block on its way from one picture into another of the same format.
struct ResizeCall {
    ResizeSide<const BYTE> source;
    ResizeSide<BYTE> target;
    ResizeMethod method;
};

/// Scales RGB. \return a failure as `Img_Resize` tells it; the same for the others.
[[nodiscard]] HRESULT ResizePixels(const ResizeCall& call, std::int32_t nChannels);

/// Scales planar 4:2:0.
[[nodiscard]] HRESULT ResizePlanar(const ResizeCall& call);

/// Scales packed 4:2:2.
/// \param pWork  `PackedWorkSize` bytes.
/// \param bChromaFirst  chroma is the first byte of a pixel.
[[nodiscard]] HRESULT ResizePacked(const ResizeCall& call, BYTE* pWork, bool bChromaFirst);

} // namespace vellumcaster
