#pragma once

#include "engine/frame_times.h"
#include "platform/media/media_sample.h"

namespace vellumcaster {

/// What a sample says of its times. A stop that does not lie behind its start is put one unit behind it.
[[nodiscard]] FrameTimes ReadSampleTimes(IMediaSample& sample);

} // namespace vellumcaster
