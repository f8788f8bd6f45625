#pragma once

#include "image/primitives/primitive_types.h"

#include <vellumcaster/results.h>

namespace vellumcaster {

/// How a block is scaled, the same for all planes of a picture.
struct ResizeMethod {
    double xFactor; ///< of both directions, above 0; 2 doubles the picture
    double yFactor;
    std::int32_t nMode;          ///< `nMode` of `Img_Resize`
    std::int32_t nSharpen;       ///< `nSharpen` of `Img_Resize`
    BYTE* pRows = nullptr;       ///< for rows between two passes: source pitch x target height x 2 bytes; may be
                                 ///< null for a mode that scales in one pass or takes such memory by itself
    BYTE* pUnfiltered = nullptr; ///< with sharpening: target pitch x target height bytes
};

/// One plane of a block in a source and a target; for pixels of several bytes all of the block.
struct PlanePair {
    std::int32_t nChannels; ///< bytes a pixel: 1, 3 or 4
    const BYTE* pSrc;       ///< first byte of the source's plane
    std::int32_t srcPitch;  ///< bytes
    PrimSize srcSize;       ///< of the source's plane
    PrimRect srcBlock;      ///< in it, rows from the start of the buffer
    BYTE* pDst;             ///< first byte of the target block
    std::int32_t dstPitch;  ///< bytes
    PrimSize dstSize;       ///< of the target block
};

/// Scales the plane that a picture's sharpness lies in: all of an RGB picture, luma of a YUV one.
/// \return S_OK; a failure as `Img_Resize` tells it.
[[nodiscard]] HRESULT ResizeMainPlane(const PlanePair& plane, const ResizeMethod& method);

/// Scales a plane of chroma, linear or nearest. \return as above.
[[nodiscard]] HRESULT ResizeChromaPlane(const PlanePair& plane, const ResizeMethod& method);

} // namespace vellumcaster
