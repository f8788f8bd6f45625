#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"
#include "support/allocation_counter.h"
#include "support/guarded_buffer.h"
#include "support/page_buffer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <utility>

namespace vellumcaster {
namespace {

using testing_support::CGuardedBuffer;

constexpr double tiny = 1e-7;
constexpr double infinite = std::numeric_limits<double>::infinity();

prim_signature::Resize* MemberFor(std::int32_t channels) {
    return channels == 1 ? px::ippiResize_8u_C1R : channels == 3 ? px::ippiResize_8u_C3R : px::ippiResize_8u_C4R;
}

struct ScaleCase {
    std::int32_t channels = 1;
    PrimSize srcSize{8, 8};
    std::int32_t srcStep = 8;
    PrimRect roi{0, 0, 8, 8};
    std::int32_t dstStep = 8;
    PrimSize dstSize{8, 8};
    double xFactor = 1;
    double yFactor = 1;
    std::int32_t interpolation = interpolationLinear;

    PrimStatus Run(const BYTE* pSrc, BYTE* pDst) const {
        return MemberFor(channels)(pSrc, srcSize, srcStep, roi, pDst, dstStep, dstSize, xFactor, yFactor,
                                   interpolation);
    }
};

std::ostream& operator<<(std::ostream& os, const ScaleCase& c) {
    return os << c.channels << " channels, " << c.srcSize.width << " x " << c.srcSize.height << " by " << c.xFactor
              << ", " << c.yFactor << ", interpolation " << c.interpolation;
}

constexpr std::int32_t interpolations[] = {interpolationNearest, interpolationLinear, interpolationCubic,
                                           interpolationSuper};

// ---- the definition, pixel by pixel

struct AxisModel {
    std::int32_t source, origin, region, output;
    double factor;

    AxisModel(std::int32_t size, std::int32_t at, std::int32_t length, std::int32_t target, double f)
        : source(size), origin(at), region(std::min(length, size - at)), factor(f) {
        const double scaled = std::floor(region * factor + tiny);
        output = scaled < target ? std::max(static_cast<std::int32_t>(scaled), 1) : target;
    }

    /// Where an output lies from the start of the region, and the pixel there.
    [[nodiscard]] std::pair<double, std::int32_t> At(std::int32_t k, bool bNearest) const {
        double step = bNearest ? 1 / factor : 0;
        if (!bNearest && region * factor > 1) step = (region - 1) / (region * factor - 1);
        double position = bNearest ? step / 2 : 0;
        for (std::int32_t i = 0; i < k; ++i)
            position += step;
        return {position, static_cast<std::int32_t>(std::min(position + tiny, source - origin - 1.0))};
    }

    struct Tap {
        std::int32_t index;
        std::int32_t upper; ///< of 16384, on the pixel behind
    };
    [[nodiscard]] Tap LinearAt(std::int32_t k) const {
        const auto [position, i] = At(k, false);
        if (i == source - origin - 1) return {origin + i - 1, 16384};
        return {origin + i, static_cast<std::int32_t>((position - i) * 16384 + tiny)};
    }

    [[nodiscard]] std::pair<std::int32_t, float> CubicAt(std::int32_t k) const {
        const auto [position, relative] = At(k, false);
        const std::int32_t i = relative + origin;
        if (i == source - 1) return {i - 2, 2.0F};
        const std::int32_t inner = std::clamp(i, 1, source - 3);
        return {inner, static_cast<float>(position - (inner - origin))};
    }

