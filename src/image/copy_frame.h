#pragma once

#include "image/picture_format.h"

#include <vellumcaster/results.h>

namespace vellumcaster {

/// Copies a frame between two buffers of one format that may differ in stride, size and row order. What is copied is the
/// smaller width by the smaller height, from the top left of the picture: row by row, but where both lie in memory alike
/// without gaps, as one block.
///
/// Rows of a picture of one plane are as long as their stride says, with no rounding.
/// \return S_OK; E_INVALIDARG for a null argument; E_FRAME_FORMATS_DIFFER; E_UNEXPECTED when a row could not be reached:
///         the rows before it are copied, those behind it may be.
HRESULT CopyFrame(const PictureFormat* pDescSrc, const PictureFormat* pDescDst, const BYTE* pSrc, BYTE* pDst);

} // namespace vellumcaster
