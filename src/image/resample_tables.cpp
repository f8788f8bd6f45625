#include "image/resample_tables.h"

#include "image/rounding.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>

namespace vellumcaster {

namespace {

/// The kernel's taps over one target sample.
struct Taps {
    std::int64_t first; ///< source sample under the first tap
    double center;      ///< place of the target sample among the source samples
    double total;       ///< of the kernel over all taps
};

/// Where the taps of each target sample lie and what they weigh, as both directions have it.
class CTapRule {
public:
    CTapRule(const KernelHolder& kernel, std::int32_t srcSize, std::int32_t dstSize)
        : m_Kernel(kernel), m_dblScale(static_cast<double>(dstSize) / srcSize) {
        // Where the picture shrinks the kernel is stretched over all the samples that go into one.
        if (m_dblScale < 1.0) m_dblDistanceScale = m_dblScale;
        m_dblReach = kernel.Support() / m_dblDistanceScale;
        m_nTaps = std::max<std::int64_t>(2 * static_cast<std::int64_t>(std::ceil(m_dblReach)) + 1, 0);
    }

    void Limit(std::int64_t nTaps) { m_nTaps = std::min(m_nTaps, nTaps); }
    void LimitReach(double reach) { m_dblReach = reach; }

    [[nodiscard]] std::int64_t Count() const { return m_nTaps; }

    [[nodiscard]] Taps At(std::int32_t target) const {
        Taps taps{0, target / m_dblScale, 0.0};
        taps.first = std::max<std::int64_t>(RoundToInt64(taps.center - m_dblReach), 0);
        for (std::int64_t j = 0; j < m_nTaps; ++j)
            taps.total += Eval(taps, j);
        return taps;
    }

    /// The share of tap `j`, in units of 1 / `one`. Taps whose total is 0 have no share.
    [[nodiscard]] std::int64_t Weight(const Taps& taps, std::int64_t j, double one) const {
        return RoundToInt64(Eval(taps, j) / taps.total * one);
    }

private:
    [[nodiscard]] double Eval(const Taps& taps, std::int64_t j) const {
        return m_Kernel.Eval(std::abs((taps.center - static_cast<double>(taps.first + j)) * m_dblDistanceScale));
    }