    /// The source pixels of an output and their weights.
    using Shares = std::vector<std::pair<std::int32_t, float>>;
    [[nodiscard]] std::vector<Shares> Areas() const {
        const double ratio = std::min(1 / factor, double(region));
        std::vector<Shares> areas;
        std::int32_t current = 0;
        double f = 0;
        for (std::int32_t k = 0; k < output; ++k) {
            Shares& shares = areas.emplace_back();
            const auto add = [&](double weight) {
                if (current < region) shares.emplace_back(origin + current, static_cast<float>(weight));
            };
            double r = ratio;
            if (k > 0) {
                const double a = 1 - f;
                if (a > tiny) add(a);
                ++current;
                r -= a;
            }
            const auto n = static_cast<std::int32_t>(k > 0 ? r + tiny : r);
            for (std::int32_t i = 0; i < n; ++i, ++current)
                add(1);
            f = r - n;
            if (k > 0 ? f > tiny : f != 0) add(f);
        }
        return areas;
    }
    [[nodiscard]] double AreaFactor() const { return std::max(factor, 1.0 / region); }
};

float Newton(float p0, float p1, float p2, float p3, float t) {
    const float d1 = p1 - p0;
    const float d2 = p2 - p1 - d1;
    const float d3 = p1 - 2 * p2 + p3 - d2;
    const float c1 = 1 + t;
    const float c2 = t * c1 / 2;
    const float c3 = (t - 1) * c2 / 3;
    return p0 + d1 * c1 + d2 * c2 + d3 * c3;
}

class CScaleModel {
public:
    CScaleModel(const ScaleCase& c, const BYTE* pSrc)
        : m_Case(c),
          m_pSrc(pSrc),
          m_X(c.srcSize.width, c.roi.x, c.roi.width, c.dstSize.width, c.xFactor),
          m_Y(c.srcSize.height, c.roi.y, c.roi.height, c.dstSize.height, c.yFactor),
          m_XAreas(m_X.Areas()),
          m_YAreas(m_Y.Areas()) {
        const std::int32_t side = std::min(c.srcSize.width, c.srcSize.height);
        m_nMode = c.interpolation;
        if (m_nMode == interpolationCubic && side < 4) m_nMode = interpolationLinear;
        if (m_nMode != interpolationSuper && side < 2) m_nMode = interpolationNearest;
    }

    void Write(BYTE* pDst) const {
        for (std::int32_t row = 0; row < m_Y.output; ++row)
            for (std::int32_t k = 0; k < m_X.output; ++k)
                for (std::int32_t c = 0; c < m_Case.channels; ++c)
                    pDst[std::ptrdiff_t{row} * m_Case.dstStep + std::ptrdiff_t{k} * m_Case.channels + c] =
                        Sample(k, row, c);
    }

private:
    [[nodiscard]] BYTE Source(std::int32_t column, std::int32_t row, std::int32_t c) const {
        return m_pSrc[std::ptrdiff_t{row} * m_Case.srcStep + std::ptrdiff_t{column} * m_Case.channels + c];
    }

    [[nodiscard]] BYTE Sample(std::int32_t k, std::int32_t row, std::int32_t c) const {
        switch (m_nMode) {
        case interpolationNearest:
            return Source(m_X.origin + m_X.At(k, true).second, m_Y.origin + m_Y.At(row, true).second, c);
        case interpolationLinear: return LinearSample(k, row, c);
        case interpolationCubic: return CubicSample(k, row, c);
        default: return AreaSample(k, row, c);
        }
    }

    [[nodiscard]] BYTE LinearSample(std::int32_t k, std::int32_t row, std::int32_t c) const {
        const auto i = m_X.LinearAt(k);
        const auto j = m_Y.LinearAt(row);
        const auto h = [&](std::int32_t at) {
            return (i.upper * Source(i.index + 1, at, c) + (16384 - i.upper) * Source(i.index, at, c) + 128) >> 8;
        };
        return static_cast<BYTE>((j.upper * h(j.index + 1) + (16384 - j.upper) * h(j.index) + 0x80000) >> 20);
    }

    [[nodiscard]] BYTE CubicSample(std::int32_t k, std::int32_t row, std::int32_t c) const {
        const auto [i, tx] = m_X.CubicAt(k);
        const auto [j, ty] = m_Y.CubicAt(row);
        float h[4];
        for (std::int32_t n = 0; n < 4; ++n)
            h[n] = Newton(Source(i - 1, j - 1 + n, c), Source(i, j - 1 + n, c), Source(i + 1, j - 1 + n, c),
                          Source(i + 2, j - 1 + n, c), tx);
        const double value = std::trunc(double{Newton(h[0], h[1], h[2], h[3], ty)} + tiny);
        return static_cast<BYTE>(std::clamp(value, 0.0, 255.0));
    }

    [[nodiscard]] BYTE AreaSample(std::int32_t k, std::int32_t row, std::int32_t c) const {
        float sum = 0;
        for (const auto& [x, xWeight] : m_XAreas[static_cast<std::size_t>(k)]) {
            float columnSum = 0;
            for (const auto& [y, yWeight] : m_YAreas[static_cast<std::size_t>(row)])
                columnSum += yWeight * static_cast<float>(Source(x, y, c));
            sum += xWeight * columnSum;
        }
        return static_cast<BYTE>(std::min(sum * (m_X.AreaFactor() * m_Y.AreaFactor()) + 0.5, 255.0));
    }

