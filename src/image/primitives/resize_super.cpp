#include "image/primitives/resize_job.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>

namespace vellumcaster::scaling {

namespace {

/// The source pixels of one output: whole ones, and parts of their neighbours.
struct Span {
    std::int32_t first; ///< of the whole ones
    std::int32_t count;
    float before; ///< the share of the pixel before the first; 0 for none
    float behind; ///< and of the one behind the last
};

/// Deals a line of source pixels out to the outputs in turn; two outputs share the pixel between them.
class CSpanWalk {
public:
    CSpanWalk(double ratio, std::int32_t count) : m_dblRatio(ratio), m_nCount(count) {}

    Span Next() {
        Span span{};
        double rest = m_dblRatio;
        const double slack = m_bStarted ? nearlyNothing : 0;
        if (m_bStarted) {
            // A pixel of which next to nothing is left counts as used up.
            const double left = 1 - m_dblUsed;
            if (left > nearlyNothing) span.before = ShareOfNext(left);
            m_nNext = std::min(m_nNext + 1, m_nCount);
            rest -= left;
        }
        const double whole = std::floor(rest + slack);
        m_dblUsed = rest - whole;
        span.first = m_nNext;
        span.count = std::min(static_cast<std::int32_t>(whole), m_nCount - m_nNext);
        m_nNext += span.count;
        if (m_dblUsed > slack) span.behind = ShareOfNext(m_dblUsed);
        m_bStarted = true;
        return span;
    }

private:
    /// By rounding the last output can reach a trace beyond the last pixel.
    [[nodiscard]] float ShareOfNext(double share) const {
        return m_nNext < m_nCount ? static_cast<float>(share) : 0.0F;
    }

    double m_dblRatio;
    std::int32_t m_nCount;
    std::int32_t m_nNext = 0; ///< the first pixel that is not used up
    double m_dblUsed = 0;     ///< what is used of it
    bool m_bStarted = false;
};

/// A factor that would leave less than one pixel averages all there is.
double UsefulFactor(const Axis& axis) { return std::max(axis.factor, 1.0 / axis.region); }

/// How many source pixels an output covers, from 1.
double Ratio(const Axis& axis) { return std::min(1 / axis.factor, static_cast<double>(axis.region)); }

double Area(const Job& job) { return UsefulFactor(job.columns) * UsefulFactor(job.rows); }

BYTE Average(double sum, double area) { return static_cast<BYTE>(std::min(sum * area + 0.5, 255.0)); }

// ---- any ratio, in single precision

void AddRow(const BYTE* pSrc, float share, float* pSums, std::int64_t nSamples) {
    for (std::int64_t i = 0; i < nSamples; ++i)
        pSums[i] += share * static_cast<float>(pSrc[i]);
}

template <std::int32_t channels>
void AddPixel(const float* pSrc, float share, float (&sums)[channels]) {
    for (std::int32_t c = 0; c < channels; ++c)
        sums[c] += share * pSrc[c];
}

template <std::int32_t channels>
void AverageColumns(const float* pRowSums, const Span* pSpans, double area, BYTE* pDst, std::int32_t count) {
    for (std::int32_t k = 0; k < count; ++k, pDst += channels) {
        const Span& span = pSpans[k];
        const float* p = pRowSums + std::int64_t{span.first} * channels;
        float sums[channels] = {};
        if (span.before != 0) AddPixel<channels>(p - channels, span.before, sums);
        for (std::int32_t i = 0; i < span.count; ++i, p += channels)
            AddPixel<channels>(p, 1, sums);
        if (span.behind != 0) AddPixel<channels>(p, span.behind, sums);
        for (std::int32_t c = 0; c < channels; ++c)
            pDst[c] = Average(sums[c], area);
    }
}

template <std::int32_t channels>
bool AverageParts(const Job& job) {
    const double ratio = Ratio(job.columns);
    const auto nColumns = static_cast<std::int32_t>(
        std::min(std::floor(ratio * (job.columns.output + 1.0)) + 1, static_cast<double>(job.columns.region)));
    const std::int64_t nSamples = std::int64_t{nColumns} * channels;
    CWorkArray<Span> columns;
    CWorkArray<float> sums;
    if (!columns.Allocate(job.columns.output) || !sums.Allocate(nSamples)) return false;
    CSpanWalk columnWalk(ratio, nColumns);
    std::generate_n(columns.Data(), job.columns.output, [&] { return columnWalk.Next(); });

    CSpanWalk rowWalk(Ratio(job.rows), job.rows.region);
    const auto addRow = [&](std::int32_t y, float share) {
        const BYTE* pRow = job.SourceRow(job.rows.origin + y) + std::int64_t{job.columns.origin} * channels;
        AddRow(pRow, share, sums.Data(), nSamples);
    };
    for (std::int32_t y = 0; y < job.rows.output; ++y) {
        const Span span = rowWalk.Next();
        std::fill_n(sums.Data(), nSamples, 0.0F);
        if (span.before != 0) addRow(span.first - 1, span.before);
        for (std::int32_t i = 0; i < span.count; ++i)
            addRow(span.first + i, 1);
        if (span.behind != 0) addRow(span.first + span.count, span.behind);
        AverageColumns<channels>(sums.Data(), columns.Data(), Area(job), job.OutputRow(y), job.columns.output);
    }
    return true;
}

// ---- whole ratios, in integers

struct WholeRatio {
    std::int32_t x;
    std::int32_t y;

