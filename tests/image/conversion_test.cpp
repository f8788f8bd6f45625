#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <vector>

namespace vellumcaster {
namespace {

using namespace prim_status;

/// One way to call a primitive wrongly.
struct Wrong {
    PrimSize size{4, 2};
    std::int32_t packedStep = 16;
    std::int32_t planeStep = 4; ///< of P2
    bool bNull = false;
};

using Call = std::function<PrimStatus(const Wrong&)>;

/// Memory that any of the primitives can be called with; nobody looks at what is in it.
alignas(8) BYTE g_Packed[2][256];
BYTE g_Planes[3][64];

template <class Sample>
Call FromPlanes(PrimStatus (*p)(const BYTE* const*, const std::int32_t*, Sample*, std::int32_t, PrimSize)) {
    return [p](const Wrong& w) {
        const BYTE* const planes[] = {g_Planes[0], g_Planes[1], w.bNull ? nullptr : g_Planes[2]};
        const std::int32_t steps[] = {8, 4, w.planeStep};
        return p(planes, steps, reinterpret_cast<Sample*>(g_Packed[1]), w.packedStep, w.size);
    };
}
Call ToPlanes(prim_signature::BytesToPlanes* p) {
    return [p](const Wrong& w) {
        BYTE* planes[] = {g_Planes[0], g_Planes[1], w.bNull ? nullptr : g_Planes[2]};
        std::int32_t steps[] = {8, 4, w.planeStep};
        return p(g_Packed[0], w.packedStep, planes, steps, w.size);
    };
}
template <class Sample, class... Alpha>
Call Packed(PrimStatus (*p)(const BYTE*, std::int32_t, Sample*, std::int32_t, PrimSize, Alpha...)) {
    return [p](const Wrong& w) {
        Sample* pDst = w.bNull ? nullptr : reinterpret_cast<Sample*>(g_Packed[1]);
        return p(g_Packed[0], 16, pDst, w.packedStep, w.size, Alpha{}...);
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
    for (const auto& p : primitives) {
        const Call& status = p.call;
        SCOPED_TRACE(&p - primitives);
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
        }
    }
}

TEST(Conversion, RoundsOnlyTheWholeBlocksOfTheFullRangeMember) {
    // Byte 0 is 100 - 2 * 1.140 = 97.72, byte 1 is 100 + 2 * 0.581 + 0.394 = 101.56, byte 2 is 100 - 2.032 = 97.97.
    const std::vector<BYTE> y(9, 100), p1(4, 127), p2(4, 126);
    const BYTE* planes[] = {y.data(), p1.data(), p2.data()};
    const std::int32_t steps[] = {3, 2, 2};
    using Rows = std::array<std::array<BYTE, 12>, 3>;
    const Rows want{{{98, 102, 98, 0, 98, 102, 98, 0, 97, 101, 97, 0}, // a whole block and its right edge
                     {98, 102, 98, 0, 98, 102, 98, 0, 97, 101, 97, 0},
                     {97, 101, 97, 0, 97, 101, 97, 0, 97, 101, 97, 0}}};
    Rows got{};
    ASSERT_EQ(px::ippiYUV420ToRGB_8u_P3AC4R(planes, steps, got[0].data(), 12, {3, 3}), ok);
    EXPECT_EQ(got, want);
}

TEST(Conversion, LendsTheLastPixelOfAnOddRowTheChromaOfThePairBefore) {
    const auto lastPixel = [](const std::vector<BYTE>& samples, std::int32_t width) {
        BYTE pixels[9] = {};
        EXPECT_EQ(px::ippiYCbCr422ToRGB_8u_C2C3R(samples.data(), 8, pixels, 9, {width, 1}), ok);
        return std::vector<BYTE>(pixels + 3 * width - 3, pixels + 3 * width);
    };
    EXPECT_EQ(lastPixel({100, 50, 100, 240, 100, 90}, 3), lastPixel({100, 90, 100, 240}, 2));
    EXPECT_EQ(lastPixel({100, 90}, 1), lastPixel({100, 90, 100, 90}, 2)) << "one alone has its one chroma for both";
}

TEST(Conversion, WritesHalfAGroupForTheLastPixelOfAnOddRow) {
    const BYTE bgr[] = {200, 100, 50, 200, 100, 50, 200, 100, 50};
    BYTE out[6] = {};
    ASSERT_EQ(px::ippiRGBToYCbCr422_8u_C3C2R(bgr, 9, out, 6, {3, 1}), ok);
    // Y0 (16843 * 200 + 33030 * 100 + 6423 * 50 + 0x108000) >> 16 = 123, Y1 with 0x100000 = 122;
    // C1 (-9699 * 400 - 19071 * 200 + 28770 * 100 + 0x1010000) >> 17 = 91, C2 (28770 * 400 - 24117 * 200 - 4653 * 100
    // + 0x1010000) >> 17 = 175.
    const BYTE want[] = {123, 91, 122, 175, 123, 91};
    EXPECT_TRUE(std::equal(out, out + 6, want));

    const BYTE bgrx[] = {9, 200, 30, 0, 80, 70, 60, 0, 200, 100, 50, 0, 200, 100, 50, 0}; // the last pixel twice
    BYTE half[8] = {}, whole[8];
    ASSERT_EQ(px::ippiBGRToCbYCr422_8u_AC4C2R(bgrx, 16, half, 8, {3, 1}), ok);
    ASSERT_EQ(px::ippiBGRToCbYCr422_8u_AC4C2R(bgrx, 16, whole, 8, {4, 1}), ok);
    EXPECT_TRUE(std::equal(half, half + 6, whole) && half[6] == 0);

    BYTE luma[9] = {}, p1[4] = {}, p2[4] = {};
    BYTE* planes[] = {luma, p1, p2};
    const std::int32_t steps[] = {3, 2, 2};
    const BYTE black[3][9] = {};
    ASSERT_EQ(px::ippiRGBToYCbCr420_8u_C3P3R(black[0], 9, planes, steps, {3, 3}), ok);
    // Blocks of four, two and one have constants of their own: 33587200 >> 18, 16793600 >> 17, 0x808000 >> 16.
    for (const BYTE chroma : {p1[0], p1[1], p1[2], p1[3], p2[0], p2[3]})
        EXPECT_EQ(chroma, 128);
}

TEST(Conversion, TakesThreeByThreePixelsForOneBlock) {
    const BYTE luma[3][4] = {{1, 3, 5, 7}, {11, 13, 15, 17}}, p1 = 2, p2 = 4;
    const BYTE* planes[] = {luma[0], &p1, &p2};
    const std::int32_t steps[] = {4, 2, 2};
    std::vector<BYTE> packed(12);
    ASSERT_EQ(px::ippiYCrCb420ToYCbCr422_8u_P3C2R(planes, steps, packed.data(), 4, {3, 3}), ok);
    EXPECT_EQ(packed, (std::vector<BYTE>{1, 4, 3, 2, 11, 4, 13, 2, 0, 0, 0, 0}));
}

} // namespace
} // namespace vellumcaster
