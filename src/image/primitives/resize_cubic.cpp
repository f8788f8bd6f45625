#include "image/primitives/resize_job.h"
#include "image/primitives/resize_lanes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

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

/// Newton's coefficients, of one sample or of a vector of them.
template <class Value>
struct Differences {
    Value p0;
    Value d1;
    Value d2;
    Value d3;

    Differences(Value first, Value p1, Value p2, Value p3)
        : p0(first), d1(p1 - p0), d2(p2 - p1 - d1), d3(p1 - 2 * p2 + p3 - d2) {}

    template <class Factor>
    [[nodiscard]] Value At(Factor c1, Factor c2, Factor c3) const {
        return p0 + d1 * c1 + d2 * c2 + d3 * c3;
    }
    [[nodiscard]] Value At(const CubicTap& tap) const { return At(tap.c1, tap.c2, tap.c3); }
};

// ---- columns

/// Scales whole vectors of pixels of four samples. \return how many columns are done.
std::int32_t InterpolatePixels(const float* pSrc, const CubicTap* pTaps, float* pDst, std::int32_t count) {
    const auto pixelAt = [=](std::int32_t k) { return pSrc + std::int64_t{pTaps[k].first} * 4; };
    std::int32_t k = 0;
#if defined(__AVX2__)
    static_assert(sizeof(CubicTap) == 4 * sizeof(float));
    for (; k + 2 <= count; k += 2) {
        const float* pLeft = pixelAt(k);
        const float* pRight = pixelAt(k + 1);
        const Floats left01 = LoadFloats(pLeft), left23 = LoadFloats(pLeft + 8);
        const Floats right01 = LoadFloats(pRight), right23 = LoadFloats(pRight + 8);
        const Differences<Floats> differences(__builtin_shufflevector(left01, right01, 0, 1, 2, 3, 8, 9, 10, 11),
                                              __builtin_shufflevector(left01, right01, 4, 5, 6, 7, 12, 13, 14, 15),
                                              __builtin_shufflevector(left23, right23, 0, 1, 2, 3, 8, 9, 10, 11),
                                              __builtin_shufflevector(left23, right23, 4, 5, 6, 7, 12, 13, 14, 15));
        Floats taps;
        std::memcpy(&taps, pTaps + k, sizeof taps);
        const Floats value = differences.At(__builtin_shufflevector(taps, taps, 1, 1, 1, 1, 5, 5, 5, 5),
                                            __builtin_shufflevector(taps, taps, 2, 2, 2, 2, 6, 6, 6, 6),
                                            __builtin_shufflevector(taps, taps, 3, 3, 3, 3, 7, 7, 7, 7));
        std::memcpy(pDst + std::int64_t{k} * 4, &value, sizeof value);
    }
#else
    for (; k < count; ++k) {
        const float* p = pixelAt(k);
        const Differences<Floats> differences(LoadFloats(p), LoadFloats(p + 4), LoadFloats(p + 8), LoadFloats(p + 12));
        const Floats value = differences.At(pTaps[k]);
        std::memcpy(pDst + std::int64_t{k} * 4, &value, sizeof value);
    }
#endif
    return k;
}

template <std::int32_t channels>
void InterpolateColumns(const float* pSrc, const CubicTap* pTaps, float* pDst, std::int32_t count) {
    const std::int32_t done = channels == 4 ? InterpolatePixels(pSrc, pTaps, pDst, count) : 0;
    for (std::int32_t k = done; k < count; ++k) {
        const float* p = pSrc + std::int64_t{pTaps[k].first} * channels;
        for (std::int32_t c = 0; c < channels; ++c, ++p)
            pDst[std::int64_t{k} * channels + c] =
                Differences<float>(p[0], p[channels], p[2 * channels], p[3 * channels]).At(pTaps[k]);
    }
}

// ---- rows

struct FourRows {
    const float* p0;
    const float* p1;
    const float* p2;
    const float* p3;

    [[nodiscard]] Differences<float> SampleAt(std::int64_t i) const { return {p0[i], p1[i], p2[i], p3[i]}; }
    [[nodiscard]] Differences<Floats> VectorAt(std::int64_t i) const {
        return {LoadFloats(p0 + i), LoadFloats(p1 + i), LoadFloats(p2 + i), LoadFloats(p3 + i)};
    }
};

struct OutputRow {
    BYTE* pDst;
    CubicTap tap;
};

BYTE ToByte(float value) { return static_cast<BYTE>(Clamp255(static_cast<std::int32_t>(value + nearlyWhole))); }

