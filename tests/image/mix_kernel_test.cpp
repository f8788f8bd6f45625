#include "image/mix_kernel.h"

#include "support/kernel_check.h"

#include <gtest/gtest.h>

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

TEST(MixRow, KeepsToItsBytesAtEveryWidthAndAlignmentWhereverTheNextRowLies) {
    for (const int framePitch : {1 << 20, -1 << 20}) {
        const RowKernel kernel = [=](BYTE* pDst, Inputs in, std::size_t cb) {
            MixRow(pDst, in[0], in[1], cb, framePitch, 1 << 20);
        };
        EXPECT_EQ(CKernelCheck(MixByFormula, kernel, 2).FirstFailure(), std::nullopt);
    }
}

TEST(MixScaleWeights, RoundsAllButTheBytesBehindTheLastEightAndKeepsToThem) {
    for (const unsigned alpha : {0u, 1u, 77u, 127u, 128u, 254u, 255u}) {
        const RowKernel formula = [=](BYTE* pDst, Inputs in, std::size_t cb) {
            for (std::size_t i = 0; i < cb; ++i)
                pDst[i] = static_cast<BYTE>((in[0][i] * alpha + (i < cb / 8 * 8 ? 128 : 0)) >> 8);
        };
        const RowKernel kernel = [=](BYTE* pDst, Inputs in, std::size_t cb) {
            MixScaleWeights(in[0], pDst, alpha, 8, cb);
        };
        EXPECT_EQ(CKernelCheck(formula, kernel, 1).FirstFailure(), std::nullopt) << alpha;
    }
}

} // namespace
} // namespace vellumcaster
