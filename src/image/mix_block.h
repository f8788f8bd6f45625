#pragma once

#include "image/picture_format.h"

#include <vellumcaster/results.h>

#include <cstddef>

namespace vellumcaster {

/// `MixMemory` inside a fault guard.
/// \return false when memory could not be reached; part of the row may have been mixed.
bool SEH_MixMemory(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight, std::size_t cb);

/// Mixes `size->cy` rows of `size->cx` pixels. A fault ends its row, and the next row is tried.
/// \param overlayPitch  bytes from row to row in both `pColor` and `pWeight`.
/// \param framePitch  bytes from row to row in the frame; negative runs upward.
void MixRows(const BYTE* pColor, const BYTE* pWeight, BYTE* pFrame, const SIZE* size, std::size_t bytesPerPixel,
             std::ptrdiff_t overlayPitch, std::ptrdiff_t framePitch);

namespace CPictureFormats {

/// Lays a prepared layer over a frame of the same format, in place and without scaling.
///
/// \param pColor, pWeight  the layer's planes, both as `pfOverlay` describes them.
/// \param pFrame  the frame, as `pfFrame` describes it; the row orders of the two may differ.
/// \param prcOverlay, prcFrame  the part of the overlay and its place on the frame, of the same size; null for the
///        whole. What lies outside of either picture is clipped. The caller aligns the place to the format's
///        chroma.
/// \return S_OK; S_FALSE when nothing is left after clipping; E_NOTIMPL for different formats or sizes;
///         E_INVALIDARG for a null argument, a refused descriptor or a rectangle without an inside; E_UNEXPECTED
///         when the primitives are not ready. Where it is not S_OK, nothing was written.
HRESULT MixBlockAlpha(const BYTE* pColor, const BYTE* pWeight, BYTE* pFrame, const PictureFormat* pfOverlay,
                      const PictureFormat* pfFrame, const RECT* prcOverlay, const RECT* prcFrame);

} // namespace CPictureFormats
} // namespace vellumcaster