/// Makes output rows that lie between the same four.
template <std::size_t nRows>
void InterpolateRows(const FourRows& rows, const std::array<OutputRow, nRows>& outputs, std::int64_t nSamples) {
    constexpr std::int64_t nBlock = 4 * laneCount;
    std::int64_t i = 0;
    for (; i + nBlock <= nSamples; i += nBlock) {
        Ints numbers[nRows][4];
        for (std::int64_t j = 0; j < 4; ++j) {
            const Differences<Floats> differences = rows.VectorAt(i + j * laneCount);
            for (std::size_t row = 0; row < nRows; ++row)
                numbers[row][j] = __builtin_convertvector(differences.At(outputs[row].tap) + nearlyWhole, Ints);
        }
        for (std::size_t row = 0; row < nRows; ++row)
            StoreBytes(numbers[row], outputs[row].pDst + i);
    }
    for (; i < nSamples; ++i)
        for (const OutputRow& output : outputs)
            output.pDst[i] = ToByte(rows.SampleAt(i).At(output.tap));
}

/// So many columns are scaled from the first row to the last before their neighbours are: what is at hand of them
/// then stays in the nearest cache.
constexpr std::int32_t nStripColumns = 384;

/// Some columns of the output, with what the source has for them.
template <std::int32_t channels>
class CCubicStrip {
public:
    CCubicStrip(const Job& job) : m_Job(job) {}

    [[nodiscard]] bool Allocate() {
        return m_Source.Allocate(std::int64_t{m_Job.columns.source} * channels) &&
               m_Ring.Allocate(std::int64_t{nStripColumns} * channels);
    }

    void Scale(const CubicTap* pTaps, std::int32_t first, std::int32_t count) {
        m_pTaps = pTaps;
        m_nCount = count;
        m_Ring.Clear();
        // Where rows grow, neighbours often lie between the same four; two at once share what those four cost.
        const bool bByTwo = m_Job.dstStep >= std::int64_t{m_Job.columns.output} * channels;
        std::optional<OutputRow> waiting;
        ForEachPlace(m_Job.rows, 0, m_Job.rows.StepFromEndToEnd(), [&](std::int32_t y, const Place& place) {
            const OutputRow output{m_Job.OutputRow(y) + std::int64_t{first} * channels, TapAt(m_Job.rows, place)};
            if (waiting && bByTwo && waiting->tap.first == output.tap.first) {
                MakeRows<2>({*waiting, output});
                waiting.reset();
                return;
            }
            if (waiting) MakeRows<1>({*waiting});
            waiting = output;
        });
        if (waiting) MakeRows<1>({*waiting});
    }

private:
    template <std::size_t nRows>
    void MakeRows(const std::array<OutputRow, nRows>& outputs) {
        const std::int32_t y = outputs[0].tap.first;
        InterpolateRows<nRows>({ScaledRow(y), ScaledRow(y + 1), ScaledRow(y + 2), ScaledRow(y + 3)}, outputs,
                               std::int64_t{m_nCount} * channels);
    }

    const float* ScaledRow(std::int32_t y) {
        return m_Ring.Row(y, [&](float* pRow) {
            const std::int64_t begin = std::int64_t{m_pTaps[0].first} * channels;
            const std::int64_t end = std::int64_t{m_pTaps[m_nCount - 1].first + 4} * channels;
            std::copy(m_Job.SourceRow(y) + begin, m_Job.SourceRow(y) + end, m_Source.Data() + begin);
            InterpolateColumns<channels>(m_Source.Data(), m_pTaps, pRow, m_nCount);
        });
    }

    const Job& m_Job;
    const CubicTap* m_pTaps = nullptr;
    std::int32_t m_nCount = 0;
    CWorkArray<float> m_Source; ///< the row at hand
    CRowRing<float, 4> m_Ring;
};

} // namespace

template <std::int32_t channels>
bool ScaleCubic(const Job& job) {
    CWorkArray<CubicTap> taps;
    CCubicStrip<channels> strip(job);
    if (!taps.Allocate(job.columns.output) || !strip.Allocate()) return false;
    ForEachPlace(job.columns, 0, job.columns.StepFromEndToEnd(),
                     [&](std::int32_t k, const Place& place) { taps[k] = TapAt(job.columns, place); });
    for (std::int64_t k = 0; k < job.columns.output; k += nStripColumns)
            strip.Scale(taps.Data() + k, static_cast<std::int32_t>(k), static_cast<std::int32_t>(std::min<std::int64_t>(nStripColumns, job.columns.output - k)));
    return true;
}

template bool ScaleCubic<1>(const Job&);
template bool ScaleCubic<3>(const Job&);
template bool ScaleCubic<4>(const Job&);

} // namespace vellumcaster::scaling
