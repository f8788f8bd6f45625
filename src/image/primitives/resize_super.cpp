#include "image/primitives/resize_job.h"

#include <algorithm>
#include <bit>
#include <cmath>
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

/// So many sums of a piece of a row stay in the nearest cache.
constexpr std::int32_t nPieceSums = 4096;

struct WholeRatio {
    std::int32_t x;
    std::int32_t y;
};

/// The ratios, if they are whole and small enough for every sum to be exact in single precision, so that integers
/// tell the same.
template <std::int32_t channels>
std::optional<WholeRatio> ExactRatio(const Job& job) {
    const double x = Ratio(job.columns);
    const double y = Ratio(job.rows);
    constexpr double largestExact = (1 << 24) / 255;
    constexpr double mostRows = 65535 / 255;
    if (x != std::floor(x) || y != std::floor(y)) return std::nullopt;
    if (x * y > largestExact || y > mostRows || x * channels > nPieceSums) return std::nullopt;
    return WholeRatio{static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)};
}

/// The average of a block of samples from their sum.
class CBlockAverage {
public:
    CBlockAverage(std::int32_t nBlock, double area)
        : m_dblArea(area),
          m_bShift(std::has_single_bit(static_cast<std::uint32_t>(nBlock)) && area * nBlock == 1.0),
          m_nShift(m_bShift ? std::countr_zero(static_cast<std::uint32_t>(nBlock)) : 0),
          m_nHalf(static_cast<std::uint32_t>(nBlock) / 2) {}

    [[nodiscard]] bool IsShift() const { return m_bShift; }
    [[nodiscard]] BYTE Shifted(std::uint32_t sum) const { return static_cast<BYTE>((sum + m_nHalf) >> m_nShift); }
    [[nodiscard]] BYTE Multiplied(std::uint32_t sum) const { return Average(sum, m_dblArea); }

private:
    double m_dblArea;
    bool m_bShift;
    int m_nShift;
    std::uint32_t m_nHalf;
};

void SumRows(const BYTE* pSrc, std::int32_t srcStep, std::int32_t nRows, std::uint16_t* pSums, std::int32_t count) {
    std::copy_n(pSrc, count, pSums);
    for (std::int32_t y = 1; y < nRows; ++y) {
        const BYTE* pRow = RowAt(pSrc, srcStep, y);
        for (std::int32_t i = 0; i < count; ++i)
            pSums[i] = static_cast<std::uint16_t>(pSums[i] + pRow[i]);
    }
}

template <std::int32_t channels, class Divide>
void AverageBlocks(const std::uint16_t* pRowSums, std::int32_t ratio, Divide divide, BYTE* pDst, std::int32_t count) {
    for (std::int32_t k = 0; k < count; ++k, pDst += channels) {
        std::uint32_t sums[channels] = {};
        for (std::int32_t i = 0; i < ratio; ++i, pRowSums += channels)
            for (std::int32_t c = 0; c < channels; ++c)
                sums[c] += pRowSums[c];
        for (std::int32_t c = 0; c < channels; ++c)
            pDst[c] = divide(sums[c]);
    }
}

template <std::int32_t channels>
void AverageWhole(const Job& job, WholeRatio ratio) {
    const CBlockAverage average(ratio.x * ratio.y, Area(job));
    alignas(32) std::uint16_t sums[nPieceSums];
    const std::int32_t nPiece = nPieceSums / (ratio.x * channels);
    for (std::int32_t y = 0; y < job.rows.output; ++y) {
        const BYTE* pRow =
            job.SourceRow(job.rows.origin + y * ratio.y) + std::int64_t{job.columns.origin} * channels;
        BYTE* pDst = job.OutputRow(y);
        for (std::int32_t done = 0; done < job.columns.output; done += nPiece) {
            const std::int32_t count = std::min(nPiece, job.columns.output - done);
            SumRows(pRow + std::int64_t{done} * ratio.x * channels, job.srcStep, ratio.y, sums, count * ratio.x * channels);
            BYTE* pTo = pDst + std::int64_t{done} * channels;
            if (average.IsShift())
                AverageBlocks<channels>(sums, ratio.x, [&](std::uint32_t sum) { return average.Shifted(sum); }, pTo, count);
            else
                AverageBlocks<channels>(sums, ratio.x, [&](std::uint32_t sum) { return average.Multiplied(sum); }, pTo, count);
        }
    }
}

} // namespace

template <std::int32_t channels>
bool ScaleByArea(const Job& job) {
    const auto ratio = ExactRatio<channels>(job);
    if (!ratio) return AverageParts<channels>(job);
    AverageWhole<channels>(job, *ratio);
    return true;
}

template bool ScaleByArea<1>(const Job&);
template bool ScaleByArea<3>(const Job&);
template bool ScaleByArea<4>(const Job&);

} // namespace vellumcaster::scaling
