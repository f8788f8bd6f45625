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
    const struct {
        const char* pszName;
        void (*spoil)(ImageInfoTag& info, SIZE& size);
    } cases[] = {
        {"compressed", [](ImageInfoTag& info, SIZE&) { info.biCompression = 3; }},
        {"16 bits", [](ImageInfoTag& info, SIZE&) { info.biBitCount = 16; }},
        {"no width", [](ImageInfoTag& info, SIZE&) { info.biWidth = 0; }},
        {"negative width", [](ImageInfoTag& info, SIZE&) { info.biWidth = -4; }},
        {"one column", [](ImageInfoTag& info, SIZE&) { info.biWidth = 1; }},
        {"one row", [](ImageInfoTag& info, SIZE&) { info.biHeight = -1; }},
        {"lowest height", [](ImageInfoTag& info, SIZE&) { info.biHeight = std::numeric_limits<LONG>::min(); }},
        {"fewer pixels than rows need", [](ImageInfoTag& info, SIZE&) { --info.biSizeImage; }},
        {"a size beyond 32 bits", [](ImageInfoTag& info, SIZE&) { info.biWidth = info.biHeight = 32767; }},
        {"a side beyond the limit", [](ImageInfoTag& info, SIZE&) { info.biWidth = 32768; }},
        {"negative wanted size",
         [](ImageInfoTag&, SIZE& size) {
             size = {-4, 4};
         }},
        {"wanted size of one",
         [](ImageInfoTag&, SIZE& size) {
             size = {4, 1};
         }},
        {"wanted size beyond the limit",
         [](ImageInfoTag&, SIZE& size) {
             size = {32768, 4};
         }},
        {"top-down to be scaled",
         [](ImageInfoTag& info, SIZE& size) {
             info.biHeight = -4, size = {2, 2};
         }},
    };
    for (const auto& c : cases) {
        ImageInfoTag info = good.info;
        SIZE size;
        CTaskBlob out;
        c.spoil(info, size);
        EXPECT_EQ(NormalizeImage(&info, good.pixels.data(), &size, &out), E_INVALIDARG) << c.pszName;
        EXPECT_TRUE(out.IsEmpty()) << c.pszName;
    }
    ImageInfoTag info = good.info;
    SIZE size;
    CTaskBlob out;
    EXPECT_EQ(NormalizeImage(nullptr, good.pixels.data(), &size, &out), E_INVALIDARG);
    EXPECT_EQ(NormalizeImage(&info, nullptr, &size, &out), E_INVALIDARG);
    EXPECT_EQ(NormalizeImage(&info, good.pixels.data(), nullptr, &out), E_INVALIDARG);
    EXPECT_EQ(NormalizeImage(&info, good.pixels.data(), &size, nullptr), E_INVALIDARG);
}

} // namespace
} // namespace vellumcaster