    [[nodiscard]] std::int32_t Block() const { return x * y; }
};

/// Rows are worked through in pieces whose sums stay in the nearest cache.
constexpr std::int32_t nPieceSamples = 4096;

/// The ratios, if they are whole and small enough for every sum to be exact in single precision, so that integers
/// tell the same.
std::optional<WholeRatio> ExactRatio(const Job& job) {
    const double x = Ratio(job.columns);
    const double y = Ratio(job.rows);
    constexpr double largestExact = (1 << 24) / 255;
    constexpr double mostRows = 65535 / 255;
    constexpr double mostColumns = nPieceSamples / 4;
    if (x != std::floor(x) || y != std::floor(y)) return std::nullopt;
    if (x * y > largestExact || y > mostRows || x > mostColumns) return std::nullopt;
    return WholeRatio{static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)};
}

/// The average of a block from its sum, by the power of two that the block's size may be.
struct ShiftedAverage {
    std::uint32_t half;
    int shift;

    BYTE operator()(std::uint32_t sum) const { return static_cast<BYTE>((sum + half) >> shift); }
};

struct MultipliedAverage {
    double area;

    BYTE operator()(std::uint32_t sum) const { return Average(sum, area); }
};

/// Calls `run` with the average that fits.
template <class Run>
void WithAverage(WholeRatio ratio, double area, Run run) {
    const auto nBlock = static_cast<std::uint32_t>(ratio.Block());
    if (std::has_single_bit(nBlock) && area * nBlock == 1.0)
        run(ShiftedAverage{nBlock / 2, std::countr_zero(nBlock)});
    else
        run(MultipliedAverage{area});
}

/// Sums of samples, one by one.
template <std::int32_t channels>
class CSampleSums {
public:
    static constexpr std::int32_t mostBlock = std::numeric_limits<std::int32_t>::max();

    void SumRows(const BYTE* pSrc, std::int32_t step, std::int32_t nRows, std::int32_t nColumns) {
        std::copy_n(pSrc, nColumns * channels, m_Sums);
        for (std::int32_t y = 1; y < nRows; ++y) {
            const BYTE* pRow = RowAt(pSrc, step, y);
            for (std::int32_t i = 0; i < nColumns * channels; ++i)
                m_Sums[i] = static_cast<std::uint16_t>(m_Sums[i] + pRow[i]);
        }
    }

    template <class DivideSum>
    void AverageColumns(std::int32_t ratio, DivideSum divide, BYTE* pDst, std::int32_t count) const {
        const std::uint16_t* pSums = m_Sums;
        for (std::int32_t k = 0; k < count; ++k, pDst += channels) {
            std::uint32_t sums[channels] = {};
            for (std::int32_t i = 0; i < ratio; ++i, pSums += channels)
                for (std::int32_t c = 0; c < channels; ++c)
                    sums[c] += pSums[c];
            for (std::int32_t c = 0; c < channels; ++c)
                pDst[c] = divide(sums[c]);
        }
    }

private:
    std::uint16_t m_Sums[nPieceSamples];
};

/// Sums of pixels of four samples, two to a word: nothing has to be widened or packed again. A block has 256 pixels
/// at most.
class CPixelSums {
public:
    static constexpr std::int32_t mostBlock = 256;

