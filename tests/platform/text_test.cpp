#include "platform/kernel/last_error.h"
#include "platform/text/kept_pictures.h"
#include "platform/text/text_canvas.h"
#include "platform/text/text_dc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>
#include <thread>

namespace vellumcaster {
namespace {

LOGFONT Font(LONG lfHeight, const char* pszFace = "DejaVu Sans") {
    LOGFONT logFont;
    logFont.lfHeight = lfHeight;
    std::strncpy(logFont.lfFaceName, pszFace, sizeof logFont.lfFaceName - 1);
    return logFont;
}

LOGFONT SharpFont(LONG lfHeight) {
    LOGFONT logFont = Font(lfHeight);
    logFont.lfQuality = 3;
    return logFont;
}

CTextDC ContextOf(const LOGFONT& logFont) {
    CTextDC dc;
    EXPECT_TRUE(dc.CreateCompatibleDC() && dc.CreateFontIndirectA(logFont));
    return dc;
}

SIZE Measure(CTextDC& dc, const std::string& text, DWORD format = 0, LONG right = 0) {
    RECT rc{0, 0, right, 0};
    EXPECT_EQ(dc.DrawTextA(text.c_str(), &rc, format | DT_CALCRECT, nullptr), rc.bottom);
    return {rc.right, rc.bottom};
}

/// The first bytes of a canvas's pixels.
struct Picture {
    SIZE size;
    std::vector<BYTE> bytes;

