#include "engine/outline_string_to_alpha.h"
#include "engine/text_rasteriser.h"
#include "image/blob_holder.h"
#include "platform/text/kept_pictures.h"
#include "platform/text/text_dc.h"
#include "support/allocation_counter.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

namespace vellumcaster {
namespace {

using namespace CImageHelp;
using testing_support::CAllocationCounter;
using testing_support::CFailingAllocation;

constexpr LONG nMargin = 4;

LOGFONT Font(LONG lfHeight, const char* pszFace = "DejaVu Sans") {
    LOGFONT logFont;
    logFont.lfHeight = lfHeight;
    std::strncpy(logFont.lfFaceName, pszFace, sizeof logFont.lfFaceName - 1);
    return logFont;
}

SIZE Measure(LOGFONT logFont, const char* pszText) {
    CTextDC dc;
    RECT rc;
    EXPECT_TRUE(dc.CreateCompatibleDC() && dc.CreateFontIndirectA(logFont));
    EXPECT_NE(dc.DrawTextA(pszText, &rc, DT_CALCRECT, nullptr), 0);
    return {rc.right, rc.bottom};
}

/// The pictures of one drawing.
struct Drawing {
    HRESULT hr;
    SIZE size;
    CTaskBlob pictures[3]; ///< text, complement, outline