    void SumRows(const BYTE* pSrc, std::int32_t step, std::int32_t nRows, std::int32_t nColumns) {
        std::fill_n(m_Even, nColumns, 0U);
        std::fill_n(m_Odd, nColumns, 0U);
        std::int32_t y = 0;
        for (; y + 4 <= nRows; y += 4)
            AddRows<4>(RowAt(pSrc, step, y), step, nColumns);
        for (; y + 2 <= nRows; y += 2)
            AddRows<2>(RowAt(pSrc, step, y), step, nColumns);
        if (y < nRows) AddRows<1>(RowAt(pSrc, step, y), step, nColumns);
    }

    template <class DivideSum>
    void AverageColumns(std::int32_t ratio, DivideSum divide, BYTE* pDst, std::int32_t count) const {
        if (ratio == 2) {
            for (std::int32_t k = 0; k < count; ++k)
                StoreWord(pDst + 4 * k, Divide(m_Even[2 * k] + m_Even[2 * k + 1], m_Odd[2 * k] + m_Odd[2 * k + 1], divide));
            return;
        }
        for (std::int32_t k = 0; k < count; ++k) {
            const std::uint32_t even = std::accumulate(m_Even + k * ratio, m_Even + (k + 1) * ratio, 0U);
            const std::uint32_t odd = std::accumulate(m_Odd + k * ratio, m_Odd + (k + 1) * ratio, 0U);
            StoreWord(pDst + 4 * k, Divide(even, odd, divide));
        }
    }

private:
    static constexpr std::uint32_t evenBytes = 0x00FF00FF;

    template <std::int32_t nRows>
    void AddRows(const BYTE* pSrc, std::int32_t step, std::int32_t nColumns) {
        for (std::int32_t i = 0; i < nColumns; ++i) {
            std::uint32_t even = m_Even[i];
            std::uint32_t odd = m_Odd[i];
            for (std::int32_t y = 0; y < nRows; ++y) {
                const std::uint32_t pixel = LoadWord(RowAt(pSrc, step, y) + 4 * i);
                even += pixel & evenBytes;
                odd += pixel >> 8 & evenBytes;
            }
            m_Even[i] = even;
            m_Odd[i] = odd;
        }
    }

    static std::uint32_t Divide(std::uint32_t even, std::uint32_t odd, ShiftedAverage average) {
        const std::uint32_t halves = average.half * 0x00010001;
        return ((even + halves) >> average.shift & evenBytes) | ((odd + halves) >> average.shift & evenBytes) << 8;
    }
    static std::uint32_t Divide(std::uint32_t even, std::uint32_t odd, MultipliedAverage average) {
        return average(even & 0xFFFF) | average(odd & 0xFFFF) << 8 | average(even >> 16) << 16 |
               std::uint32_t{average(odd >> 16)} << 24;
    }

    std::uint32_t m_Even[nPieceSamples / 4];
    std::uint32_t m_Odd[nPieceSamples / 4];
};

template <std::int32_t channels, class Sums>
void AverageBlocks(const Job& job, WholeRatio ratio) {
    alignas(32) Sums sums;
    const std::int32_t nPiece = nPieceSamples / 4 / ratio.x;
    WithAverage(ratio, Area(job), [&](auto divide) {
        for (std::int32_t y = 0; y < job.rows.output; ++y)
            for (std::int64_t done = 0; done < job.columns.output; done += nPiece) {
                const auto count = static_cast<std::int32_t>(std::min<std::int64_t>(nPiece, job.columns.output - done));
                const std::int64_t at = (job.columns.origin + done * ratio.x) * channels;
                sums.SumRows(job.SourceRow(job.rows.origin + y * ratio.y) + at, job.srcStep, ratio.y,
                             count * ratio.x);
                sums.AverageColumns(ratio.x, divide, job.OutputRow(y) + done * channels, count);
            }
    });
}

} // namespace

template <std::int32_t channels>
bool ScaleByArea(const Job& job) {
    const auto ratio = ExactRatio(job);
    if (!ratio) return AverageParts<channels>(job);
    if (channels == 4 && ratio->Block() <= CPixelSums::mostBlock)
        AverageBlocks<channels, CPixelSums>(job, *ratio);
    else
        AverageBlocks<channels, CSampleSums<channels>>(job, *ratio);
    return true;
}

template bool ScaleByArea<1>(const Job&);
template bool ScaleByArea<3>(const Job&);
template bool ScaleByArea<4>(const Job&);

} // namespace vellumcaster::scaling
