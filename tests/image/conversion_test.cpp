#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"
#include "support/random_bytes.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace vellumcaster {
namespace {

using namespace prim_status;

/// Buffers that any of the primitives can be called with.
struct Buffers {
    BYTE packed[256] = {};
    std::uint16_t words[128] = {};
    BYTE planes[3][64] = {};
    BYTE* ppPlanes[3] = {planes[0], planes[1], planes[2]};
    std::int32_t steps[3] = {8, 4, 4};

    [[nodiscard]] const BYTE* const* Source() const { return ppPlanes; }
};

/// One way to call a primitive wrongly.
struct Wrong {
    PrimSize size{4, 2};
    std::int32_t packedStep = 16;
    std::int32_t planeStep = 4; ///< of P2
    bool bNull = false;
};

using Call = std::function<PrimStatus(Buffers&, const Wrong&)>;

template <class Primitive>
Call FromPlanes(Primitive* p) {
    return [p](Buffers& b, const Wrong& w) {
        b.steps[2] = w.planeStep;
        if (w.bNull) b.ppPlanes[2] = nullptr;
        if constexpr (std::is_same_v<Primitive, prim_signature::PlanesToWords>)
            return p(b.Source(), b.steps, b.words, w.packedStep, w.size);
        else
            return p(b.Source(), b.steps, b.packed, w.packedStep, w.size);
    };
}
Call ToPlanes(prim_signature::BytesToPlanes* p) {
    return [p](Buffers& b, const Wrong& w) {
        b.steps[2] = w.planeStep;
        if (w.bNull) b.ppPlanes[2] = nullptr;
        return p(b.packed, w.packedStep, b.ppPlanes, b.steps, w.size);
    };
}
template <class Primitive>
Call Packed(Primitive* p) {
    return [p](Buffers& b, const Wrong& w) {
        auto* pDst = [&] {
            if constexpr (std::is_same_v<Primitive, prim_signature::BytesToWords>)
                return b.words;
            else
                return b.packed + 128;
        }();
        if constexpr (std::is_same_v<Primitive, prim_signature::BytesToBytesWithAlpha>)
            return p(b.packed, 16, w.bNull ? nullptr : pDst, w.packedStep, w.size, 0);
        else
            return p(b.packed, 16, w.bNull ? nullptr : pDst, w.packedStep, w.size);
    };
}

enum class StepCheck { none, positive, wholeRows };

TEST(Conversion, ChecksItsArgumentsInOrder) {
    const struct {
        Call call;
        PrimSize smallest;
        StepCheck steps;
    } primitives[] = {
        {FromPlanes(px::ippiYUV420ToRGB_8u_P3AC4R), {1, 1}, StepCheck::positive},
        {FromPlanes(px::ippiYCbCr420ToRGB_8u_P3C3R), {1, 1}, StepCheck::positive},
        {FromPlanes(px::ippiYCbCr420ToRGB565_8u16u_P3C3R), {1, 1}, StepCheck::none},
        {FromPlanes(px::ippiYCbCr420ToRGB555_8u16u_P3C3R), {1, 1}, StepCheck::none},
        {FromPlanes(px::ippiYCrCb420ToCbYCr422_8u_P3C2R), {2, 2}, StepCheck::none},
        {FromPlanes(px::ippiYCrCb420ToYCbCr422_8u_P3C2R), {2, 2}, StepCheck::none},
        {FromPlanes(px::ippiYCbCr422_8u_P3C2R), {2, 1}, StepCheck::wholeRows},
        {Packed(px::ippiRGBToYCbCr422_8u_C3C2R), {1, 1}, StepCheck::positive},
        {ToPlanes(px::ippiRGBToYCbCr420_8u_C3P3R), {1, 1}, StepCheck::positive},
        {Packed(px::ippiBGRToCbYCr422_8u_AC4C2R), {1, 1}, StepCheck::none},
        {ToPlanes(px::ippiYCbCr422To420_8u_C2P3R), {2, 2}, StepCheck::none},
        {ToPlanes(px::ippiCbYCr422To420_8u_C2P3R), {2, 2}, StepCheck::none},
        {ToPlanes(px::ippiYCbCr422_8u_C2P3R), {2, 1}, StepCheck::wholeRows},
        {Packed(px::ippiYCbCr422ToRGB555_8u16u_C2C3R), {1, 1}, StepCheck::positive},
        {Packed(px::ippiYCbCr422ToRGB565_8u16u_C2C3R), {1, 1}, StepCheck::positive},
        {Packed(px::ippiYCbCr422ToRGB_8u_C2C3R), {1, 1}, StepCheck::positive},
        {Packed(px::ippiCbYCr422ToBGR_8u_C2C4R), {1, 1}, StepCheck::none},
    };
    for (std::size_t i = 0; i < std::size(primitives); ++i) {
        const auto& p = primitives[i];
        const auto status = [&p](const Wrong& wrong) {
            Buffers buffers;
            return p.call(buffers, wrong);
        };
        SCOPED_TRACE(i);
        EXPECT_EQ(status({}), ok);
        EXPECT_EQ(status({.size = p.smallest}), ok);
        EXPECT_EQ(status({.size = {0, 0}, .packedStep = 0, .bNull = true}), nullPointer);
        EXPECT_EQ(status({.size = {p.smallest.width - 1, 2}}), badSize);
        EXPECT_EQ(status({.size = {4, p.smallest.height - 1}}), badSize);
        const bool bStepsFirst = p.steps == StepCheck::wholeRows;
        EXPECT_EQ(status({.size = {0, 2}, .packedStep = 0}), bStepsFirst ? badStep : badSize);
        EXPECT_EQ(status({.packedStep = 0}), p.steps == StepCheck::none ? ok : badStep);
        if (bStepsFirst) {
            EXPECT_EQ(status({.planeStep = 0}), badStep);
            EXPECT_EQ(status({.planeStep = 1}), badStride);
            EXPECT_EQ(status({.packedStep = 7}), badStride);
            EXPECT_EQ(status({.size = {9, 1}, .packedStep = 32}), badStride);
            EXPECT_EQ(status({.size = {5, 0}}), badSize);
        }
    }
}

TEST(Conversion, RoundsOnlyTheWholeBlocksOfTheFullRangeMember) {
    // Byte 0 is 100 - 2 * 1.140 = 97.72, byte 1 is 100 + 2 * 0.581 + 0.394 = 101.56, byte 2 is 100 - 2.032 = 97.97.
    const BYTE y[3][3] = {{100, 100, 100}, {100, 100, 100}, {100, 100, 100}};
    const BYTE p1[2][2] = {{127, 127}, {127, 127}};
    const BYTE p2[2][2] = {{126, 126}, {126, 126}};
    const BYTE* planes[] = {y[0], p1[0], p2[0]};
    const std::int32_t steps[] = {3, 2, 2};
    BYTE out[3][12] = {};
    ASSERT_EQ(px::ippiYUV420ToRGB_8u_P3AC4R(planes, steps, out[0], 12, {3, 3}), ok);
    for (int row = 0; row < 3; ++row)
        for (int x = 0; x < 3; ++x) {
            const bool bWhole = row < 2 && x < 2;
            const BYTE* pPixel = out[row] + 4 * x;
            EXPECT_EQ(pPixel[0], bWhole ? 98 : 97);
            EXPECT_EQ(pPixel[1], bWhole ? 102 : 101);
            EXPECT_EQ(pPixel[2], bWhole ? 98 : 97);
            EXPECT_EQ(pPixel[3], 0);
        }
}

TEST(Conversion, LendsTheLastPixelOfAnOddRowTheChromaOfThePairBefore) {
    // The third pixel has Y 100, U 90 and, from the first pair, V 240.
    const BYTE luma[] = {100, 50, 100, 240, 100, 90};
    const BYTE chroma[] = {50, 100, 240, 100, 90, 100};
    BYTE three[9], one[3], four[12];
    ASSERT_EQ(px::ippiYCbCr422ToRGB_8u_C2C3R(luma, 6, three, 9, {3, 1}), ok);
    const BYTE pair[] = {100, 90, 100, 240};
    BYTE same[6];
    ASSERT_EQ(px::ippiYCbCr422ToRGB_8u_C2C3R(pair, 4, same, 6, {2, 1}), ok);
    EXPECT_TRUE(std::equal(three + 6, three + 9, same));

    // One pixel alone has its one chroma byte for both.
    const BYTE both[] = {100, 90, 100, 90};
    ASSERT_EQ(px::ippiYCbCr422ToRGB_8u_C2C3R(both, 4, same, 6, {2, 1}), ok);
    ASSERT_EQ(px::ippiYCbCr422ToRGB_8u_C2C3R(both, 4, one, 3, {1, 1}), ok);
    EXPECT_TRUE(std::equal(one, one + 3, same));

    ASSERT_EQ(px::ippiCbYCr422ToBGR_8u_C2C4R(chroma, 6, four, 12, {3, 1}, 7), ok);
    // L = 84 * 76282 = 6407688; blue (6407688 - 38 * 132184 + 32768) >> 16 = 21, green (6407688 + 38 * 25689 -
    // 112 * 53279 + 32768) >> 16 = 22, red (6407688 + 112 * 104593 + 32768) >> 16 = 277, limited.
    EXPECT_TRUE(four[8] == 21 && four[9] == 22 && four[10] == 255 && four[11] == 7)
        << int{four[8]} << " " << int{four[9]} << " " << int{four[10]};
    std::uint16_t words[2] = {0, 0xABCD};
    ASSERT_EQ(px::ippiYCbCr422ToRGB565_8u16u_C2C3R(both, 4, words, 2, {1, 1}), ok);
    EXPECT_EQ(words[0], one[0] >> 3 | one[1] >> 2 << 5 | one[2] >> 3 << 11);
    EXPECT_EQ(words[1], 0xABCD);
}

TEST(Conversion, WritesHalfAGroupForTheLastPixelOfAnOddRow) {
    const BYTE bgr[] = {200, 100, 50, 200, 100, 50, 200, 100, 50};
    BYTE out[6] = {};
    ASSERT_EQ(px::ippiRGBToYCbCr422_8u_C3C2R(bgr, 9, out, 6, {3, 1}), ok);
    // Y0 (16843 * 200 + 33030 * 100 + 6423 * 50 + 0x108000) >> 16 = 123, Y1 with 0x100000 = 122;
    // C1 (-9699 * 400 - 19071 * 200 + 28770 * 100 + 0x1010000) >> 17 = 91, C2 (28770 * 400 - 24117 * 200 - 4653 * 100
    // + 0x1010000) >> 17 = 175.
    const BYTE want[] = {123, 91, 122, 175, 123, 91};
    EXPECT_TRUE(std::equal(out, out + 6, want)) << int{out[0]} << " " << int{out[1]} << " " << int{out[2]} << " "
                                                << int{out[3]} << " " << int{out[4]} << " " << int{out[5]};

    BYTE luma[9] = {}, p1[4] = {}, p2[4] = {};
    BYTE* planes[] = {luma, p1, p2};
    const std::int32_t steps[] = {3, 2, 2};
    const BYTE black[3][9] = {};
    ASSERT_EQ(px::ippiRGBToYCbCr420_8u_C3P3R(black[0], 9, planes, steps, {3, 3}), ok);
    // Blocks of four, two and one have constants of their own: 33587200 >> 18, 16793600 >> 17, 0x808000 >> 16.
    for (const BYTE chroma : {p1[0], p1[1], p1[2], p1[3], p2[0], p2[3]})
        EXPECT_EQ(chroma, 128);
}

TEST(Conversion, GivesTheSameSamplesAtEveryWidth) {
    std::vector<BYTE> pixels(4 * 70);
    testing_support::FillRandom(pixels, testing_support::FreshSeed());
    std::vector<BYTE> single(2 * 70 + 2);
    for (std::int32_t x = 0; x < 70; x += 2) // pair by pair, where no vector fits
        ASSERT_EQ(px::ippiBGRToCbYCr422_8u_AC4C2R(pixels.data() + 4 * x, 8, single.data() + 2 * x, 4, {2, 1}), ok);
    for (std::int32_t width = 1; width <= 70; ++width) {
        std::vector<BYTE> row(2 * 70 + 2, 0xEE);
        ASSERT_EQ(px::ippiBGRToCbYCr422_8u_AC4C2R(pixels.data(), 280, row.data(), 140, {width, 1}), ok);
        const auto nWhole = static_cast<std::ptrdiff_t>(2 * (width & ~1));
        EXPECT_TRUE(std::equal(row.begin(), row.begin() + nWhole, single.begin())) << width;
        if (width % 2 != 0) {
            EXPECT_EQ(row[static_cast<std::size_t>(nWhole) + 1], single[static_cast<std::size_t>(nWhole) + 1]);
        }
        EXPECT_EQ(row[static_cast<std::size_t>(2 * width)], 0xEE);
    }
}

TEST(Conversion, MovesSamplesBetweenPlanesAndPackedBytes) {
    const BYTE packed[2][8] = {{1, 2, 3, 4, 5, 6, 7, 8}, {11, 12, 13, 14, 15, 16, 17, 18}};
    Buffers b;
    b.steps[0] = 4, b.steps[1] = b.steps[2] = 2;
    ASSERT_EQ(px::ippiYCbCr422_8u_C2P3R(packed[0], 8, b.ppPlanes, b.steps, {4, 2}), ok);
    const BYTE luma[] = {1, 3, 5, 7, 11, 13, 15, 17}, p1[] = {2, 6, 12, 16}, p2[] = {4, 8, 14, 18};
    EXPECT_TRUE(std::equal(luma, luma + 8, b.planes[0]) && std::equal(p1, p1 + 4, b.planes[1]) &&
                std::equal(p2, p2 + 4, b.planes[2]));
    ASSERT_EQ(px::ippiYCbCr422_8u_P3C2R(b.Source(), b.steps, b.packed, 8, {4, 2}), ok);
    EXPECT_TRUE(std::equal(packed[0], packed[0] + 16, b.packed));

    std::fill_n(b.packed, 16, BYTE{0xEE}); // 3 x 3 pixels make one block
    ASSERT_EQ(px::ippiYCrCb420ToYCbCr422_8u_P3C2R(b.Source(), b.steps, b.packed, 4, {3, 3}), ok);
    const BYTE block[] = {1, 4, 3, 2, 11, 4, 13, 2, 0xEE, 0xEE};
    EXPECT_TRUE(std::equal(block, block + 10, b.packed));
}

} // namespace
} // namespace vellumcaster
