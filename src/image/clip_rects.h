#pragma once

#include "image/picture_format.h"

#include <vellumcaster/results.h>

namespace vellumcaster::CPictureFormats {

/// Brings a rectangle of picture `a` and a rectangle of picture `b` inside their pictures and keeps the two in
/// step: what one loses at an edge, the other loses too, scaled where scaling is allowed.
///
/// \param outA, outB  receive the rectangles; written also for S_FALSE.
/// \param inA, inB  null for the whole picture.
/// \return S_OK; S_FALSE when nothing is left to draw; E_INVALIDARG for a given rectangle without an inside;
///         E_NOTIMPL for rectangles of different size where scaling is not allowed.
[[nodiscard]] HRESULT ClipRects(const PictureFormat* a, const PictureFormat* b, RECT* outA, RECT* outB,
                                bool bAllowScale, const RECT* inA, const RECT* inB);

} // namespace vellumcaster::CPictureFormats
