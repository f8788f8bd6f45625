#include "image/primitives/resize_job.h"

#include <algorithm>
#include <cstring>

namespace vellumcaster::scaling {

namespace {

/// What is added before a value is cut down to a byte: a value that misses a whole number by 1e-7 or less counts as
/// that number. In single precision this holds for nothing but the value right below 1, and of what can be added to
/// that end, only amounts between 2^-25 and 2^-24 leave all others alone.
constexpr float nearlyWhole = 0x1.8p-25F;

/// Four neighbours, and the factors of Newton's interpolation through them.
struct CubicTap {
    std::int32_t first; ///< absolute
    float c1;
    float c2;
    float c3;
};

/// The position is counted from the second of the four samples, and at the ends of the source, where the four would
/// not fit round it, lies between others of them.
CubicTap TapAt(const Axis& axis, const Place& place) {
    const std::int32_t last = axis.source - 1;
    std::int32_t second = axis.origin + place.index;
    float t = 2;
    if (second == last) {
        second -= 2;
    } else {
        if (second == 0)
            ++second;
        else if (second == last - 1)
            --second;
        t = static_cast<float>(place.position - (second - axis.origin));
    }
    const float c1 = 1 + t;
    const float c2 = t * c1 / 2;
    return {second - 1, c1, c2, (t - 1) * c2 / 3};
}

/// One sample, or a vector of samples that share their factors.
template <class Value>
Value Interpolate(Value p0, Value p1, Value p2, Value p3, const CubicTap& tap) {
    const Value d1 = p1 - p0;
    const Value d2 = p2 - p1 - d1;
    const Value d3 = p1 - 2 * p2 + p3 - d2;
    return p0 + d1 * tap.c1 + d2 * tap.c2 + d3 * tap.c3;
}

using Float4 [[gnu::vector_size(16)]] = float;

Float4 Load(const float* p) {
    Float4 value;
    std::memcpy(&value, p, sizeof value);
    return value;
}

template <std::int32_t channels>
void InterpolateColumns(const float* pSrc, const CubicTap* pTaps, float* pDst, std::int32_t count) {
    for (std::int32_t k = 0; k < count; ++k, pDst += channels) {
        const CubicTap& tap = pTaps[k];
        const float* p = pSrc + std::int64_t{tap.first} * channels;
        if constexpr (channels == 4) {
            const Float4 value = Interpolate(Load(p), Load(p + 4), Load(p + 8), Load(p + 12), tap);
            std::memcpy(pDst, &value, sizeof value);
        } else {
            for (std::int32_t c = 0; c < channels; ++c)
                pDst[c] = Interpolate(p[c], p[c + channels], p[c + 2 * channels], p[c + 3 * channels], tap);
        }
    }
}

BYTE ToByte(float value) {
    // Sixteen bits hold more than any four bytes can lead to, and twice as many of them fit a vector.
    const auto whole = static_cast<std::int16_t>(static_cast<std::int32_t>(value + nearlyWhole));
    return static_cast<BYTE>(whole < 0 ? 0 : whole > 255 ? 255 : whole);
}

void InterpolateRows(const float* p0, const float* p1, const float* p2, const float* p3, CubicTap tap,
                     BYTE* __restrict pDst, std::int64_t nSamples) {
    for (std::int64_t i = 0; i < nSamples; ++i)
        pDst[i] = ToByte(Interpolate(p0[i], p1[i], p2[i], p3[i], tap));
}

} // namespace

template <std::int32_t channels>
bool ScaleCubic(const Job& job) {
    const std::int64_t nSamples = std::int64_t{job.columns.output} * channels;
    CWorkArray<CubicTap> columns;
    CWorkArray<float> source;
    CRowRing<float, 4> ring;
    if (!columns.Allocate(job.columns.output) || !source.Allocate(std::int64_t{job.columns.source} * channels) ||
        !ring.Allocate(nSamples))
        return false;
    ForEachPlace(job.columns, 0, job.columns.StepFromEndToEnd(),
                 [&](std::int32_t k, const Place& place) { columns[k] = TapAt(job.columns, place); });
    const auto rowAt = [&](std::int32_t y) {
        return ring.Row(y, [&](float* pRow) {
            const BYTE* pBytes = job.SourceRow(y);
            std::copy_n(pBytes, std::int64_t{job.columns.source} * channels, source.Data());
            InterpolateColumns<channels>(source.Data(), columns.Data(), pRow, job.columns.output);
        });
    };
    ForEachPlace(job.rows, 0, job.rows.StepFromEndToEnd(), [&](std::int32_t y, const Place& place) {
        const CubicTap tap = TapAt(job.rows, place);
        InterpolateRows(rowAt(tap.first), rowAt(tap.first + 1), rowAt(tap.first + 2), rowAt(tap.first + 3), tap,
                        job.OutputRow(y), nSamples);
    });
    return true;
}

template bool ScaleCubic<1>(const Job&);
template bool ScaleCubic<3>(const Job&);
template bool ScaleCubic<4>(const Job&);

} // namespace vellumcaster::scaling
