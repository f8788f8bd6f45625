#include "graph/sample_properties.h"

#include <vellumcaster/results.h>

namespace vellumcaster {

namespace {

HRESULT CopyTimes(IMediaSample& dst, IMediaSample& src) {
    REFERENCE_TIME start = 0;
    REFERENCE_TIME stop = 0;
    const HRESULT hr = src.GetTime(&start, &stop);
    if (hr == S_OK) return dst.SetTime(&start, &stop);
    return hr == VFW_S_NO_STOP_TIME ? dst.SetTime(&start, nullptr) : S_OK;
}

HRESULT CopyMediaTimes(IMediaSample& dst, IMediaSample& src) {
    LONGLONG start = 0;
    LONGLONG end = 0;
    return src.GetMediaTime(&start, &end) == S_OK ? dst.SetMediaTime(&start, &end) : S_OK;
}

} // namespace

HRESULT CopySampleProperties(IMediaSample& dst, IMediaSample& src) {
    HRESULT hr = CopyTimes(dst, src);
    if (hr == S_OK) hr = CopyMediaTimes(dst, src);
    if (hr == S_OK) hr = dst.SetSyncPoint(src.IsSyncPoint() == S_OK);
    if (hr == S_OK) hr = dst.SetPreroll(src.IsPreroll() == S_OK);
    if (hr == S_OK) hr = dst.SetDiscontinuity(src.IsDiscontinuity() == S_OK);
    return hr;
}

} // namespace vellumcaster
