#pragma once

#include "platform/media/media_sample.h"

namespace vellumcaster {

/// Carries over what a sample says of itself but its payload: times, media times and the three flags. What the
/// source lacks stays as it is in the destination.
/// \return S_OK, or the first refusal of the destination.
HRESULT CopySampleProperties(IMediaSample& dst, IMediaSample& src);

} // namespace vellumcaster
