#include "image/clip_rects.h"

#include <gtest/gtest.h>

#include <ostream>

namespace vellumcaster {

static void PrintTo(const RECT& rc, std::ostream* os) {
    *os << "(" << rc.left << "," << rc.top << "," << rc.right << "," << rc.bottom << ")";
}

namespace CPictureFormats {
namespace {

constexpr LONG lowest = INT32_MIN;
constexpr LONG highest = INT32_MAX;

PictureFormat Picture(const SIZE& size) { return {format_code::RGB32, size.cx, size.cy, 0}; }

TEST(ClipRects, KeepsBothRectanglesInStep) {
    const struct {
        const char* pszName;
        SIZE sizeA, sizeB;
        RECT inA, inB;
        bool bAllowScale;
        HRESULT hr;
        RECT outA, outB;
    } cases[] = {
        // clang-format off
        {"both overhang", {6, 6}, {6, 6},   {-2, 0, 4, 6}, {-1, 2, 5, 8},  false, S_OK,    {0, 0, 4, 4}, {1, 2, 5, 6}},
        {"right of it",   {4, 4}, {8, 8},   {0, 0, 4, 4},  {8, 0, 12, 4},  false, S_FALSE, {0, 0, 0, 4}, {8, 0, 8, 4}},
        {"below it",      {4, 4}, {8, 8},   {0, 0, 4, 4},  {0, 9, 4, 13},  false, S_FALSE, {0, 0, 4, -1}, {0, 9, 4, 8}},
        {"twice as large", {8, 4}, {16, 8}, {-1, -1, 8, 4}, {0, 0, 18, 10}, true, S_OK,    {0, 0, 7, 3}, {2, 2, 16, 8}},
        {"halves go away", {8, 8}, {8, 8},  {-1, 0, 7, 8}, {0, 0, 4, 8},   true,  S_OK,    {0, 0, 7, 8}, {1, 0, 4, 8}},
        {"32 bits", {4, 4}, {4, 4}, {0, 0, 4, 4}, {highest - 4, lowest, highest, lowest + 4}, false,
         S_FALSE, {0, highest, lowest + 9, 4}, {highest - 4, 0, 4, lowest + 4}},
        // clang-format on
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pszName);
        const PictureFormat a = Picture(c.sizeA), b = Picture(c.sizeB);
        RECT outA, outB;
        EXPECT_EQ(ClipRects(&a, &b, &outA, &outB, c.bAllowScale, &c.inA, &c.inB), c.hr);
        EXPECT_EQ(outA, c.outA);
        EXPECT_EQ(outB, c.outB);
    }
}

TEST(ClipRects, RefusesRectanglesThatCannotBeUsed) {
    const PictureFormat pf = Picture({8, 8});
    RECT outA, outB;
    const auto clip = [&](const RECT& a, const RECT& b, bool bAllowScale) {
        return ClipRects(&pf, &pf, &outA, &outB, bAllowScale, &a, &b);
    };
    const RECT good{0, 0, 4, 4};
    for (const RECT& bad : {RECT{4, 0, 4, 4}, RECT{0, 4, 4, 4}, RECT{5, 0, 4, 4}, RECT{0, 5, 4, 4}}) {
        EXPECT_EQ(clip(bad, good, true), E_INVALIDARG);
        EXPECT_EQ(clip(good, bad, true), E_INVALIDARG);
    }
    EXPECT_EQ(clip(good, {0, 0, 5, 4}, false), E_NOTIMPL);
    EXPECT_EQ(clip({0, 0, 4, 5}, good, false), E_NOTIMPL);
}

} // namespace
} // namespace CPictureFormats
} // namespace vellumcaster
