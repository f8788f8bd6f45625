#pragma once

#include "image/blob_holder.h"

#include <vellumcaster/item.h>

namespace vellumcaster {

/// Brings a bitmap to the one form that overlays are made from: 32 bits a pixel, bytes B, G, R, A, top-down, even
/// sides, rows without a gap. A bitmap of 24 bits becomes opaque. An odd last column is left out; so is an odd row, the
/// last one, or where the picture is scaled the top one.
///
/// \param pInfo  the bitmap: 24 or 32 bits, not compressed, at least 2 x 2 pixels. Where the picture is scaled the
///        record then describes the scaled one.
/// \param pPixels  `biSizeImage` bytes, which have to hold every row that the record speaks of.
/// \param pSize  in: the size wanted in pixels, rounded down to even sides; a 0 in either asks for the bitmap's own.
///        Out: the size of the picture.
/// \param pOut  receives the picture; may hold one row more than `pSize->cy`.
/// \return S_OK; E_INVALIDARG for a null argument, another depth, compression, a side below 2 or beyond the size
///         limits, a top-down bitmap that is to be scaled, or fewer pixels than the record speaks of; E_OUTOFMEMORY;
///         what `Img_Resize` or `Img_Convert` answer.
[[nodiscard]] HRESULT NormalizeImage(ImageInfoTag* pInfo, const BYTE* pPixels, SIZE* pSize, CTaskBlob* pOut);

} // namespace vellumcaster
