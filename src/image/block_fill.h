#pragma once

#include "image/picture_format.h"

#include <vellumcaster/results.h>

namespace vellumcaster::CPictureFormats {

/// Fills a block of a picture with one solid colour. In every format the block is first drawn in to even
/// coordinates, then to the picture.
///
/// \param color  red in the low byte, then green, then blue.
/// \param prc  null for the whole picture.
/// \return S_OK; S_FALSE when nothing is left, with nothing written; E_INVALIDARG for a null argument, a refused
///         descriptor, or a rectangle whose edges are crossed; E_UNEXPECTED when the primitives are not ready.
HRESULT FillBlock(BYTE* pDst, const PictureFormat* pf, std::uint32_t color, const RECT* prc);

} // namespace vellumcaster::CPictureFormats