    [[nodiscard]] int At(LONG x, LONG y) const { return bytes[static_cast<std::size_t>(y * size.cx + x)]; }
    /// First and last column that are not black.
    [[nodiscard]] std::pair<LONG, LONG> Columns() const {
        std::pair<LONG, LONG> columns{size.cx, 0};
        for (LONG y = 0; y < size.cy; ++y)
            for (LONG x = 0; x < size.cx; ++x)
                if (At(x, y) != 0) columns = {std::min(columns.first, x), std::max(columns.second, x)};
        return columns;
    }
};

Picture Read(const CTextCanvas& canvas) {
    BITMAPINFOHEADER info;
    EXPECT_TRUE(canvas.GetDIBits(nullptr, &info));
    std::vector<BYTE> pixels(info.biSizeImage);
    info.biHeight = -info.biHeight;
    EXPECT_TRUE(canvas.GetDIBits(pixels.data(), &info));
    Picture picture{{info.biWidth, -info.biHeight}, {}};
    for (std::size_t i = 0; i < pixels.size(); i += 4)
        picture.bytes.push_back(pixels[i]);
    return picture;
}

constexpr SIZE canvasSize{320, 160};

Picture Draw(const LOGFONT& logFont, const std::string& text, DWORD format = 0, LONG nPen = 0, LONG nBlock = 1) {
    CTextDC dc = ContextOf(logFont);
    RECT rc{8, 8, canvasSize.cx - 8, canvasSize.cy - 8};
    PlacedText placed;
    CTextCanvas canvas;
    EXPECT_NE(dc.DrawTextA(text.c_str(), &rc, format, &placed), 0);
    EXPECT_TRUE(canvas.CreateBitmap(canvasSize.cx, canvasSize.cy, nBlock));
    if (nPen == 0)
        canvas.FillText(placed);
    else
        canvas.StrokePath(placed, nPen);
    return Read(canvas);
}

TEST(Text, HasTheHeightOfTheCellForEachLine) {
    for (const LONG height : {1, 9, 48, 1001}) {
        CTextDC dc = ContextOf(Font(height));
        const LONG width = Measure(dc, "wide").cx;
        const struct {
            const char* pszText;
            DWORD format;
            LONG nLines;
            // clang-format off
        } cases[] = {{"wide\n", 0, 1},       {"\n", 0, 1},           {"wide\r\nwide", 0, 2}, {"a\rb\nc\r\nd", 0, 4},
                     {"wide\n\nwide", 0, 3}, {"wide wide", 0, 1},    {"wide wide", DT_WORDBREAK, 2},
                     {"a\nb", DT_SINGLELINE, 1}};
        // clang-format on
        for (const auto& c : cases)
            EXPECT_EQ(Measure(dc, c.pszText, c.format, width).cy, height * c.nLines) << height << c.pszText;
    }
}

TEST(Text, IsAsWideAsItsGlyphsAtAnySize) {
    CTextDC small = ContextOf(Font(-50));
    CTextDC large = ContextOf(Font(-800));
    EXPECT_NEAR(Measure(small, "01:23:45:12").cx * 16, Measure(large, "01:23:45:12").cx, 16) << "no hinting";
    EXPECT_GT(Measure(small, "a&b").cx, Measure(small, "ab").cx);
    EXPECT_EQ(Measure(small, "a\tb"), Measure(small, "a b"));
    const LONG tab = Measure(small, "\t", DT_EXPANDTABS).cx;
    const LONG b = Measure(small, "b").cx;
    EXPECT_NEAR(Measure(small, "\tb", DT_EXPANDTABS).cx, tab + b, 1);
    EXPECT_EQ(Measure(small, "aaa\tb", DT_EXPANDTABS), Measure(small, "\tb", DT_EXPANDTABS)) << "stops, not widths";
}

TEST(Text, ThatCannotBeDrawnIsRefused) {
    CTextDC dc = ContextOf(Font(20));
    RECT rc;
    const std::pair<std::string, DWORD> texts[] = {{"", ERROR_SUCCESS},
                                                   {std::string(1 << 20, '\n'), ERROR_INVALID_PARAMETER},
                                                   {std::string(65535, 'x'), ERROR_INVALID_PARAMETER}};
    for (const auto& [text, error] : texts) {
        SetLastError(ERROR_IO_DEVICE);
        EXPECT_EQ(dc.DrawTextA(text.c_str(), &rc, DT_CALCRECT, nullptr), 0);
        EXPECT_EQ(GetLastError(), error);
    }
    LOGFONT endless = Font(20);
    std::memset(endless.lfFaceName, 'x', sizeof endless.lfFaceName);
    for (const LOGFONT& logFont : {endless, Font(INT_MAX), Font(INT_MIN), Font(-32768)}) {
        EXPECT_FALSE(dc.CreateFontIndirectA(logFont));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    }
    for (const SIZE& size : {SIZE{0, 1}, SIZE{1, -1}, SIZE{32768, 1}, SIZE{16385, 16384}})
        EXPECT_FALSE(CTextCanvas().CreateBitmap(size.cx, size.cy)) << size.cx;
    EXPECT_NE(Measure(dc, "still").cx, 0) << "the font that was selected stays";
}

TEST(Text, StandsWhereTheFormatWordSays) {
    const LOGFONT logFont = SharpFont(40);
    CTextDC dc = ContextOf(logFont);
    const SIZE extent = Measure(dc, "Hill");
    const Picture left = Draw(logFont, "Hill");
    const LONG rest = canvasSize.cx - 16 - extent.cx;
    const LONG below = canvasSize.cy - 16 - extent.cy;
    const struct {
        DWORD format;
        LONG x;
        LONG y;
    } cases[] = {{DT_CENTER, rest / 2, 0},
                 {DT_RIGHT, rest, 0},
                 {DT_VCENTER, 0, 0},
                 {DT_SINGLELINE | DT_VCENTER, 0, below / 2},
                 {DT_SINGLELINE | DT_BOTTOM | DT_RIGHT, rest, below}};
    for (const auto& c : cases) {
        const Picture moved = Draw(logFont, "Hill", c.format);
        for (LONG y = 0; y < extent.cy; ++y)
            for (LONG x = 0; x < extent.cx; ++x)
                ASSERT_EQ(moved.At(8 + x + c.x, 8 + y + c.y), left.At(8 + x, 8 + y)) << c.format;
    }
}

TEST(Text, ReadsAsItsScriptDoes) {
    const LOGFONT logFont = Font(40);
    EXPECT_EQ(Draw(logFont, "a\xFF\xC3").bytes, Draw(logFont, "a\uFFFD\uFFFD").bytes);
    EXPECT_EQ(Draw(logFont, "e\u0301").bytes, Draw(logFont, "\u00E9").bytes) << "a mark on its letter";
    EXPECT_GT(Draw(Font(40, "No Such Face"), "x").Columns().second, 8);
    // Alef is wide, vav is narrow: read from the right, the vav stands at the left end.
    const Picture vav = Draw(logFont, "\u05D5");
    const Picture word = Draw(logFont, "\u05D0\u05D5");
    for (LONG x = 0; x <= vav.Columns().second; ++x)
        for (LONG y = 0; y < canvasSize.cy; ++y)
            ASSERT_EQ(word.At(x, y), vav.At(x, y)) << x;
    // Two joined letters are narrower than the same two by themselves.
    CTextDC dc = ContextOf(logFont);
    EXPECT_LT(Measure(dc, "\u0628\u0628").cx, Measure(dc, "\u0628").cx * 2);
}

TEST(Text, IsSmoothUnlessItsFontSaysOtherwise) {
    const auto isGrey = [](BYTE value) { return value != 0 && value != 255; };
    const Picture smooth = Draw(Font(40), "SO");
    const Picture sharp = Draw(SharpFont(40), "SO");
    EXPECT_TRUE(std::any_of(smooth.bytes.begin(), smooth.bytes.end(), isGrey));
    EXPECT_TRUE(std::none_of(sharp.bytes.begin(), sharp.bytes.end(), isGrey));
}

TEST(Text, IsStrokedOnBothSidesOfItsEdges) {
    constexpr LONG nPen = 6;
    const Picture fill = Draw(SharpFont(120), "l"); // a bar
    const auto [left, right] = fill.Columns();
    const Picture stroke = Draw(SharpFont(120), "l", 0, nPen);
    for (LONG x = 0; x < canvasSize.cx; ++x) {
        const LONG fromEdge = std::min(std::abs(2 * (x - left) + 1), std::abs(2 * (right + 1 - x) - 1)); // half pixels
        if (std::abs(fromEdge - nPen) <= 2) continue;
        EXPECT_EQ(stroke.At(x, 70), fromEdge < nPen ? 255 : 0) << x;
    }
}

TEST(TextCanvas, AveragesBlocksOfTheCanvasItStandsFor) {
    for (const LONG nBlock : {2, 5, 8, 10, 16})
        for (const LONG nPen : {0, 1, 12}) {
            const LOGFONT logFont = SharpFont(70);
            const Picture whole = Draw(logFont, "fA\u0301W\nWA", DT_CENTER, nPen);
            const Picture averaged = Draw(logFont, "fA\u0301W\nWA", DT_CENTER, nPen, nBlock);
            ASSERT_EQ(averaged.size, (SIZE{canvasSize.cx / nBlock, canvasSize.cy / nBlock}));
            for (LONG y = 0; y < averaged.size.cy; ++y)
                for (LONG x = 0; x < averaged.size.cx; ++x) {
                    int sum = nBlock * nBlock / 2;
                    for (LONG i = 0; i < nBlock * nBlock; ++i)
                        sum += whole.At(x * nBlock + i % nBlock, y * nBlock + i / nBlock);
                    ASSERT_NEAR(averaged.At(x, y), sum / (nBlock * nBlock), nBlock % 2 == 0 ? 0 : 1);
                }
        }
}

TEST(TextCanvas, KeepsNoMoreThanItsBudget) {
    constexpr std::size_t most = std::size_t{48} << 20;
    for (const LONG height : {3000, 3100})
        for (const char* pszText : {"ABCDEFGHIJKLM", "NOPQRSTUVWXYZ", "abcdefghijklm"}) {
            static_cast<void>(Draw(SharpFont(height), pszText, 0, 64, 16));
            EXPECT_LE(CShapeCache::Size(), most);
        }
    EXPECT_GT(CShapeCache::Size(), most / 2);
    CShapeCache::Clear();
    EXPECT_EQ(CShapeCache::Size(), 0u);
}

TEST(Text, MayBeDrawnOnManyThreads) {
    const Picture want = Draw(SharpFont(60), "same 123", 0, 4, 2);
    const Picture wantSmooth = Draw(Font(33), "same 123");
    const auto draw = [&](int thread) {
        for (LONG round = 0; round < 12; ++round) {
            EXPECT_EQ(Draw(SharpFont(60), "same 123", 0, 4, 2).bytes, want.bytes);
            EXPECT_EQ(Draw(Font(33), "same 123").bytes, wantSmooth.bytes);
            static_cast<void>(Draw(Font(20 + 12 * thread + round), "another font each time"));
            CShapeCache::Clear();
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(draw, i);
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
} // namespace vellumcaster