    const ScaleCase& m_Case;
    const BYTE* m_pSrc;
    AxisModel m_X;
    AxisModel m_Y;
    std::vector<AxisModel::Shares> m_XAreas;
    std::vector<AxisModel::Shares> m_YAreas;
    std::int32_t m_nMode;
};

void ExpectDefinition(const ScaleCase& c, std::uint64_t seed) {
    const auto cb = static_cast<std::size_t>((c.srcSize.height - 1) * c.srcStep + c.srcSize.width * c.channels);
    testing_support::CPageBuffer pages(cb / cbPage + 1); // at an edge of it, so that a read beyond it faults
    BYTE* pSource = seed % 2 == 0 ? pages.Begin() : pages.End() - cb;
    testing_support::FillRandom({pSource, cb}, seed);
    CGuardedBuffer got(static_cast<std::size_t>(c.dstStep) * static_cast<std::size_t>(c.dstSize.height), 0, seed + 1);
    CGuardedBuffer want = got;
    CScaleModel(c, pSource).Write(want.Data());
    ASSERT_EQ(c.Run(pSource, got.Data()), prim_status::ok) << c;
    ASSERT_EQ(got.DifferenceFrom(want), std::nullopt) << "seed " << seed << ": " << c;
}

/// Whole and broken factors, those of sizes that people scale to, and some that no picture has.
double PickFactor(std::mt19937_64& random, std::int32_t region, bool bShrink) {
    const auto pick = [&](std::int32_t from, std::int32_t to) {
        return std::uniform_int_distribution<std::int32_t>(from, to)(random);
    };
    switch (pick(0, 11)) {
    case 0: return 1.0 / pick(1, 20);
    case 1: return 1.0 / 49; // whose inverse just misses 49
    case 2: return bShrink ? 1 : pick(1, 6);
    case 3: return std::uniform_real_distribution<double>(0.01, bShrink ? 1 : 4)(random);
    case 4: return 1 - 1e-8;
    case 5: return bShrink ? 0.5 + 1e-9 : 1e300;
    case 6: return bShrink ? 1e-300 : infinite;
    case 7: return std::numeric_limits<double>::denorm_min();
    default: return static_cast<double>(pick(1, bShrink ? region : 3 * region)) / region;
    }
}

TEST(ResizePrimitive, ScalesLikeTheDefinition) {
    const std::uint64_t seed = testing_support::FreshSeed();
    std::mt19937_64 random(seed);
    const auto pick = [&](std::int32_t from, std::int32_t to) {
        return std::uniform_int_distribution<std::int32_t>(from, to)(random);
    };
    for (std::int32_t n = 0; n < 3000; ++n) {
        ScaleCase c;
        constexpr std::int32_t channelCounts[] = {1, 3, 4};
        c.channels = channelCounts[pick(0, 2)];
        c.interpolation = interpolations[pick(0, 3)];
        const std::int32_t largest = n % 4 == 0 ? 6 : 70;
        c.srcSize = {pick(1, largest), pick(1, largest)};
        c.srcStep = c.srcSize.width * c.channels + pick(0, 5);
        c.roi.x = n % 2 == 0 ? 0 : pick(0, c.srcSize.width - 1);
        c.roi.y = n % 2 == 0 ? 0 : pick(0, c.srcSize.height - 1);
        c.roi.width = n % 3 == 0 ? std::numeric_limits<std::int32_t>::max() : pick(1, c.srcSize.width);
        c.roi.height = n % 3 == 0 ? c.srcSize.height : pick(1, c.srcSize.height);
        const bool bShrink = c.interpolation == interpolationSuper;
        c.xFactor = PickFactor(random, std::min(c.roi.width, c.srcSize.width - c.roi.x), bShrink);
        c.yFactor = PickFactor(random, std::min(c.roi.height, c.srcSize.height - c.roi.y), bShrink);
        c.dstSize = {pick(1, 150), pick(1, 100)};
        c.dstStep = c.dstSize.width * c.channels + pick(0, 5);
        ASSERT_NO_FATAL_FAILURE(ExpectDefinition(c, seed + static_cast<std::uint64_t>(n)));
    }
}

// clang-format off
constexpr PrimSize wholeRatios[] = {{2, 2},   {16, 16}, {3, 3},     {4, 1}, {1, 5}, {32, 8}, {300, 2},
                                    {2, 257}, {2, 258}, {256, 257}, {1100, 1}};
// clang-format on

TEST(ResizePrimitive, AveragesWholeBlocksLikeTheDefinition) {
    for (const std::int32_t channels : {1, 3, 4})
        for (const PrimSize ratio : wholeRatios)
            for (const std::int32_t nColumns : {1, 2, 35}) {
                const PrimSize source{ratio.width * nColumns + 1, ratio.height * 2 + 1};
                const ScaleCase c{.channels = channels,
                                  .srcSize = source,
                                  .srcStep = source.width * channels,
                                  .roi = {1, 1, source.width, source.height},
                                  .dstStep = (nColumns + 1) * channels,
                                  .dstSize = {nColumns + 1, 3},
                                  .xFactor = 1.0 / ratio.width,
                                  .yFactor = 1.0 / ratio.height,
                                  .interpolation = interpolationSuper};
                ASSERT_NO_FATAL_FAILURE(ExpectDefinition(c, 1));
            }
}

TEST(ResizePrimitive, ChecksItsArgumentsInOrder) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const std::pair<ScaleCase, PrimStatus> rows[] = {
        {{.srcSize = {0, 8}, .srcStep = 0}, prim_status::badSize},
        {{.srcSize = {8, 0}}, prim_status::badSize},
        {{.srcStep = 0}, prim_status::badStep},
        {{.roi = {-1, 0, 8, 8}, .dstStep = 0}, prim_status::badStep},
        {{.roi = {-1, 9, 8, 8}}, prim_status::badSize},
        {{.roi = {0, -1, 8, 8}}, prim_status::badSize},
        {{.roi = {8, 0, 0, 8}}, prim_status::badSize},
        {{.roi = {0, 0, 8, 0}}, prim_status::badSize},
        {{.roi = {8, 0, 8, 8}, .dstSize = {0, 0}}, prim_status::wrongRoi},
        {{.roi = {0, 8, 8, 8}}, prim_status::wrongRoi},
        {{.dstSize = {0, 8}, .xFactor = 0}, prim_status::badSize},
        {{.dstSize = {8, 0}}, prim_status::badSize},
        {{.xFactor = 0, .interpolation = 16}, prim_status::badFactor},
        {{.yFactor = -1}, prim_status::badFactor},
        {{.yFactor = nan}, prim_status::badFactor},
        {{.xFactor = 1.01, .interpolation = interpolationSuper}, prim_status::badInterpolation},
        {{.yFactor = 1.01, .interpolation = interpolationSuper}, prim_status::badInterpolation},
        {{.interpolation = 16}, prim_status::badInterpolation},
    };
    const std::vector<BYTE> source(256, 1);
    for (const std::int32_t channels : {1, 3, 4}) {
        for (auto [c, status] : rows) {
            c.channels = channels;
            std::vector<BYTE> target(256, 2);
            EXPECT_EQ(c.Run(source.data(), target.data()), status) << c;
            EXPECT_EQ(target, std::vector<BYTE>(256, 2)) << c;
        }
        BYTE target = 0;
        const ScaleCase without{.channels = channels, .srcSize = {0, 0}};
        EXPECT_EQ(without.Run(nullptr, &target), prim_status::nullPointer);
        EXPECT_EQ(without.Run(source.data(), nullptr), prim_status::nullPointer);
    }
}

TEST(ResizePrimitive, WritesNothingWithoutMemory) {
    using testing_support::CFailingAllocation;
    if (!CFailingAllocation::IsAvailable()) GTEST_SKIP() << "allocations cannot be made to fail here";
    const std::vector<BYTE> source(64, 1);
    for (const std::int32_t interpolation : interpolations) {
        const ScaleCase c{.xFactor = 0.7, .yFactor = 0.7, .interpolation = interpolation};
        PrimStatus status = prim_status::noMemory;
        for (std::size_t nth = 0; status != prim_status::ok; ++nth) {
            std::vector<BYTE> target(64, 2);
            const CFailingAllocation failing(nth);
            status = c.Run(source.data(), target.data());
            ASSERT_EQ(status, failing.HasFailed() ? prim_status::noMemory : prim_status::ok) << c << ", " << nth;
            ASSERT_EQ(target[0] == 2, failing.HasFailed());
        }
    }
}

} // namespace
} // namespace vellumcaster
