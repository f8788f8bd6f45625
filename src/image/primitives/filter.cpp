#include "image/primitives/pixel_math.h"
#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"

#include <algorithm>
#include <bit>

namespace vellumcaster {

namespace {

/// A row is worked through in pieces whose sums stay in the nearest cache.
constexpr std::int64_t nPieceSamples = 512;

/// How a sum becomes a sample.
class CDivision {
public:
    explicit CDivision(std::int32_t divisor)
        : m_nDivisor(divisor),
          m_bPowerOfTwo(divisor > 0 && std::has_single_bit(static_cast<std::uint32_t>(divisor))),
          m_nShift(m_bPowerOfTwo ? std::countr_zero(static_cast<std::uint32_t>(divisor)) : 0),
          m_dblReciprocal(static_cast<float>(1.0 / divisor)) {}

    void Store(const std::uint32_t* pSums, BYTE* pDst, std::int64_t count) const {
        const auto storeAll = [=](auto toSample) {
            for (std::int64_t i = 0; i < count; ++i)
                pDst[i] = toSample(static_cast<std::int32_t>(pSums[i]));
        };
        if (m_nDivisor == 1)
            storeAll([](std::int32_t sum) { return static_cast<BYTE>(Clamp255(sum)); });
        else if (m_bPowerOfTwo)
            storeAll([this](std::int32_t sum) { return Shifted(sum); });
        else
            storeAll([this](std::int32_t sum) { return Multiplied(sum); });
    }

private:
    [[nodiscard]] BYTE Shifted(std::int32_t sum) const {
        const std::int64_t half = std::int64_t{1} << (m_nShift - 1);
        return static_cast<BYTE>(std::min<std::int64_t>((std::max(sum, 0) + half) >> m_nShift, 255));
    }
    [[nodiscard]] BYTE Multiplied(std::int32_t sum) const {
        return static_cast<BYTE>(std::clamp(sum * m_dblReciprocal + 0.5, 0.0, 255.0));
    }

    std::int32_t m_nDivisor;
    bool m_bPowerOfTwo;
    int m_nShift;
    double m_dblReciprocal; ///< in single precision
};

/// A kernel with its place over the pixels of `channels` samples.
struct Kernel {
    const std::int32_t* pWeights;
    PrimSize size;
    PrimPoint anchor;
    std::int64_t srcStep;
    std::int64_t channels;

    /// Adds up what the kernel makes of `count` samples from `pSrc` on; sums wrap.
    void Convolve(const BYTE* pSrc, std::uint32_t* pSums, std::int64_t count) const {
        std::fill_n(pSums, count, 0U);
        for (std::int64_t j = 0; j < size.height; ++j)
            for (std::int64_t i = 0; i < size.width; ++i) {
                const auto weight = static_cast<std::uint32_t>(pWeights[j * size.width + i]);
                const BYTE* pTap = pSrc + (anchor.y - j) * srcStep + (anchor.x - i) * channels;
                for (std::int64_t n = 0; n < count; ++n)
                    pSums[n] += weight * pTap[n];
            }
    }
};

PrimStatus Check(bool bAnyNull, PrimSize size, PrimSize kernelSize, std::int32_t divisor) {
    if (bAnyNull) return prim_status::nullPointer;
    if (std::min({size.width, size.height, kernelSize.width, kernelSize.height}) < 1) return prim_status::badSize;
    return divisor == 0 ? prim_status::badDivisor : prim_status::ok;
}

template <std::int64_t channels>
PrimStatus Filter(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep, PrimSize size,
                  const Kernel& kernel, std::int32_t divisor) {
    const bool bAnyNull = !pSrc || !pDst || !kernel.pWeights;
    if (const PrimStatus status = Check(bAnyNull, size, kernel.size, divisor)) return status;
    const std::int64_t cbRow = size.width * channels;
    if (srcStep < cbRow + (std::int64_t{kernel.size.width} - 1) * channels || dstStep < cbRow)
        return prim_status::badStep;

    const CDivision division(divisor);
    std::uint32_t sums[nPieceSamples];
    for (std::int32_t y = 0; y < size.height; ++y)
        for (std::int64_t at = 0; at < cbRow; at += nPieceSamples) {
            const std::int64_t count = std::min(nPieceSamples, cbRow - at);
            kernel.Convolve(RowAt(pSrc, srcStep, y) + at, sums, count);
            division.Store(sums, RowAt(pDst, dstStep, y) + at, count);
        }
    return prim_status::ok;
}

} // namespace

namespace px {

PrimStatus ippiFilter_8u_C1R(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep, PrimSize size,
                             const std::int32_t* pKernel, PrimSize kernelSize, PrimPoint anchor, std::int32_t divisor) {
    return Filter<1>(pSrc, srcStep, pDst, dstStep, size, {pKernel, kernelSize, anchor, srcStep, 1}, divisor);
}

PrimStatus ippiFilter_8u_C3R(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep, PrimSize size,
                             const std::int32_t* pKernel, PrimSize kernelSize, PrimPoint anchor, std::int32_t divisor) {
    return Filter<3>(pSrc, srcStep, pDst, dstStep, size, {pKernel, kernelSize, anchor, srcStep, 3}, divisor);
}

PrimStatus ippiFilter_8u_C4R(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep, PrimSize size,
                             const std::int32_t* pKernel, PrimSize kernelSize, PrimPoint anchor, std::int32_t divisor) {
    return Filter<4>(pSrc, srcStep, pDst, dstStep, size, {pKernel, kernelSize, anchor, srcStep, 4}, divisor);
}

} // namespace px
} // namespace vellumcaster
