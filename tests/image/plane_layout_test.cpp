#include "image/plane_layout.h"

#include <gtest/gtest.h>

#include <utility>

namespace vellumcaster::CPictureFormats {
namespace {

using namespace format_code;

TEST(FormatInfo, RefusesWhatAFormatCannotHave) {
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
        EXPECT_TRUE(GetFormatInfo(&pf, nullptr, nullptr, nullptr)) << &pf - taken;
    for (const PictureFormat& pf : refused)
        EXPECT_EQ(GetBufferSize(pf), 0u) << &pf - refused;
}

// What lies where without being forced shows in every block that is copied, filled and mixed.
TEST(ForcedPlanarLayout, PutsTheSamplesOfPackedYuvIntoPlanes) {
    using Triple = std::array<std::uint32_t, 3>;
    const std::pair<std::uint32_t, Triple> planes[] = {{YUY2, {0, 32, 48}}, {UYVY, {0, 32, 48}}, {YVYU, {0, 48, 32}}};
    for (const auto& [code, starts] : planes) {
        const PictureFormat pf{code, 6, 4, 8};
        Triple offsets{}, strides{}, pixel{};
        ASSERT_TRUE(GetPlaneLayout(&pf, offsets.data(), strides.data(), nullptr, true));
        ASSERT_TRUE(GetPixelOffset(&pf, 4, 3, pixel.data(), true));
        EXPECT_EQ(offsets, starts) << std::hex << code;
        EXPECT_EQ(strides, (Triple{8, 4, 4}));
        EXPECT_EQ(pixel, (Triple{28, 14, 14}));
    }
}

} // namespace
} // namespace vellumcaster::CPictureFormats
