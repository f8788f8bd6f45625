#include "image/mix_kernel.h"

#include "support/kernel_check.h"

#include <gtest/gtest.h>

#include <numeric>

namespace vellumcaster {
namespace {

using namespace testing_support;
using Bytes = std::vector<BYTE>;

BYTE Formula(int dst, int src, int w) { return static_cast<BYTE>((dst * (255 - w) + src * w + 255) >> 8); }

void MixByFormula(BYTE* pDst, Inputs inputs, std::size_t cb) {
    for (std::size_t i = 0; i < cb; ++i)
        pDst[i] = Formula(pDst[i], inputs[0][i], inputs[1][i]);
}

// Each length takes the bytes another way: by lines, by one widest vector, by eight, one by one.
TEST(MixMemory, IsExactForEveryFrameByteOverlayByteAndWeight) {
    constexpr std::size_t n = 256 * 256;
    Bytes dst(n), src(n), want(n), got(n);
    for (std::size_t i = 0; i < n; ++i)
        dst[i] = static_cast<BYTE>(i), src[i] = static_cast<BYTE>(i >> 8);
    for (unsigned w = 0; w < 256; ++w) {
        const Bytes weights(n, static_cast<BYTE>(w));
        for (std::size_t i = 0; i < n; ++i)
            want[i] = Formula(dst[i], src[i], static_cast<int>(w));
        for (const std::size_t cb : {n, std::size_t{32}, std::size_t{16}, std::size_t{8}, std::size_t{7}}) {
            got = dst;
            for (std::size_t at = 0; at < n; at += cb)
                MixMemory(got.data() + at, src.data() + at, weights.data() + at, std::min(cb, n - at));
            ASSERT_EQ(got, want) << "weight " << w << ", " << cb << " bytes at a time";
        }
    }
}

TEST(MixMemory, KeepsToItsBytesAtEveryWidthAndAlignment) {
    const RowKernel kernel = [](BYTE* pDst, Inputs in, std::size_t cb) { MixMemory(pDst, in[0], in[1], cb); };
    EXPECT_EQ(CKernelCheck(MixByFormula, kernel, 2).FirstFailure(), std::nullopt);
}

TEST(MixRow, KeepsToItsBytesWhereverTheNextRowLies) {
    for (const std::ptrdiff_t framePitch : {std::ptrdiff_t{1} << 20, std::ptrdiff_t{-1} << 20}) {
        const RowKernel kernel = [=](BYTE* pDst, Inputs in, std::size_t cb) {
            MixRow(pDst, in[0], in[1], cb, framePitch, 1 << 20);
        };
        EXPECT_EQ(CKernelCheck(MixByFormula, kernel, 2).FirstFailure(), std::nullopt);
    }
}

BYTE ScaledByFormula(std::size_t i, std::size_t cb, unsigned src, unsigned alpha) {
    const unsigned half = i < cb / 8 * 8 ? 128 : 0;
    return static_cast<BYTE>((src * alpha + half) >> 8);
}

TEST(MixScaleWeights, RoundsAllButTheBytesBehindTheLastEight) {
    Bytes weights(256), got(256);
    std::iota(weights.begin(), weights.end(), BYTE{0});
    for (unsigned alpha = 0; alpha < 256; ++alpha)
        for (const std::size_t cb : {256u, 1u})
            for (std::size_t at = 0; at < weights.size(); at += cb) {
                MixScaleWeights(weights.data() + at, got.data(), alpha, 8, cb);
                for (std::size_t i = 0; i < cb; ++i)
                    ASSERT_EQ(got[i], ScaledByFormula(i, cb, weights[at + i], alpha)) << alpha << " " << at + i;
            }
}

TEST(MixScaleWeights, KeepsToItsBytesAtEveryWidthAndAlignment) {
    for (const unsigned alpha : {0u, 1u, 127u, 128u, 255u}) {
        const RowKernel formula = [=](BYTE* pDst, Inputs in, std::size_t cb) {
            for (std::size_t i = 0; i < cb; ++i)
                pDst[i] = ScaledByFormula(i, cb, in[0][i], alpha);
        };
        const RowKernel kernel = [=](BYTE* pDst, Inputs in, std::size_t cb) {
            MixScaleWeights(in[0], pDst, alpha, 8, cb);
        };
        EXPECT_EQ(CKernelCheck(formula, kernel, 1).FirstFailure(), std::nullopt) << alpha;
    }
}

} // namespace
} // namespace vellumcaster
