#pragma once

#include "image/picture_format.h"
#include "platform/media/media_type.h"

#include <vellumcaster/results.h>

namespace vellumcaster {

/// The geometry that a video type describes. Width is the target's where there is one, the stride always the buffer's.
/// \param pWidth, pHeight, pStride  pixels; each may be null. The height is negative for an RGB picture with rows from
///        the top down; of a YUV picture it is always positive.
/// \return the row of the format table; -1 for a type that cannot be used: null, another major type, no format block or
///         one that is too short, sides of 0, a target wider than the buffer, a subtype outside of the table, or sides
///         that do not suit its chroma. Nothing is then written.
int MT_GetGeometry(const AM_MEDIA_TYPE* pmt, LONG* pWidth, LONG* pHeight, LONG* pStride);

/// The same as a picture's descriptor.
/// \return the row of the format table; -1 with nothing written; E_POINTER for a null `pFormat`.
int MT_GetPictureFormat(const AM_MEDIA_TYPE* pmt, PictureFormat* pFormat);

} // namespace vellumcaster
