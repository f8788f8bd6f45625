#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"
#include "support/guarded_buffer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace vellumcaster {
namespace {

using testing_support::CGuardedBuffer;

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

struct Member {
    std::int32_t channels;
    prim_signature::Filter* pFilter;
};
constexpr Member members[] = {{1, px::ippiFilter_8u_C1R}, {3, px::ippiFilter_8u_C3R}, {4, px::ippiFilter_8u_C4R}};

BYTE Divided(std::int64_t exactSum, std::int32_t divisor) {
    const auto sum = static_cast<std::int32_t>(exactSum & 0xFFFFFFFF);
    if (divisor == 1) return static_cast<BYTE>(std::clamp(sum, 0, 255));
    if (divisor > 0 && std::exp2(std::round(std::log2(divisor))) == divisor) {
        if (sum < 1) return 0;
        return static_cast<BYTE>(std::min<std::int64_t>((std::int64_t{sum} + divisor / 2) / divisor, 255));
    }
    const double value = sum * static_cast<double>(static_cast<float>(1.0 / divisor));
    return value <= 0 ? BYTE{0} : static_cast<BYTE>(std::min(std::floor(value + 0.5), 255.0));
}

TEST(Filter, ConvolvesLikeTheDefinition) {
    const std::uint64_t seed = testing_support::FreshSeed();
    std::mt19937_64 random(seed);
    const auto pick = [&](std::int32_t from, std::int32_t to) {
        return std::uniform_int_distribution<std::int32_t>(from, to)(random);
    };
    for (std::int32_t n = 0; n < 300; ++n) {
        const Member& member = members[n % 3];
        const PrimSize size{n % 20 == 0 ? pick(500, 600) : pick(1, 40), pick(1, 5)};
        const PrimSize kernelSize{pick(1, 4), pick(1, 4)};
        const PrimPoint anchor{pick(0, kernelSize.width - 1), pick(0, kernelSize.height - 1)};
        const std::int32_t divisors[] = {1, 2, 4, 1 << 20, 1 << 30, 3, 9, 47, -3, highest, lowest};
        const std::int32_t divisor = divisors[pick(0, 10)];
        const std::int32_t largest = n % 7 == 0 ? highest : 60;
        std::vector<std::int32_t> kernel(16);
        for (std::int32_t& weight : kernel)
            weight = pick(-largest, largest);

        const std::int32_t rowPixels = size.width + kernelSize.width - 1;
        const std::int32_t srcStep = rowPixels * member.channels + pick(0, 3);
        const std::int32_t dstStep = size.width * member.channels + pick(0, 3);
        const std::int32_t nRows = size.height + kernelSize.height - 1;
        CGuardedBuffer source(static_cast<std::size_t>(srcStep * nRows), 0, seed);
        CGuardedBuffer got(static_cast<std::size_t>(dstStep * size.height), 0, seed + 1);
        CGuardedBuffer want = got;
        const std::ptrdiff_t left = kernelSize.width - 1 - anchor.x;
        const std::ptrdiff_t above = kernelSize.height - 1 - anchor.y;
        const BYTE* pFirst = source.Data() + above * srcStep + left * member.channels;
        for (std::ptrdiff_t y = 0; y < size.height; ++y)
            for (std::ptrdiff_t x = 0; x < size.width; ++x)
                for (std::int32_t c = 0; c < member.channels; ++c) {
                    std::int64_t sum = 0;
                    const std::int32_t* pWeight = kernel.data();
                    for (std::int32_t j = 0; j < kernelSize.height; ++j)
                        for (std::int32_t i = 0; i < kernelSize.width; ++i)
                            sum += std::int64_t{*pWeight++} *
                                   pFirst[(y + anchor.y - j) * srcStep + (x + anchor.x - i) * member.channels + c];
                    want.Data()[y * dstStep + x * member.channels + c] = Divided(sum, divisor);
                }
        const PrimStatus status =
            member.pFilter(pFirst, srcStep, got.Data(), dstStep, size, kernel.data(), kernelSize, anchor, divisor);
        ASSERT_EQ(status, prim_status::ok);
        ASSERT_EQ(got.DifferenceFrom(want), std::nullopt) << "seed " << seed << ", case " << n;
    }
}

TEST(Filter, ChecksItsArgumentsInOrder) {
    struct Call {
        PrimStatus status;
        PrimSize size{2, 2};
        PrimSize kernel{3, 1};
        std::int32_t divisor = 1;
        std::int32_t srcPixels = 4; ///< in a step
        std::int32_t dstPixels = 2;
    };
    const Call calls[] = {{prim_status::nullPointer, {0, 0}},
                          {prim_status::badSize, {0, 2}, {3, 1}, 0},
                          {prim_status::badSize, {2, 0}},
                          {prim_status::badSize, {2, 2}, {0, 1}},
                          {prim_status::badSize, {2, 2}, {3, 0}},
                          {prim_status::badDivisor, {2, 2}, {3, 1}, 0, 0},
                          {prim_status::badStep, {2, 2}, {3, 1}, 1, 3},
                          {prim_status::badStep, {2, 2}, {3, 1}, 1, 4, 1},
                          {prim_status::badStep, {highest, 1}, {highest, 1}},
                          {prim_status::ok}};
    const BYTE source[2 * 16] = {};
    const std::int32_t kernel[3] = {};
    for (const Member& member : members)
        for (const Call& call : calls) {
            BYTE target[2 * 8];
            EXPECT_EQ(member.pFilter(source, call.srcPixels * member.channels, target, call.dstPixels * member.channels,
                                     call.size, call.status == prim_status::nullPointer ? nullptr : kernel, call.kernel,
                                     {2, 0}, call.divisor),
                      call.status);
        }
}

} // namespace
} // namespace vellumcaster
