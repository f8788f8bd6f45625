#include "image/primitives/resize_area.h"

#include <bit>
#include <cmath>
#include <numeric>
#include <optional>

namespace vellumcaster::scaling {

namespace {

struct WholeRatio {
    std::int32_t x;
    std::int32_t y;

    [[nodiscard]] std::int32_t Block() const { return x * y; }
};

/// Rows are worked through in pieces whose sums stay in the nearest cache.
constexpr std::int32_t nPieceColumns = 1024;

/// The ratios, if they are whole and small enough for every sum to be exact in single precision, so that integers
/// tell the same.
std::optional<WholeRatio> ExactRatio(const Job& job) {
    const double x = Ratio(job.columns);
    const double y = Ratio(job.rows);
    constexpr std::int32_t largestExact = (1 << 24) / 255;
    constexpr std::int32_t mostRows = 65535 / 255; // whose sums fit 16 bits
    if (x != std::floor(x) || y != std::floor(y)) return std::nullopt;
    if (x * y > largestExact || y > mostRows || x > nPieceColumns) return std::nullopt;
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
    std::uint16_t m_Sums[nPieceColumns * channels];
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
            for (std::ptrdiff_t k = 0; k < count; ++k)
                StoreWord(pDst + 4 * k,
                          Divide(m_Even[2 * k] + m_Even[2 * k + 1], m_Odd[2 * k] + m_Odd[2 * k + 1], divide));
            return;
        }
        const std::uint32_t* pEven = m_Even;
        const std::uint32_t* pOdd = m_Odd;
        for (std::ptrdiff_t k = 0; k < count; ++k, pEven += ratio, pOdd += ratio)
            StoreWord(pDst + 4 * k, Divide(std::accumulate(pEven, pEven + ratio, 0U),
                                           std::accumulate(pOdd, pOdd + ratio, 0U), divide));
    }

private:
    static constexpr std::uint32_t evenBytes = 0x00FF00FF;

    template <std::int32_t nRows>
    void AddRows(const BYTE* pSrc, std::int32_t step, std::int32_t nColumns) {
        for (std::ptrdiff_t i = 0; i < nColumns; ++i) {
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
        const auto sample = [=](std::uint32_t sum) { return std::uint32_t{average(sum)}; };
        return sample(even & 0xFFFF) | sample(odd & 0xFFFF) << 8 | sample(even >> 16) << 16 | sample(odd >> 16) << 24;
    }

    std::uint32_t m_Even[nPieceColumns];
    std::uint32_t m_Odd[nPieceColumns];
};

template <std::int32_t channels, class Sums>
void AverageWithSums(const Job& job, WholeRatio ratio) {
    Sums sums;
    const std::int32_t nPiece = nPieceColumns / ratio.x;
    WithAverage(ratio, Area(job), [&](auto divide) {
        for (std::int32_t y = 0; y < job.rows.output; ++y)
            for (std::int64_t done = 0; done < job.columns.output; done += nPiece) {
                const auto count = static_cast<std::int32_t>(std::min<std::int64_t>(nPiece, job.columns.output - done));
                const std::int64_t at = (job.columns.origin + done * ratio.x) * channels;
                sums.SumRows(job.SourceRow(job.rows.origin + y * ratio.y) + at, job.srcStep, ratio.y, count * ratio.x);
                sums.AverageColumns(ratio.x, divide, job.OutputRow(y) + done * channels, count);
            }
    });
}

} // namespace

template <std::int32_t channels>
bool AverageBlocks(const Job& job) {
    const auto ratio = ExactRatio(job);
    if (!ratio) return false;
    if constexpr (channels == 4) {
        if (ratio->Block() <= CPixelSums::mostBlock) {
            AverageWithSums<channels, CPixelSums>(job, *ratio);
            return true;
        }
    }
    AverageWithSums<channels, CSampleSums<channels>>(job, *ratio);
    return true;
}

template bool AverageBlocks<1>(const Job&);
template bool AverageBlocks<3>(const Job&);
template bool AverageBlocks<4>(const Job&);

} // namespace vellumcaster::scaling
