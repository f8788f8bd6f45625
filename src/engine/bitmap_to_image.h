#pragma once

#include "platform/text/text_canvas.h"

#include <vellumcaster/results.h>

namespace vellumcaster::CImageHelp {

/// Reads a canvas as a picture of 32-bit pixels, rows from the top down.
/// \param ppPixels  memory of `CoTaskMemAlloc`, then the caller's.
/// \param pInfo  null, or gets the picture's record, with a negative height.
/// \return S_OK; E_OUTOFMEMORY; what reading the canvas failed with.
[[nodiscard]] HRESULT Bitmap2Image(const CTextCanvas& canvas, BYTE** ppPixels, BITMAPINFOHEADER* pInfo);

} // namespace vellumcaster::CImageHelp
