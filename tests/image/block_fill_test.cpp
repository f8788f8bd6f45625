#include "image/block_fill.h"
#include "image/color_to_pixel.h"
#include "image/plane_layout.h"

#include <gtest/gtest.h>

#include <vector>

namespace vellumcaster::CPictureFormats {
namespace {

using namespace format_code;
using Bytes = std::vector<BYTE>;

constexpr std::uint32_t red = 0x000000FF;
constexpr std::uint32_t mixed = 0xAA3264C8; // r 200, g 100, b 50

TEST(ColorToPixel, CodesAColourInEachFormat) {
    const struct {
        std::uint32_t code;
        std::uint32_t color;
        Bytes bytes;
    } cases[] = {
        // clang-format off
        {RGB565, mixed, {0x26, 0xCB}}, {RGB555, mixed, {0x86, 0x65}}, {RGB24, mixed, {50, 100, 200}},
        {RGB32, mixed, {50, 100, 200, 255}}, {ARGB32, mixed, {50, 100, 200, 255}}, {YUY2, red, {82, 90, 82, 240}},
        {YVYU, red, {82, 240, 82, 90}}, {UYVY, red, {90, 82, 240, 82}}, {YV12, red, {82, 90, 240}},
        {I420, 0x00FFFFFF, {235, 128, 128}}, {I420, 0, {16, 128, 128}}, {I420, mixed, {123, 91, 175}},
        // clang-format on
    };
    for (const auto& c : cases) {
        std::array<BYTE, 4> bytes{};
        std::uint32_t cb = 0;
        ASSERT_TRUE(ColorToPixel(c.code, c.color, bytes, &cb));
        EXPECT_EQ(Bytes(bytes.begin(), bytes.begin() + cb), c.bytes) << std::hex << c.code << " " << c.color;
    }
    std::array<BYTE, 4> bytes{};
    std::uint32_t cb = 0;
    EXPECT_FALSE(ColorToPixel(RGB8, red, bytes, &cb));
    EXPECT_FALSE(ColorToPixel(IYU2, red, bytes, &cb));
}

TEST(FillBlock, WritesExactlyTheBlockDrawnInToEvenCoordinates) {
    // Each row: the picture, the block asked for, and the block that is to be written.
    const struct {
        PictureFormat pf;
        RECT asked;
        RECT written;
    } cases[] = {
        {{RGB24, 6, -5, 7}, {1, 1, 4, 4}, {2, 2, 4, 4}},
        {{RGB24, 5, -5, 0}, {0, 0, 6, 6}, {0, 0, 5, 5}},
        {{RGB32, 8, -4, 0}, {-3, -1, 5, 3}, {0, 0, 4, 2}},
        {{ARGB32, 4, -4, 0}, {3, 0, 9, 9}, {4, 0, 4, 4}},
        {{RGB565, 4, -4, 0}, {0, 0, 3, 3}, {0, 0, 2, 2}},
        {{YUY2, 8, 3, 10}, {2, 0, 7, 9}, {2, 0, 6, 3}},
        {{RGB32, 4, -4, 0}, {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}, {0, 0, 4, 4}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << c.pf.dwFormat << std::dec << " " << c.asked.left);
        PlaneLayout layout;
        ASSERT_TRUE(GetPlaneLayout(c.pf, layout));
        std::array<BYTE, 4> pixel{};
        std::uint32_t cbPixel = 0;
        ASSERT_TRUE(ColorToPixel(c.pf.dwFormat, mixed, pixel, &cbPixel));
        const std::uint32_t cbColumn = c.pf.dwFormat == YUY2 ? 2 : cbPixel;

        Bytes expected(GetBufferSize(c.pf), 0x5A);
        for (LONG y = c.written.top; y < c.written.bottom; ++y)
            for (std::uint32_t i = static_cast<std::uint32_t>(c.written.left) * cbColumn;
                 i < static_cast<std::uint32_t>(c.written.right) * cbColumn; ++i)
                expected[static_cast<std::uint32_t>(y) * layout.strides[0] + i] = pixel[i % cbPixel];

        Bytes frame(expected.size(), 0x5A);
        const bool bEmpty = c.written.left == c.written.right;
        EXPECT_EQ(FillBlock(frame.data(), &c.pf, mixed, &c.asked), bEmpty ? S_FALSE : S_OK);
        EXPECT_EQ(frame, expected);
    }
}

TEST(FillBlock, FillsTheRowsOfABottomUpPictureFromTheTop) {
    const PictureFormat pf{RGB24, 2, 4, 0};
    const RECT top{0, 0, 2, 2};
    Bytes frame(32, 0);
    ASSERT_EQ(FillBlock(frame.data(), &pf, red, &top), S_OK);
    EXPECT_EQ(frame, (Bytes{0, 0, 0,   0, 0, 0,   0, 0, 0, 0, 0,   0, 0, 0,   0, 0,
                            0, 0, 255, 0, 0, 255, 0, 0, 0, 0, 255, 0, 0, 255, 0, 0}));
}

TEST(FillBlock, PutsVBeforeUInYV12AndBehindItInI420) {
    const RECT right{2, 0, 4, 2};
    const Bytes expectedYv12{0, 0, 82, 82, 0, 0, 82, 82, 0, 240, 0, 90};
    const Bytes expectedI420{0, 0, 82, 82, 0, 0, 82, 82, 0, 90, 0, 240};
    for (const auto& [code, expected] : {std::pair{YV12, expectedYv12}, std::pair{I420, expectedI420}}) {
        const PictureFormat pf{code, 4, 2, 0};
        Bytes frame(12, 0);
        ASSERT_EQ(FillBlock(frame.data(), &pf, red, &right), S_OK);
        EXPECT_EQ(frame, expected);
    }
}

TEST(FillBlock, RefusesBadArguments) {
    const PictureFormat pf{RGB24, 4, 4, 0};
    const PictureFormat refused{YUY2, 3, 4, 0};
    Bytes frame(64, 0);
    const RECT crossed{3, 0, 2, 4};
    const RECT empty{2, 2, 2, 2};
    EXPECT_EQ(FillBlock(nullptr, &pf, red, nullptr), E_INVALIDARG);
    EXPECT_EQ(FillBlock(frame.data(), nullptr, red, nullptr), E_INVALIDARG);
    EXPECT_EQ(FillBlock(frame.data(), &refused, red, nullptr), E_INVALIDARG);
    EXPECT_EQ(FillBlock(frame.data(), &pf, red, &crossed), E_INVALIDARG);
    EXPECT_EQ(FillBlock(frame.data(), &pf, red, &empty), S_FALSE);
    EXPECT_EQ(frame, Bytes(64, 0));
}

} // namespace
} // namespace vellumcaster::CPictureFormats
