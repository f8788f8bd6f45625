#include "image/resample_plane.h"
#include "support/allocation_counter.h"
#include "support/guarded_buffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <utility>

namespace vellumcaster {
namespace {

using Bytes = std::vector<BYTE>;
using testing_support::CGuardedBuffer;

TEST(ResampleKernel, WeighsByDistance) {
    const struct {
        ResampleParams params;
        double x, weight;
    } cases[] = {{{0}, 0.5, 1.0},       {{0}, 0.51, 0.0},           {{64}, 0.25, 0.75},        {{64}, 1.0, 0.0},
                 {{65}, 0.0, 0.96025},  {{65}, 1.3, 0.00919},       {{66}, 0.0, 1.0},          {{66}, 0.5, 0.05093},
                 {{67}, 0.0, 0.90669},  {{67}, 0.44, 0.54993},      {{67}, 1.01, 0.0},         {{64, 1}, 0.25, 0.41},
                 {{64, 2}, 0.25, 1.25}, {{64, 3, 128}, 0.25, 0.25}, {{64, 4, 128}, 0.25, 0.75}};
    for (const auto& c : cases) {
        KernelHolder holder;
        ASSERT_EQ(holder.Select(c.params), S_OK);
        EXPECT_NEAR(holder.Eval(c.x), c.weight, 5e-6) << c.params.nKernel << " at " << c.x;
    }
}

TEST(ResampleKernel, IsMadeAnewOnlyWhereItDiffers) {
    const std::pair<ResampleParams, HRESULT> steps[] = {
        {{63}, E_INVALIDARG}, {{64}, S_OK},          {{64, 0, 9}, S_FALSE}, {{68}, E_INVALIDARG}, {{64}, S_FALSE},
        {{65, 1, 1}, S_OK},   {{65, 1, 2}, S_FALSE}, {{65, 3, 128}, S_OK},  {{65, 3, 64}, S_OK}};
    KernelHolder holder;
    for (const auto& [params, hr] : steps)
        EXPECT_EQ(holder.Select(params), hr) << params.nKernel << " " << params.nAdjust << " " << params.nAdjustValue;
}

Bytes Scaled(const Bytes& source, std::size_t dstSize, bool bVertical, std::int32_t nKernel) {
    Bytes out(dstSize);
    const ResampleParams params{nKernel};
    const auto from = static_cast<std::int32_t>(source.size()), to = static_cast<std::int32_t>(dstSize);
    EXPECT_EQ(ResamplePlane(source.data(), out.data(), bVertical ? 1 : from, bVertical ? from : 1, bVertical ? 1 : to,
                            bVertical ? to : 1, 0, 0, &params, nullptr),
              S_OK);
    return out;
}

TEST(ResamplePlane, GivesTheFiguresWorkedOutByHand) {
    const Bytes four{10, 20, 30, 40}, doubled{10, 15, 20, 25, 30, 35, 40, 40};
    const Bytes first{128, 0, 0, 0, 0, 0, 0, 0}, fifth{0, 0, 0, 0, 128, 0, 0, 0}, last{0, 0, 0, 0, 0, 0, 0, 255};
    Bytes middle(80);
    middle[43] = 128;
    const struct {
        Bytes source, scaled;
        bool bVertical;
        std::int32_t nKernel;
    } cases[] = {{four, {10, 20, 20, 30, 40, 40}, false, kernelBox}, // the nearest alone
                 {four, doubled, false, kernelTriangle},
                 {{10, 20}, {10, 17, 20}, true, kernelTriangle}, // less than there are taps
                 {first, {85, 0, 0, 0}, false, kernelTriangle},  // at the edge the rest of the taps has all the weight
                 {fifth, {0, 0, 60, 5}, false, kernelGaussian},  // 5 taps cut to 4
                 {fifth, {0, 5, 58, 5}, true, kernelGaussian},   // and kept
                 {last, {0, 0, 0, 70}, true, kernelGaussian},    // the edge is repeated: 61 and 9
                 {middle, {0, 0, 0, 0, 16, 0, 0, 0}, false, kernelBox}}; // the last of 8 taps
    for (const auto& c : cases)
        EXPECT_EQ(Scaled(c.source, c.scaled.size(), c.bVertical, c.nKernel), c.scaled) << &c - cases;
}

TEST(ResamplePlane, ScalesEveryColumnAndThenEveryRowAlike) {
    const std::array<int, 4> sizes[] = {{1, 1, 3, 3},   {2, 3, 5, 2},  {16, 16, 24, 11}, {37, 21, 5, 60},
                                        {90, 70, 7, 6}, {9, 5, 9, 13}, {13, 6, 29, 6},   {1030, 3, 1029, 4}};
    for (const auto& [srcWidth, srcHeight, dstWidth, dstHeight] : sizes)
        for (const std::int32_t nKernel : {0, 64, 65, 66, 67}) {
            const ResampleParams params{nKernel};
            const int srcPitch = srcWidth + 3, dstPitch = dstWidth + 5;
            CGuardedBuffer source(static_cast<std::size_t>(srcPitch * srcHeight - 3), 1, 7);
            CGuardedBuffer got(static_cast<std::size_t>(dstPitch * dstHeight - 5), 3, 8), want = got;
            std::vector<Bytes> rows(static_cast<std::size_t>(dstHeight));
            for (int x = 0; x < srcWidth; ++x) {
                Bytes column;
                for (int y = 0; y < srcHeight; ++y)
                    column.push_back(source.Data()[y * srcPitch + x]);
                column = Scaled(column, rows.size(), true, nKernel);
                for (std::size_t y = 0; y < rows.size(); ++y)
                    rows[y].push_back(column[y]);
            }
            for (int y = 0; const Bytes& row : rows)
                std::ranges::copy(Scaled(row, static_cast<std::size_t>(dstWidth), false, nKernel),
                                  want.Data() + std::ptrdiff_t{dstPitch} * y++);
            EXPECT_EQ(ResamplePlane(source.Data(), got.Data(), srcWidth, srcHeight, dstWidth, dstHeight, srcPitch,
                                    dstPitch, &params, nullptr),
                      S_OK);
            EXPECT_EQ(got.DifferenceFrom(want).value_or(""), "") << srcWidth << " to " << dstWidth << " by " << nKernel;
        }
}

TEST(ResamplePlane, AnswersInTheOrderOfItsChecks) {
    Bytes source(4096, 9), out(64);
    const ResampleParams params{kernelGaussian}, unknown{1};
    const auto scale = [&](const BYTE* pSrc, int sw, int sh, int dw, int dh, const ResampleParams& p) {
        return ResamplePlane(pSrc, out.data(), sw, sh, dw, dh, 0, 0, &p, nullptr);
    };
    EXPECT_EQ(scale(nullptr, 0, 0, 0, 0, params), E_POINTER);
    EXPECT_EQ(scale(source.data(), 0, 4, 0, 4, unknown), E_INVALIDARG);
    EXPECT_EQ(scale(source.data(), 4, 4, 8, 4, unknown), E_INVALIDARG);
    EXPECT_EQ(scale(source.data(), 4, 4, 0, 0, unknown), S_OK); // a copy asks no kernel
    EXPECT_EQ(scale(source.data(), 1, 4096, 1, 1, params), E_FAIL);
}

TEST(ResamplePlane, AnswersWhenAnyOfItsMemoryIsLacking) {
    if (!testing_support::CFailingAllocation::IsAvailable()) GTEST_SKIP() << "the sanitizer owns the allocator";
    const Bytes source(16);
    Bytes out(36);
    const ResampleParams params{kernelGaussian};
    HRESULT hr = E_OUTOFMEMORY;
    for (std::size_t nth = 0; hr == E_OUTOFMEMORY; ++nth) {
        const testing_support::CFailingAllocation failure(nth);
        hr = ResamplePlane(source.data(), out.data(), 4, 4, 6, 6, 0, 0, &params, nullptr);
        EXPECT_EQ(hr, failure.HasFailed() ? E_OUTOFMEMORY : S_OK) << nth;
    }
}

} // namespace
} // namespace vellumcaster
