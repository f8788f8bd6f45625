#include "image/normalize_image.h"

#include "support/random_bytes.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace vellumcaster {
namespace {

constexpr std::size_t Pitch(LONG width, WORD bits) { return (static_cast<std::size_t>(width) * bits / 8 + 3) / 4 * 4; }

struct Bitmap {
    ImageInfoTag info;
    std::vector<BYTE> pixels;

    Bitmap(LONG width, LONG height, WORD bits) {
        info.biWidth = width;
        info.biHeight = height;
        info.biBitCount = bits;
        pixels.resize(Pitch(width, bits) * static_cast<std::size_t>(std::abs(height)));
        info.biSizeImage = static_cast<DWORD>(pixels.size());
        testing_support::FillRandom(pixels, 7);
    }

    /// The pixel at a place counted from the top of the picture.
    [[nodiscard]] std::array<BYTE, 4> At(LONG x, LONG y) const {
        const LONG row = info.biHeight > 0 ? info.biHeight - 1 - y : y;
        const BYTE* p = pixels.data() + static_cast<std::size_t>(row) * Pitch(info.biWidth, info.biBitCount) +
                        static_cast<std::size_t>(x) * info.biBitCount / 8;
        return {p[0], p[1], p[2], info.biBitCount == 32 ? p[3] : BYTE{0xFF}};
    }
};

TEST(NormalizeImage, MakesOneFormOfEveryBitmap) {
    for (const WORD bits : {WORD{24}, WORD{32}})
        for (const LONG width : {4, 5, 2, 3, 7})
            for (const LONG height : {2, -2, 3, -3, 6, -6}) {
                SCOPED_TRACE(testing::Message() << bits << " bits, " << width << "x" << height);
                const Bitmap bitmap(width, height, bits);
                ImageInfoTag info = bitmap.info;
                SIZE size{0, 8};
                CTaskBlob out;
                ASSERT_EQ(NormalizeImage(&info, bitmap.pixels.data(), &size, &out), S_OK);
                EXPECT_EQ(size, (SIZE{width & ~1, std::abs(height) & ~1}));
                ASSERT_GE(out.Size(), static_cast<std::size_t>(size.cx * size.cy * 4));
                for (LONG y = 0; y < size.cy; ++y)
                    for (LONG x = 0; x < size.cx; ++x) {
                        const auto want = bitmap.At(x, y);
                        EXPECT_TRUE(std::equal(want.begin(), want.end(), out.Data() + 4 * (y * size.cx + x)))
                            << x << " " << y;
                    }
            }
}

TEST(NormalizeImage, ScalesFirst) {
    for (const WORD bits : {WORD{24}, WORD{32}}) {
        Bitmap bitmap(9, 8, bits);
        std::fill(bitmap.pixels.begin(), bitmap.pixels.end(), BYTE{77});
        ImageInfoTag info = bitmap.info;
        SIZE size{5, 13};
        CTaskBlob out;
        ASSERT_EQ(NormalizeImage(&info, bitmap.pixels.data(), &size, &out), S_OK);
        EXPECT_EQ(size, (SIZE{4, 12}));
        EXPECT_TRUE(info.biWidth == 4 && info.biHeight == 12 && info.biSizeImage == 4u * 12 * bits / 8);
        for (std::size_t i = 0; i < 4 * 12 * 4; ++i)
            EXPECT_EQ(out.Data()[i], i % 4 == 3 && bits == 24 ? 255 : 77) << i;
    }
}

TEST(NormalizeImage, RefusesBitmapsThatItCannotTrust) {
    const Bitmap good(4, 4, 24);
    constexpr LONG lowest = std::numeric_limits<LONG>::min();
    struct Refused {
        LONG width = 4, height = 4;
        SIZE wanted{};
        WORD bits = 24;
        DWORD compression = 0, cbMissing = 0;
    };
    // clang-format off
    const Refused cases[] = {
        {.compression = 3}, {.bits = 16},  {.cbMissing = 1},  {.width = 0}, {.width = -4}, {.width = 1},
        {.width = 32768},   {.height = -1}, {.height = lowest}, {.width = 32767, .height = 32767},
        {.wanted = {-4, 4}}, {.wanted = {4, 1}}, {.wanted = {32768, 4}},
        {.height = -4, .wanted = {2, 2}}}; // from the top down and to be scaled
    // clang-format on
    for (const auto& c : cases) {
        ImageInfoTag info = good.info;
        info.biWidth = c.width, info.biHeight = c.height, info.biBitCount = c.bits, info.biCompression = c.compression;
        info.biSizeImage -= c.cbMissing;
        SIZE size = c.wanted;
        CTaskBlob out;
        EXPECT_EQ(NormalizeImage(&info, good.pixels.data(), &size, &out), E_INVALIDARG) << &c - cases;
        EXPECT_TRUE(out.IsEmpty()) << &c - cases;
    }
    ImageInfoTag info = good.info;
    SIZE size{};
    CTaskBlob out;
    EXPECT_EQ(NormalizeImage(nullptr, good.pixels.data(), &size, &out), E_INVALIDARG);
    EXPECT_EQ(NormalizeImage(&info, nullptr, &size, &out), E_INVALIDARG);
    EXPECT_EQ(NormalizeImage(&info, good.pixels.data(), nullptr, &out), E_INVALIDARG);
    EXPECT_EQ(NormalizeImage(&info, good.pixels.data(), &size, nullptr), E_INVALIDARG);
}

} // namespace
} // namespace vellumcaster
