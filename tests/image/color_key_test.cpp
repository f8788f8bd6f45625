#include "image/color_key.h"

#include "support/random_bytes.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace vellumcaster {
namespace {

using Pixels = std::vector<std::uint32_t>;

Pixels Keyed(const Pixels& pixels, std::uint32_t min, std::uint32_t max) {
    Pixels out(pixels.size());
    EXPECT_EQ(ApplyColorKey(pixels.data(), out.data(), static_cast<LONG>(pixels.size()), 1, static_cast<LONG>(min),
                            static_cast<LONG>(max)),
              S_OK);
    return out;
}

TEST(ColorKey, HasThreeModes) {
    const Pixels pixels{0x80102030, 0x00102030, 0xFF102031, 0x40000000, 0xFF0A0A0A, 0xFF0B0A0A, 0xFF050505};
    const struct {
        const char* pszName;
        std::uint32_t min, max;
        std::vector<std::pair<std::size_t, std::uint32_t>> changed;
        // clang-format off
    } cases[] = {
        {"plain copy", 0xFFFFFFFF, 0xFFFFFFFF, {}},
        {"a lower bound above its upper one", 0x00000100, 0x80FF00FF, {}},
        {"top left", 0xFFFFFFFF, 0, {{0, 0x00102030}}},
        {"black alone", 0, 0, {{3, 0}}},
        {"a range with one alpha", 0x33050000, 0x330A0A0A, {{4, 0x330A0A0A}, {6, 0x33050505}}},
        {"a soft edge that falls", 0xFF000000, 0x000A0A0A, {{3, 0xFF000000}, {4, 0x000A0A0A}, {6, 0x80050505}}},
        {"an edge without extent", 0x10050505, 0x20050505, {{6, 0x00050505}}},
    };
    // clang-format on
    for (const auto& c : cases) {
        Pixels want = pixels;
        for (const auto& [at, pixel] : c.changed)
            want[at] = pixel;
        EXPECT_EQ(Keyed(pixels, c.min, c.max), want) << c.pszName;
    }
}

TEST(ColorKey, RunsItsEdgeAsInDoublePrecision) {
    for (const auto& [an, ax] : {std::pair(0, 255), std::pair(255, 0), std::pair(3, 250), std::pair(254, 255)})
        for (int extent = 1; extent <= 765; ++extent) {
            Pixels pixels; // along the edges of the cube, one step at a time
            for (int d = 0; d <= extent; ++d) {
                const int r = std::min(d, 255), g = std::min(d - r, 255), b = d - r - g;
                pixels.push_back(0xEE000000u | static_cast<std::uint32_t>(r << 16 | g << 8 | b));
            }
            const std::uint32_t corner = pixels.back() & 0xFFFFFF;
            const Pixels out =
                Keyed(pixels, static_cast<std::uint32_t>(an) << 24, corner | static_cast<std::uint32_t>(ax) << 24);
            for (int d = 0; d <= extent; ++d) {
                const double alpha = an + static_cast<double>(d) * (ax - an) / extent;
                ASSERT_EQ(out[static_cast<std::size_t>(d)] >> 24, static_cast<std::uint32_t>(alpha + 0.5))
                    << an << " " << ax << " " << d << " of " << extent;
            }
        }
}

TEST(ColorKey, WorksInPlaceAndRefusesWhatIsNoPicture) {
    Pixels pixels{0xFF000001, 0xFF000002};
    EXPECT_EQ(ApplyColorKey(pixels.data(), pixels.data(), 1, 2, nTopLeftKeyMin, nTopLeftKeyMax), S_OK);
    EXPECT_EQ(pixels, (Pixels{0x00000001, 0xFF000002}));
    EXPECT_EQ(ApplyColorKey(nullptr, pixels.data(), 1, 1, 0, 0), E_INVALIDARG);
    EXPECT_EQ(ApplyColorKey(pixels.data(), nullptr, 1, 1, 0, 0), E_INVALIDARG);
    EXPECT_EQ(ApplyColorKey(pixels.data(), pixels.data(), 0, 1, 0, 0), E_INVALIDARG);
    EXPECT_EQ(ApplyColorKey(pixels.data(), pixels.data(), 1, -1, 0, 0), E_INVALIDARG);
}

} // namespace
} // namespace vellumcaster
