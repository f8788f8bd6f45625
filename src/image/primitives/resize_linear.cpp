#include "image/primitives/resize_job.h"

namespace vellumcaster::scaling {

namespace {

constexpr std::int16_t one = 16384; ///< a weight of 1

/// Two neighbours and their weights, which add up to one.
struct LinearTap {
    std::int32_t lower; ///< absolute; the other is the next
    std::int16_t lowerWeight;
    std::int16_t upperWeight;
};

LinearTap TapAt(const Axis& axis, const Place& place) {
    const std::int32_t absolute = axis.origin + place.index;
    if (place.index == axis.Last()) return {absolute - 1, 0, one};
    const auto upper = static_cast<std::int16_t>((place.position - place.index) * one + nearlyNothing);
    return {absolute, static_cast<std::int16_t>(one - upper), upper};
}

template <std::int32_t channels>
void MixColumns(const BYTE* pSrc, const LinearTap* pTaps, std::int16_t* pDst, std::int32_t count) {
    for (std::int32_t k = 0; k < count; ++k, pDst += channels) {
        const LinearTap tap = pTaps[k];
        const BYTE* pLower = pSrc + std::int64_t{tap.lower} * channels;
        for (std::int32_t c = 0; c < channels; ++c)
            pDst[c] = static_cast<std::int16_t>(
                (tap.upperWeight * pLower[c + channels] + tap.lowerWeight * pLower[c] + 128) >> 8);
    }
}

void MixRows(const std::int16_t* pLower, const std::int16_t* pUpper, LinearTap tap, BYTE* pDst, std::int64_t nSamples) {
    for (std::int64_t i = 0; i < nSamples; ++i)
        pDst[i] = static_cast<BYTE>((tap.upperWeight * pUpper[i] + tap.lowerWeight * pLower[i] + 0x80000) >> 20);
}

} // namespace

template <std::int32_t channels>
bool ScaleLinear(const Job& job) {
    const std::int64_t nSamples = std::int64_t{job.columns.output} * channels;
    CWorkArray<LinearTap> columns;
    CRowRing<std::int16_t, 2> ring;
    if (!columns.Allocate(job.columns.output) || !ring.Allocate(nSamples)) return false;
    ForEachPlace(job.columns, 0, job.columns.StepFromEndToEnd(),
                 [&](std::int32_t k, const Place& place) { columns[k] = TapAt(job.columns, place); });
    const auto mixedRow = [&](std::int32_t y) {
        return ring.Row(y, [&](std::int16_t* pRow) {
            MixColumns<channels>(job.SourceRow(y), columns.Data(), pRow, job.columns.output);
        });
    };
    ForEachPlace(job.rows, 0, job.rows.StepFromEndToEnd(), [&](std::int32_t y, const Place& place) {
        const LinearTap tap = TapAt(job.rows, place);
        MixRows(mixedRow(tap.lower), mixedRow(tap.lower + 1), tap, job.OutputRow(y), nSamples);
    });
    return true;
}

template bool ScaleLinear<1>(const Job&);
template bool ScaleLinear<3>(const Job&);
template bool ScaleLinear<4>(const Job&);

} // namespace vellumcaster::scaling
