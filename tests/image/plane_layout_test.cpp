#include "image/plane_layout.h"

#include <gtest/gtest.h>

namespace vellumcaster::CPictureFormats {
namespace {

using namespace format_code;
using Triple = std::array<std::uint32_t, 3>;

TEST(FormatInfo, RefusesWhatAFormatCannotHave) {
    const auto isTaken = [](const PictureFormat& pf) { return GetFormatInfo(&pf, nullptr, nullptr, nullptr); };
    const PictureFormat taken[] = {
        // clang-format off
        {YUY2, 4, 3, 0}, {YVYU, 4, 4, 6}, {I420, 4, -2, 0}, {RGB24, 321, 1, 321}, {RGB565, 1, -1, 0},
        {RGB32, 0, 0, 0}, {RGB32, 32767, 1, 0}, {RGB32, 16384, 16383, 0},
        // clang-format on
    };
    const PictureFormat refused[] = {
        // clang-format off
        {YUY2, 3, 4, 0}, {UYVY, 4, 4, 5}, {I420, 4, 3, 0}, {I420, 4, -3, 0}, {YV12, 3, 2, 4}, {YV12, 2, 2, 3},
        {RGB32, 321, 1, 320}, {RGB8, 4, 4, 0}, {IYU2, 4, 4, 0}, {YVU9, 4, 4, 0}, {0, 4, 4, 0}, {RGB32, -1, 1, 0},
        {RGB32, 32768, 1, 0}, {RGB32, 1, INT32_MIN, 0}, {RGB32, 1, 1, UINT32_MAX}, {RGB32, 16384, 16384, 0},
        {RGB24, 1, 0, 0x40000000},
        // clang-format on
    };
    for (const PictureFormat& pf : taken)
        EXPECT_TRUE(isTaken(pf)) << std::hex << pf.dwFormat << std::dec << " " << pf.nWidth << " x " << pf.nHeight;
    for (const PictureFormat& pf : refused)
        EXPECT_FALSE(isTaken(pf)) << std::hex << pf.dwFormat << std::dec << " " << pf.nWidth << " x " << pf.nHeight;
}

TEST(PlaneLayout, ResolvesDescriptorsToMemory) {
    // What lies where without being forced shows in every block that is copied, filled and mixed.
    const struct {
        PictureFormat pf;
        bool bForcePlanar;
        Triple offsets;
        Triple strides;
        bool bBottomUp;
    } cases[] = {
        {{I420, 640, 480, 0}, false, {0, 384000, 307200}, {640, 320, 320}, false},
        {{YV12, 4, 4, 8}, false, {0, 32, 40}, {8, 4, 4}, false},
        {{YUY2, 6, 2, 8}, true, {0, 16, 24}, {8, 4, 4}, false},
        {{YVYU, 4, 2, 0}, true, {0, 12, 8}, {4, 2, 2}, false},
        {{RGB24, 2, -1, 0}, true, {0, 0, 0}, {8, 0, 0}, false},
        {{RGB555, 3, 1, 0}, false, {0, 0, 0}, {8, 0, 0}, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << std::hex << c.pf.dwFormat << std::dec << " " << c.pf.nWidth);
        Triple offsets{};
        Triple strides{};
        bool bBottomUp = false; // only ever set to true
        ASSERT_TRUE(GetPlaneLayout(&c.pf, offsets.data(), strides.data(), &bBottomUp, c.bForcePlanar));
        EXPECT_EQ(offsets, c.offsets);
        EXPECT_EQ(strides, c.strides);
        EXPECT_EQ(bBottomUp, c.bBottomUp);
    }
}

TEST(PixelOffset, CountsEachSlotInItsOwnPitch) {
    const struct {
        PictureFormat pf;
        int x, y;
        bool bForcePlanar;
        Triple offsets;
    } cases[] = {
        {{RGB24, 2, -4, 0}, 1, 3, false, {27, 0, 0}},
        {{YUY2, 6, 4, 8}, 4, 3, true, {28, 14, 14}},
        {{RGB565, 3, 4, 5}, 2, 1, true, {16, 0, 0}},
    };
    for (const auto& c : cases) {
        Triple offsets{9, 9, 9};
        ASSERT_TRUE(GetPixelOffset(&c.pf, c.x, c.y, offsets.data(), c.bForcePlanar));
        EXPECT_EQ(offsets, c.offsets) << std::hex << c.pf.dwFormat;
    }
}

TEST(BufferSize, IsNoneForADescriptorThatIsRefused) { EXPECT_EQ(GetBufferSize({YUY2, 3, 2, 0}), 0u); }

} // namespace
} // namespace vellumcaster::CPictureFormats
