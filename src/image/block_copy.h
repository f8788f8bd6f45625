#pragma once

#include "image/picture_format.h"

#include <vellumcaster/results.h>

namespace vellumcaster::CPictureFormats {

/// Copies a block between two pictures of one format. Rows are copied in the order in which they lie in memory:
/// pictures of different row orders are not brought together.
///
/// \param inA, inB  the block in the source and in the destination; null for the whole picture.
/// \return S_OK; S_FALSE when nothing is left after clipping; E_NOTIMPL for different formats or sizes of the
///         block; E_INVALIDARG for a null argument, a refused descriptor, or a rectangle without an inside;
///         E_UNEXPECTED when the primitives are not ready.
HRESULT CopyBlock(const BYTE* pSrc, BYTE* pDst, const PictureFormat* a, const PictureFormat* b, const RECT* inA,
                  const RECT* inB);

} // namespace vellumcaster::CPictureFormats
