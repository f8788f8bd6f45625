#pragma once

#include "image/resample_kernel.h"

namespace vellumcaster {

/// Scales one plane of bytes, first in height, then in width. Widths are in bytes: a picture of several bytes a pixel
/// passes through with equal widths only.
///
/// \param srcWidth, srcHeight, dstWidth, dstHeight  from 1; a 0 takes the value of the other side.
/// \param srcPitch, dstPitch  bytes from row to row; a pitch below the width counts as the width.
/// \param pWork  `srcPitch` x `dstHeight` x 2 bytes of the caller's, used where both sizes change; null: taken for the
///        length of the call.
/// The buffers do not overlap. Keeps no state: calls on different buffers may run at once.
/// \return S_OK; E_POINTER for a null argument; E_INVALIDARG for a size below 1 or an unknown kernel; E_OUTOFMEMORY;
///         E_FAIL for a height that shrinks so far that a row's weights vanish; E_UNEXPECTED when nothing had to be
///         scaled and the rows could not be copied.
[[nodiscard]] HRESULT ResamplePlane(const BYTE* pSrc, BYTE* pDst, std::int32_t srcWidth, std::int32_t srcHeight,
                                    std::int32_t dstWidth, std::int32_t dstHeight, std::int32_t srcPitch,
                                    std::int32_t dstPitch, const ResampleParams* pParams, BYTE* pWork);

} // namespace vellumcaster