    template <class Draw>
    Drawing(SIZE least, const Draw& draw) : size(least) {
        BYTE* p[3] = {};
        hr = draw(&size, p);
        for (int i = 0; i < 3; ++i)
            if (p[i]) pictures[i].TakeOver(p[i], static_cast<std::size_t>(size.cx * size.cy) * 4);
    }
    [[nodiscard]] std::string_view Bytes(int i) const {
        return {reinterpret_cast<const char*>(pictures[i].Data()), pictures[i].Size()};
    }
};

Drawing DrawPlain(const char* pszText, const LOGFONT* pLogFont, SIZE least = {}, LONG nTextFormat = 4) {
    return {least, [&](SIZE* pSize, BYTE** pp) {
                return String2ImageAlpha(pszText, pLogFont, pSize, &pp[0], &pp[1], nTextFormat, nMargin);
            }};
}

Drawing DrawOutline(const OutlineJob& job, OutlineRoad road = OutlineRoad::Shortest, SIZE least = {}) {
    return {least, [&](SIZE* pSize, BYTE** pp) { return DrawOutlined(job, road, pSize, &pp[0], &pp[1], &pp[2]); }};
}

LONG RoundUp(LONG value, LONG step) { return (value + step - 1) / step * step; }

TEST(OutlinedText, IsDrawnAtTheMultipleThatItsHeightAsksFor) {
    const std::pair<LONG, LONG> cases[] = {{20, 2},  {18, 2}, {17, 8}, {14, 8}, {13, 12},
                                           {10, 12}, {9, 16}, {1, 16}, {0, 16}, {-20, 16}};
    for (const auto& [lfHeight, nScale] : cases) {
        SCOPED_TRACE(lfHeight);
        const LOGFONT logFont = Font(lfHeight);
        const SIZE extent = Measure(Font(lfHeight * nScale), "00:12:34:56");
        const Drawing drawing = DrawOutline({"00:12:34:56", &logFont, 2.5, 4, nMargin, 2});
        ASSERT_EQ(drawing.hr, S_OK);
        EXPECT_EQ(drawing.size, (SIZE{RoundUp(extent.cx + 2 * nMargin + 3, 8 * nScale) / nScale,
                                      RoundUp(extent.cy + 2 * nMargin + 3, 2 * nScale) / nScale}));
    }
}

TEST(OutlinedText, HasTheSameBytesByEitherRoad) {
    const char* texts[] = {"01:23:45:12",
                           "AVA\nTo. fj",
                           "\u0633\u0644\u0627\u0645 & \u05D0\u05D5",
                           "a\u0301\u0308\u0323_",
                           "over\u0336\u0336lap\u0338",
                           "a\tb\r\nc   d"};
    const struct {
        LONG lfHeight, nScale;
        double outlineWidth;
        LONG nTextFormat, nMargin, lfEscapement;
        const char* pszFace;
    } cases[] = {
        {-20, 2, 2, 5, 4, 0, "DejaVu Sans"},    {24, 2, 2, 4, 4, 0, "DejaVu Sans"},
        {24, 3, 0.7, 6, -9, 0, "DejaVu Serif"}, {16, 2, 5, 4, 0, 0, "DejaVu Sans Mono"},
        {12, 2, -1, 0x51, 4, 0, "DejaVu Sans"}, {8, 2, 1, 5, 4, 0, "DejaVu Serif"},
        {30, 7, 3, 5, 2, 250, "No Such Face"},  {24, 1, 2, 4, 4, 0, "DejaVu Sans"},
    };
    for (const auto& c : cases)
        for (const char* pszText : texts) {
            LOGFONT logFont = Font(c.lfHeight, c.pszFace);
            logFont.lfUnderline = pszText == texts[1];
            logFont.lfStrikeOut = c.lfEscapement != 0;
            logFont.lfItalic = c.nScale == 3;
            logFont.lfEscapement = c.lfEscapement;
            const OutlineJob job{pszText, &logFont, c.outlineWidth, c.nTextFormat, c.nMargin, c.nScale};
            const Drawing literal = DrawOutline(job, OutlineRoad::Literal, {40, 60});
            const Drawing shortest = DrawOutline(job, OutlineRoad::Shortest, {40, 60});
            ASSERT_TRUE(literal.hr == S_OK && shortest.hr == S_OK);
            EXPECT_EQ(shortest.size, literal.size);
            for (int i = 0; i < 3; ++i)
                EXPECT_TRUE(shortest.Bytes(i) == literal.Bytes(i)) << pszText << " at " << c.lfHeight << ", " << i;
        }
}

TEST(OutlinedText, IsStrokedAlikeByAWidthOfEitherSign) {
    const LOGFONT logFont = Font(24);
    const auto outline = [&](double width) {
        return DrawOutline({"ab", &logFont, width, 4, nMargin, 2}, OutlineRoad::Shortest, {200, 48});
    };
    EXPECT_TRUE(outline(-3).Bytes(2) == outline(3).Bytes(2));
    EXPECT_FALSE(outline(-3).Bytes(2) == outline(-1).Bytes(2));
}

TEST(TextPictures, SayOutsideAndInsideAndTheirComplement) {
    const LOGFONT logFont = Font(60);
    for (const Drawing& drawing : {DrawPlain("&l", &logFont), DrawOutline({"&l", &logFont, 2, 4, nMargin, 2})}) {
        ASSERT_EQ(drawing.hr, S_OK);
        EXPECT_TRUE(drawing.size.cx % 8 == 0 && drawing.size.cy % 2 == 0);
        const std::string_view fore = drawing.Bytes(0);
        for (std::size_t i = 0; i < fore.size(); ++i) {
            ASSERT_EQ(fore[i], fore[i & ~std::size_t{3}]) << "all four bytes are equal";
            ASSERT_EQ(static_cast<BYTE>(fore[i]) + static_cast<BYTE>(drawing.Bytes(1)[i]), 255);
        }
        EXPECT_NE(fore.find('\xFF'), std::string_view::npos);
        EXPECT_EQ(fore.front(), '\0');
    }
    EXPECT_NE(DrawPlain("&l", &logFont).size, DrawPlain("l", &logFont).size) << "the ampersand is drawn";
    EXPECT_EQ(DrawPlain("no font", nullptr).hr, S_OK);
    EXPECT_EQ(DrawOutline({"no font", nullptr, 2, 4, nMargin, 2}).hr, S_OK);
}

TEST(TextPictures, GrowWithTheirTextAndDoNotShrink) {
    const LOGFONT logFont = Font(24);
    const SIZE shorter = DrawPlain("short", &logFont).size;
    const SIZE longer = DrawPlain("much longer", &logFont, shorter).size;
    EXPECT_GT(longer.cx, shorter.cx);
    EXPECT_EQ(DrawPlain("short", &logFont, longer).size, longer);
    EXPECT_EQ(DrawPlain("short", &logFont, {401, 77}).size, (SIZE{408, 78}));
    EXPECT_EQ(DrawOutline({"short", &logFont, 2, 4, nMargin, 2}, OutlineRoad::Shortest, {401, 77}).size,
              (SIZE{408, 78}));
    const auto leftmostByte = [&](LONG nTextFormat) {
        return DrawPlain("l", &logFont, {400, 40}, nTextFormat).Bytes(0).find_first_not_of('\0') % 1600;
    };
    EXPECT_LT(leftmostByte(4), 100u) << "to the left";
    EXPECT_GT(leftmostByte(6), 1500u) << "to the right";
}

TEST(TextPictures, AreNotGivenOutAfterAFailure) {
    const LOGFONT good = Font(20);
    LOGFONT endless = good;
    std::memset(endless.lfFaceName, 'x', sizeof endless.lfFaceName);
    const LOGFONT highest = Font(INT_MAX);
    const LOGFONT lowest = Font(INT_MIN);
    const std::string megabyte(1 << 20, 'x');
    const auto answer = [](const OutlineJob& job, SIZE least = {}) {
        const Drawing outlined = DrawOutline(job, OutlineRoad::Shortest, least);
        EXPECT_EQ(outlined.size, least);
        for (const CTaskBlob& picture : outlined.pictures)
            EXPECT_TRUE(picture.IsEmpty());
        if (job.dblOutlineWidth == 2 && job.nScale == 2) {
            EXPECT_EQ(DrawPlain(job.pszText, job.pLogFont, least).hr, outlined.hr);
        }
        return outlined.hr;
    };
    EXPECT_EQ(answer({nullptr, &good, 2, 4, nMargin, 2}), E_POINTER);
    EXPECT_EQ(answer({"", &good, 2, 4, nMargin, 2}), E_FAIL);
    EXPECT_EQ(answer({"x", &endless, 2, 4, nMargin, 2}), E_INVALIDARG);
    EXPECT_EQ(answer({"x", &highest, 2, 4, nMargin, 2}), E_INVALIDARG);
    EXPECT_EQ(answer({"x", &lowest, 2, 4, nMargin, 2}), E_INVALIDARG);
    EXPECT_EQ(answer({megabyte.c_str(), &good, 2, 4, nMargin, 2}), E_INVALIDARG);
    EXPECT_EQ(answer({"x", &good, 2, 4, nMargin, 2}, {32768, 2}), E_INVALIDARG);
    EXPECT_EQ(answer({"x", &good, 2, 4, nMargin, 2}, {INT_MAX, INT_MAX}), E_INVALIDARG);
    EXPECT_EQ(answer({"x", &good, 2, 4, nMargin, 2}, {32000, 9000}), E_INVALIDARG);
    EXPECT_EQ(answer({"x", &good, -1e300, 4, nMargin, 2}), E_INVALIDARG);
    EXPECT_EQ(answer({"x", &good, 2, 4, nMargin, 0}), E_INVALIDARG);
    EXPECT_EQ(answer({"x", &good, 2, 4, nMargin, INT_MAX}), E_INVALIDARG);
    EXPECT_EQ(String2ImageAlpha("x", &good, nullptr, nullptr, nullptr, 4, nMargin), E_POINTER);
    EXPECT_EQ(DrawOutlined({"x", &good, 2, 4, nMargin, 2}, OutlineRoad::Shortest, nullptr, nullptr, nullptr, nullptr),
              E_POINTER);
}

TEST(TextPictures, ComeWithoutTheirComplementWhereThereIsNoMemoryForIt) {
    if (!CFailingAllocation::IsAvailable()) GTEST_SKIP() << "the allocator belongs to the sanitizer";
    const LOGFONT logFont = Font(20);
    static_cast<void>(DrawPlain("warm", &logFont));
    const CAllocationCounter counter;
    static_cast<void>(DrawPlain("warm", &logFont));
    const CFailingAllocation failing(counter.Count() - 1); // the complement comes last
    const Drawing drawing = DrawPlain("warm", &logFont);
    ASSERT_TRUE(failing.HasFailed());
    EXPECT_EQ(drawing.hr, S_OK);
    EXPECT_FALSE(drawing.pictures[0].IsEmpty());
    EXPECT_TRUE(drawing.pictures[1].IsEmpty());
}

TEST(OutlinedText, KeepsNothingMoreOnceItsGlyphsHaveBeenSeen) {
    const LOGFONT logFont = Font(-24);
    std::size_t cbKept = 0;
    for (int frame = 0; frame < 3000; ++frame) {
        ASSERT_EQ(DrawOutline({std::to_string(frame).c_str(), &logFont, 2, 4, nMargin, 2}).hr, S_OK);
        if (frame == 1500) cbKept = CShapeCache::Size();
    }
    EXPECT_EQ(CShapeCache::Size(), cbKept);
}

} // namespace
} // namespace vellumcaster
