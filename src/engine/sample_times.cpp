#include "engine/sample_times.h"

#include <vellumcaster/results.h>

#include <algorithm>

namespace vellumcaster {

FrameTimes ReadSampleTimes(IMediaSample& sample) {
    FrameTimes times;
    REFERENCE_TIME start = 0;
    REFERENCE_TIME stop = 0;
    const HRESULT hr = sample.GetTime(&start, &stop);
    if (hr == S_OK || hr == VFW_S_NO_STOP_TIME) times.start = start;
    if (hr == S_OK) times.stop = std::max(stop, start + 1);

    LONGLONG mediaStart = 0;
    LONGLONG mediaEnd = 0;
    if (sample.GetMediaTime(&mediaStart, &mediaEnd) == S_OK) {
        times.mediaStart = mediaStart;
        times.mediaEnd = mediaEnd;
    }
    return times;
}

} // namespace vellumcaster
