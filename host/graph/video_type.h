#pragma once

#include "graph/media_type.h"
#include "image/picture_format.h"

namespace vellumcaster {

/// Describes a stream of video as a media type under `FORMAT_VideoInfo`.
/// \param avgTimePerFrame  units of 100 ns; 0: not known.
/// \return E_INVALIDARG for a format that frames cannot have; E_OUTOFMEMORY.
[[nodiscard]] HRESULT MakeVideoType(const PictureFormat& pf, REFERENCE_TIME avgTimePerFrame, AM_MEDIA_TYPE& mt);

} // namespace vellumcaster
