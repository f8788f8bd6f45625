#include "image/primitives/resize_job.h"
#include "image/primitives/resize_lanes.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <optional>

namespace vellumcaster::scaling {

namespace {

/// What is added before a value is cut down to a byte: a value that misses a whole number by 1e-7 or less counts as
/// that number. In single precision this holds for nothing but the value right below 1, and of what can be added to
/// that end, only amounts between 2^-25 and 2^-24 leave all others alone.
constexpr float nearlyWhole = 0x1.8p-25F;

/// Four neighbours, and the factors of Newton's interpolation through them.
struct CubicTap {
    std::int32_t first; ///< absolute; once there are rows at hand, in samples of those
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
        : p0(first), d1(p1 - p0), d2(p2 - p1 - d1), d3(MinusTwice(p1, p2) + p3 - d2) {}

    template <class Factor>
    [[nodiscard]] Value At(Factor c1, Factor c2, Factor c3) const {
        return p0 + d1 * c1 + d2 * c2 + d3 * c3;
    }
    [[nodiscard]] Value At(const CubicTap& tap) const { return At(tap.c1, tap.c2, tap.c3); }
};

// ---- columns

/// Two neighbouring source rows, and what becomes of them. Side by side they cost one look at the taps.
struct RowPair {
    const float* pSrc[2];
    float* pDst[2];
};

#if defined(__AVX2__)

/// Two columns of pixels of four samples at a time. \return how many columns are done.
std::int32_t InterpolatePixels(const RowPair& rows, const CubicTap* pTaps, std::int32_t count) {
    static_assert(sizeof(CubicTap) == 4 * sizeof(float));
    std::int32_t k = 0;
    for (; k + 2 <= count; k += 2) {
        Floats taps;
        std::memcpy(&taps, pTaps + k, sizeof taps);
        const Floats c1 = __builtin_shufflevector(taps, taps, 1, 1, 1, 1, 5, 5, 5, 5);
        const Floats c2 = __builtin_shufflevector(taps, taps, 2, 2, 2, 2, 6, 6, 6, 6);
        const Floats c3 = __builtin_shufflevector(taps, taps, 3, 3, 3, 3, 7, 7, 7, 7);
        const std::int32_t left = pTaps[k].first;
        const std::int32_t right = pTaps[k + 1].first;
        const auto interpolate = [&](auto load) {
            for (std::size_t row = 0; row < 2; ++row) {
                const float* pLeft = rows.pSrc[row] + left;
                const float* pRight = rows.pSrc[row] + right;
                const Differences<Floats> differences(load(pLeft, pRight), load(pLeft + 4, pRight + 4),
                                                      load(pLeft + 8, pRight + 8), load(pLeft + 12, pRight + 12));
                const Floats value = differences.At(c1, c2, c3);
                std::memcpy(rows.pDst[row] + std::int64_t{k} * 4, &value, sizeof value);
            }
        };
        // Where columns do not shrink, neighbours lie between the same four samples or one further on.
        if (right == left + 4)
            interpolate([](const float* pLeft, const float*) { return LoadFloats(pLeft); });
        else if (right == left)
            interpolate([](const float* pLeft, const float*) { return LoadHalves(pLeft, pLeft); });
        else
            interpolate(LoadHalves);
    }
    return k;
}

#else

/// Pixels of four samples one by one; neighbours often lie between the same four. \return `count`.
std::int32_t InterpolatePixels(const RowPair& rows, const CubicTap* pTaps, std::int32_t count) {
    const auto differencesAt = [&](std::size_t row, std::int32_t first) {
        const float* p = rows.pSrc[row] + first;
        return Differences<Floats>(LoadFloats(p), LoadFloats(p + 4), LoadFloats(p + 8), LoadFloats(p + 12));
    };
    for (std::int32_t k = 0; k < count;) {
        const std::int32_t first = pTaps[k].first;
        const Differences<Floats> differences[] = {differencesAt(0, first), differencesAt(1, first)};
        do {
            for (std::size_t row = 0; row < 2; ++row) {
                const Floats value = differences[row].At(pTaps[k]);
                std::memcpy(rows.pDst[row] + std::int64_t{k} * 4, &value, sizeof value);
            }
            ++k;
        } while (k < count && pTaps[k].first == first);
    }
    return count;
}

#endif

template <std::int32_t channels>
void InterpolateColumns(const RowPair& rows, const CubicTap* pTaps, std::int32_t count) {
    constexpr std::ptrdiff_t n = channels;
    const std::int32_t done = channels == 4 ? InterpolatePixels(rows, pTaps, count) : 0;
    for (std::size_t row = 0; row < 2; ++row)
        for (std::int32_t k = done; k < count; ++k) {
            const float* p = rows.pSrc[row] + pTaps[k].first;
            for (std::int32_t c = 0; c < channels; ++c, ++p)
                rows.pDst[row][std::int64_t{k} * channels + c] =
                    Differences<float>(p[0], p[n], p[2 * n], p[3 * n]).At(pTaps[k]);
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

/// Makes output rows that lie between the same four. All arguments are copies: what bytes are stored through could
/// otherwise be one of them, and they would be read again after every store.
template <std::size_t nRows>
void InterpolateRows(FourRows rows, std::array<OutputRow, nRows> outputs, std::int64_t nSamples) {
    constexpr std::int64_t nBlock = std::int64_t{4} * laneCount;
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

template <std::int32_t channels>
class CCubicScaler {
public:
    explicit CCubicScaler(const Job& job) : m_Job(job), m_nSamples(std::int64_t{job.columns.output} * channels) {}

    [[nodiscard]] bool Allocate() {
        if (!m_Taps.Allocate(m_Job.columns.output)) return false;
        ForEachPlace(m_Job.columns, 0, m_Job.columns.StepFromEndToEnd(),
                     [&](std::int32_t k, const Place& place) { m_Taps[k] = TapAt(m_Job.columns, place); });
        const std::int64_t first = m_Taps[0].first;
        const std::int64_t end = std::int64_t{m_Taps[m_Job.columns.output - 1].first} + 4;
        m_nSourceStart = first * channels;
        m_nSourceSamples = (end - first) * channels;
        if (m_nSourceSamples > std::numeric_limits<std::int32_t>::max()) return false;
        std::for_each_n(m_Taps.Data(), m_Job.columns.output,
                        [=](CubicTap& tap) { tap.first = static_cast<std::int32_t>((tap.first - first) * channels); });
        return m_Source.Allocate(2 * m_nSourceSamples) && m_Pairs.Allocate(2 * m_nSamples);
    }

    void Scale() {
        // Where rows grow, neighbours often lie between the same four; two at once share what those four cost.
        const bool bByTwo = m_Job.dstStep >= m_nSamples;
        std::optional<OutputRow> waiting;
        ForEachPlace(m_Job.rows, 0, m_Job.rows.StepFromEndToEnd(), [&](std::int32_t y, const Place& place) {
            const OutputRow output{m_Job.OutputRow(y), TapAt(m_Job.rows, place)};
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
                               m_nSamples);
    }

    const float* ScaledRow(std::int32_t y) {
        const std::int32_t upper = y & ~1;
        const std::int32_t lower = std::min(upper + 1, m_Job.rows.source - 1);
        const float* pPair = m_Pairs.Row(y / 2, [&](float* pNew) {
            InterpolateColumns<channels>({{LoadSource(upper, 0), LoadSource(lower, 1)}, {pNew, pNew + m_nSamples}},
                                         m_Taps.Data(), m_Job.columns.output);
        });
        return pPair + (y - upper) * m_nSamples;
    }

    const float* LoadSource(std::int32_t y, std::int64_t slot) {
        float* pSource = m_Source.Data() + slot * m_nSourceSamples;
        std::copy_n(m_Job.SourceRow(y) + m_nSourceStart, m_nSourceSamples, pSource);
        return pSource;
    }

    const Job& m_Job;
    std::int64_t m_nSamples;           ///< of an output row
    std::int64_t m_nSourceStart = 0;   ///< the first sample of a source row that any output needs
    std::int64_t m_nSourceSamples = 0; ///< and how many, counted in 32 bits by the taps
    CWorkArray<CubicTap> m_Taps;
    CWorkArray<float> m_Source; ///< of the two rows at hand
    CRowRing<float, 3> m_Pairs; ///< of rows: any four neighbours are in three of them
};

} // namespace

template <std::int32_t channels>
bool ScaleCubic(const Job& job) {
    CCubicScaler<channels> scaler(job);
    if (!scaler.Allocate()) return false;
    scaler.Scale();
    return true;
}

template bool ScaleCubic<1>(const Job&);
template bool ScaleCubic<3>(const Job&);
template bool ScaleCubic<4>(const Job&);

} // namespace vellumcaster::scaling