    const KernelHolder& m_Kernel;
    double m_dblScale;
    double m_dblDistanceScale = 1.0;
    double m_dblReach;
    std::int64_t m_nTaps;
};

// ---- horizontal

template <class TapCount>
void ApplyToRow(const BYTE* pIn, BYTE* pOut, std::int32_t width, const std::uint32_t* pFirst, const BYTE* pWeights,
                std::size_t cbWeights, TapCount nTaps) {
    for (std::int32_t x = 0; x < width; ++x, pWeights += cbWeights) {
        const BYTE* pTaps = pIn + pFirst[x];
        std::uint32_t sum = 64;
        for (std::int32_t j = 0; j < nTaps; ++j)
            sum += std::uint32_t{pTaps[j]} * pWeights[j];
        pOut[x] = static_cast<BYTE>(std::min(sum >> 7, 255u));
    }
}

// ---- vertical

struct EntryHead {
    std::uint32_t nFirst;
    std::uint32_t nCount;
};

constexpr std::uint64_t InFourLanes(std::uint16_t weight) { return weight * std::uint64_t{0x0001000100010001}; }
constexpr std::uint16_t FirstLane(std::uint64_t lanes) { return static_cast<std::uint16_t>(lanes); }

/// Brings the taps behind the last row onto it. \return how many taps are left; at least one of `nCount`.
std::int64_t RepeatLastRow(std::int64_t first, std::uint64_t* pWeights, std::int64_t nCount, std::int64_t lastRow) {
    const std::int64_t nLeft = std::min(nCount, lastRow - first + 1);
    for (std::int64_t j = nLeft; j < nCount; ++j)
        pWeights[nLeft - 1] =
            InFourLanes(static_cast<std::uint16_t>(FirstLane(pWeights[nLeft - 1]) + FirstLane(pWeights[j])));
    return nLeft;
}

/// \return behind the entry; null when it has no weight.
std::uint64_t* WriteEntry(const CTapRule& rule, std::int32_t row, std::int64_t lastRow, std::uint64_t* pEntry) {
    const Taps taps = rule.At(row);
    std::uint64_t* pWeights = pEntry + 1;
    std::int64_t first = taps.first;
    std::int64_t nCount = 0;
    for (std::int64_t j = 0; j < rule.Count(); ++j) {
        const auto weight = static_cast<std::uint16_t>(rule.Weight(taps, j, 256.0));
        if (weight != 0)
            pWeights[nCount++] = InFourLanes(weight);
        else if (nCount == 0)
            ++first;
    }
    if (nCount == 0) return nullptr;
    first = std::min(first, lastRow);
    nCount = RepeatLastRow(first, pWeights, nCount, lastRow);
    *pEntry =
        std::bit_cast<std::uint64_t>(EntryHead{static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(nCount)});
    return pWeights + nCount;
}

/// The sum up to the largest value of 16 bits, said so that compilers find the vector instructions for it.
constexpr std::uint16_t AddSaturated(std::uint16_t a, std::uint16_t b) {
    const auto room = static_cast<std::uint16_t>(0xFFFF - b);
    return static_cast<std::uint16_t>(std::min(a, room) + b);
}

/// One target row from `pIn`, the first source row under its taps, in pieces whose sums stay near.
void ApplyEntry(const BYTE* pIn, std::ptrdiff_t inPitch, std::span<const std::uint64_t> weights, BYTE* pOut,
                std::size_t cbRow) {
    constexpr std::size_t cbPiece = 512;
    for (std::size_t x = 0; x < cbRow; x += cbPiece) {
        const std::size_t cb = std::min(cbPiece, cbRow - x);
        std::array<std::uint16_t, cbPiece> sums{};
        const BYTE* pRow = pIn + x;
        for (const std::uint64_t lanes : weights) {
            const std::uint16_t weight = FirstLane(lanes);
            for (std::size_t i = 0; i < cb; ++i)
                sums[i] = AddSaturated(sums[i], static_cast<std::uint16_t>(pRow[i] * weight));
            pRow += inPitch;
        }
        for (std::size_t i = 0; i < cb; ++i)
            pOut[x + i] = static_cast<BYTE>(AddSaturated(sums[i], 128) >> 8);
    }
}

} // namespace

std::int32_t HorizontalTable::ReadTaps() const {
    return std::min(static_cast<std::int32_t>(WeightBytes()), m_nSrcWidth);
}

HRESULT HorizontalTable::Build(std::int32_t srcWidth, std::int32_t dstWidth, const ResampleParams& params) {
    if (srcWidth < 1 || dstWidth < 1) return E_INVALIDARG;
    const HRESULT hr = m_Kernel.Select(params);
    if (FAILED(hr)) return hr;
    if (hr == S_FALSE && m_bReady && srcWidth == m_nSrcWidth && dstWidth == m_nDstWidth) return S_OK;

    CTapRule rule(m_Kernel, srcWidth, dstWidth);
    m_bReady = false;
    m_nSrcWidth = srcWidth;
    m_nDstWidth = dstWidth;
    m_bFourTaps = rule.Count() <= 5;
    if (rule.Count() > 8) rule.LimitReach(4.0);
    rule.Limit(m_bFourTaps ? 4 : 8);

    const auto nColumns = static_cast<std::size_t>(dstWidth);
    if (m_First.Resize(nColumns * sizeof(std::uint32_t)) != S_OK) return E_OUTOFMEMORY;
    if (m_Weights.Alloc(nColumns * WeightBytes(), true) != S_OK) return E_OUTOFMEMORY;
    auto* pFirst = reinterpret_cast<std::uint32_t*>(m_First.Data());
    BYTE* pWeights = m_Weights.Data();
    for (std::int32_t x = 0; x < dstWidth; ++x, pWeights += WeightBytes()) {
        const Taps taps = rule.At(x);
        // The last columns begin early enough for all that is read of them to lie in the row.
        const std::int64_t first = std::min<std::int64_t>(taps.first, srcWidth - ReadTaps());
        pFirst[x] = static_cast<std::uint32_t>(first);
        for (std::int64_t j = 0; j < rule.Count(); ++j) {
            const std::int64_t column = std::min<std::int64_t>(taps.first + j, srcWidth - 1);
            BYTE& weight = pWeights[column - first];
            weight = static_cast<BYTE>(weight + rule.Weight(taps, j, 128.0));
        }
    }
    m_bReady = true;
    return S_OK;
}

void HorizontalTable::Apply(const BYTE* pIn, BYTE* pOut, std::int32_t rows, std::ptrdiff_t inPitch,
                            std::ptrdiff_t outPitch) const {
    if (!m_bReady) return;
    const auto applyWith = [&](auto nTaps) {
        const auto* pFirst = reinterpret_cast<const std::uint32_t*>(m_First.Data());
        for (std::ptrdiff_t y = 0; y < rows; ++y)
            ApplyToRow(pIn + y * inPitch, pOut + y * outPitch, m_nDstWidth, pFirst, m_Weights.Data(), WeightBytes(),
                       nTaps);
    };
    switch (ReadTaps()) {
    case 4: return applyWith(std::integral_constant<std::int32_t, 4>());
    case 8: return applyWith(std::integral_constant<std::int32_t, 8>());
    default: return applyWith(ReadTaps()); // a row shorter than its taps
    }
}

HRESULT VerticalTable::Build(std::int32_t srcHeight, std::int32_t dstHeight, const ResampleParams& params) {
    if (srcHeight < 1 || dstHeight < 1) return E_INVALIDARG;
    const HRESULT hr = m_Kernel.Select(params);
    if (FAILED(hr)) return hr;
    if (hr == S_FALSE && m_bReady && srcHeight == m_nSrcHeight && dstHeight == m_nDstHeight) return S_OK;

    const CTapRule rule(m_Kernel, srcHeight, dstHeight);
    m_bReady = false;
    m_nSrcHeight = srcHeight;
    m_nDstHeight = dstHeight;
    const auto nWordsARow = static_cast<std::size_t>(rule.Count() + 1);
    if (m_Entries.Resize(static_cast<std::size_t>(dstHeight) * nWordsARow * sizeof(std::uint64_t)) != S_OK)
        return E_OUTOFMEMORY;
    auto* pEntry = reinterpret_cast<std::uint64_t*>(m_Entries.Data());
    for (std::int32_t y = 0; y < dstHeight; ++y) {
        pEntry = WriteEntry(rule, y, srcHeight - 1, pEntry);
        if (!pEntry) return E_FAIL;
    }
    m_bReady = true;
    return S_OK;
}

void VerticalTable::Apply(const BYTE* pIn, BYTE* pOut, std::size_t cbRow, std::ptrdiff_t inPitch,
                          std::ptrdiff_t outPitch) const {
    if (!m_bReady) return;
    const auto* pEntry = reinterpret_cast<const std::uint64_t*>(m_Entries.Data());
    for (std::ptrdiff_t y = 0; y < m_nDstHeight; ++y) {
        const auto head = std::bit_cast<EntryHead>(*pEntry);
        ApplyEntry(pIn + std::ptrdiff_t{head.nFirst} * inPitch, inPitch, {pEntry + 1, head.nCount}, pOut + y * outPitch,
                   cbRow);
        pEntry += 1 + head.nCount;
    }
}

} // namespace vellumcaster
