#include "image/clip_rects.h"

#include <gtest/gtest.h>

#include <ostream>

namespace vellumcaster {

static void PrintTo(const RECT& rc, std::ostream* os) {
    *os << "(" << rc.left << "," << rc.top << "," << rc.right << "," << rc.bottom << ")";
}

namespace CPictureFormats {
namespace {

constexpr PictureFormat Picture(std::int32_t width, std::int32_t height) {
    return {format_code::RGB32, width, height, 0};
}

struct Case {
    const char* pszName;
    SIZE sizeA, sizeB;
    RECT inA, inB;
    bool bAllowScale;
    HRESULT hr;
    RECT outA, outB;
};

TEST(ClipRects, KeepsBothRectanglesInStep) {
    const Case cases[] = {
        {"inside", {8, 4}, {20, 10}, {1, 1, 5, 3}, {7, 6, 11, 8}, false, S_OK, {1, 1, 5, 3}, {7, 6, 11, 8}},
        {"over the left edge",
         {8, 4},
         {8, 4},
         {0, 0, 8, 4},
         {-3, 0, 5, 4},
         false,
         S_OK,
         {3, 0, 8, 4},
         {0, 0, 5, 4}},
        {"over right and bottom",
         {8, 4},
         {10, 5},
         {0, 0, 8, 4},
         {6, 3, 14, 7},
         false,
         S_OK,
         {0, 0, 4, 2},
         {6, 3, 10, 5}},
        {"over the top, bottom-up",
         {8, 4},
         {8, -4},
         {0, 0, 8, 4},
         {0, -2, 8, 2},
         false,
         S_OK,
         {0, 2, 8, 4},
         {0, 0, 8, 2}},
        {"both overhang",
         {6, 6},
         {6, 6},
         {-2, 0, 4, 6},
         {-1, 2, 5, 8},
         false,
         S_OK,
         {0, 0, 4, 4},
         {1, 2, 5, 6}},
        {"right of the picture",
         {4, 4},
         {8, 8},
         {0, 0, 4, 4},
         {8, 0, 12, 4},
         false,
         S_FALSE,
         {0, 0, 0, 4},
         {8, 0, 8, 4}},
        {"left of the picture",
         {4, 4},
         {8, 8},
         {0, 0, 4, 4},
         {-5, 0, -1, 4},
         false,
         S_FALSE,
         {5, 0, 4, 4},
         {0, 0, -1, 4}},
        {"below the picture",
         {4, 4},
         {8, 8},
         {0, 0, 4, 4},
         {0, 9, 4, 13},
         false,
         S_FALSE,
         {0, 0, 4, -1},
         {0, 9, 4, 8}},
        {"touching from the left",
         {4, 4},
         {8, 8},
         {0, 0, 4, 4},
         {-4, 0, 0, 4},
         false,
         S_FALSE,
         {4, 0, 4, 4},
         {0, 0, 0, 4}},
        {"twice as large",
         {8, 4},
         {16, 8},
         {-1, -1, 8, 4},
         {0, 0, 18, 10},
         true,
         S_OK,
         {0, 0, 7, 3},
         {2, 2, 16, 8}},
        {"halves go away from zero",
         {8, 8},
         {8, 8},
         {-1, 0, 7, 8},
         {0, 0, 4, 8},
         true,
         S_OK,
         {0, 0, 7, 8},
         {1, 0, 4, 8}},
        {"edges of 32 bits",
         {4, 4},
         {4, 4},
         {0, 0, 4, 4},
         {INT32_MAX - 4, INT32_MIN, INT32_MAX, INT32_MIN + 4},
         false,
         S_FALSE,
         {0, INT32_MAX, INT32_MIN + 9, 4},
         {INT32_MAX - 4, 0, 4, INT32_MIN + 4}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.pszName);
        const PictureFormat a = Picture(c.sizeA.cx, c.sizeA.cy);
        const PictureFormat b = Picture(c.sizeB.cx, c.sizeB.cy);
        RECT outA;
        RECT outB;
        EXPECT_EQ(ClipRects(&a, &b, &outA, &outB, c.bAllowScale, &c.inA, &c.inB), c.hr);
        EXPECT_EQ(outA, c.outA);
        EXPECT_EQ(outB, c.outB);
    }
}

TEST(ClipRects, TakesTheWholePictureForNull) {
    const PictureFormat a = Picture(8, -4);
    const PictureFormat b = Picture(8, 4);
    RECT outA;
    RECT outB;
    EXPECT_EQ(ClipRects(&a, &b, &outA, &outB, false, nullptr, nullptr), S_OK);
    EXPECT_EQ(outA, (RECT{0, 0, 8, 4}));
    EXPECT_EQ(outB, (RECT{0, 0, 8, 4}));
}

TEST(ClipRects, RefusesRectanglesThatCannotBeUsed) {
    const PictureFormat pf = Picture(8, 8);
    const RECT good{0, 0, 4, 4};
    RECT outA;
    RECT outB;
    for (const RECT& bad : {RECT{4, 0, 4, 4}, RECT{0, 4, 4, 4}, RECT{5, 0, 4, 4}, RECT{0, 5, 4, 4}}) {
        EXPECT_EQ(ClipRects(&pf, &pf, &outA, &outB, true, &bad, &good), E_INVALIDARG);
        EXPECT_EQ(ClipRects(&pf, &pf, &outA, &outB, true, &good, &bad), E_INVALIDARG);
    }
    const RECT wider{0, 0, 5, 4};
    const RECT higher{0, 0, 4, 5};
    EXPECT_EQ(ClipRects(&pf, &pf, &outA, &outB, false, &good, &wider), E_NOTIMPL);
    EXPECT_EQ(ClipRects(&pf, &pf, &outA, &outB, false, &higher, &good), E_NOTIMPL);
}

} // namespace
} // namespace CPictureFormats
} // namespace vellumcaster
