#include "image/primitives/resize_job.h"

#include <cstring>

namespace vellumcaster::scaling {

template <std::int32_t channels>
bool ScaleNearest(const Job& job) {
    CWorkArray<std::int64_t> starts; // of the pixel in its row
    if (!starts.Allocate(job.columns.output)) return false;
    const double columnStep = 1 / job.columns.factor;
    const double rowStep = 1 / job.rows.factor;
    ForEachPlace(job.columns, columnStep / 2, columnStep, [&](std::int32_t k, const Place& place) {
        starts[k] = (std::int64_t{job.columns.origin} + place.index) * channels;
    });
    ForEachPlace(job.rows, rowStep / 2, rowStep, [&](std::int32_t y, const Place& place) {
        const BYTE* pFrom = job.SourceRow(job.rows.origin + place.index);
        BYTE* pTo = job.OutputRow(y);
        for (std::int32_t k = 0; k < job.columns.output; ++k, pTo += channels)
            std::memcpy(pTo, pFrom + starts[k], channels);
    });
    return true;
}

template bool ScaleNearest<1>(const Job&);
template bool ScaleNearest<3>(const Job&);
template bool ScaleNearest<4>(const Job&);

} // namespace vellumcaster::scaling
