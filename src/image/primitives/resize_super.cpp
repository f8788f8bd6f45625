#include "image/primitives/resize_area.h"

#include <algorithm>
#include <cmath>

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

} // namespace

template <std::int32_t channels>
bool ScaleByArea(const Job& job) {
    return AverageBlocks<channels>(job) || AverageParts<channels>(job);
}

template bool ScaleByArea<1>(const Job&);
template bool ScaleByArea<3>(const Job&);
template bool ScaleByArea<4>(const Job&);

} // namespace vellumcaster::scaling
