#include "image/mix_block.h"

#include "support/block_check.h"

#include <gtest/gtest.h>

#include <array>

namespace vellumcaster {
namespace {

using namespace format_code;
using namespace testing_support;
using Bytes = std::vector<BYTE>;

BYTE Mixed(BYTE dst, std::span<const BYTE> in) {
    const int src = in[0], w = in[1];
    return static_cast<BYTE>((dst * (255 - w) + src * w + 255) >> 8);
}

HRESULT MixBlock(Inputs inputs, BYTE* pFrame, const BlockCase& block) {
    return CPictureFormats::MixBlockAlpha(inputs[0], inputs[1], pFrame, &block.a, &block.b, &block.inA, &block.inB);
}

constexpr RECT MovedBy(const RECT& rc, LONG x, LONG y) {
    return {rc.left + x, rc.top + y, rc.right + x, rc.bottom + y};
}

struct Geometry {
    SIZE overlay;
    RECT inOverlay;
    SIZE onFrame; ///< from the rectangle on the overlay to its place on the frame of 20 x 12
};

constexpr Geometry geometries[] = {
    {{12, 8}, {0, 0, 12, 8}, {4, 2}},    {{12, 8}, {2, 4, 6, 8}, {10, -2}},    {{12, 8}, {0, 0, 12, 8}, {-4, 2}},
    {{12, 8}, {0, 0, 12, 8}, {2, -6}},   {{12, 8}, {0, 0, 12, 8}, {14, 0}},    {{12, 8}, {0, 0, 12, 8}, {0, 10}},
    {{12, 8}, {-2, -4, 14, 12}, {4, 2}}, {{28, 16}, {0, 0, 28, 16}, {-4, -2}}, {{12, 8}, {-4, -2, 8, 6}, {6, 8}},
    {{12, 8}, {0, 0, 12, 8}, {20, 0}},   {{12, 8}, {0, 0, 12, 8}, {-12, 0}},   {{12, 8}, {0, 0, 12, 8}, {0, 12}},
    {{12, 8}, {0, 0, 12, 8}, {0, -8}},   {{7, 5}, {0, 0, 7, 5}, {3, 1}},       {{7, 5}, {1, 1, 6, 4}, {-2, 9}},
    {{7, 5}, {-1, 0, 8, 5}, {14, -3}},
};

TEST(MixBlock, AgreesWithItsPixelsInEveryFormatRowOrderAndPlace) {
    CBlockCheck check(Mixed, MixBlock, 2);
    for (const std::uint32_t code : processedFormats)
        for (int turn = 0; turn < 8; ++turn)
            for (const Geometry& g : geometries) {
                if (g.overlay.cx % 2 != 0 && !CPicturePixels({code, 2, 2, 0}).IsRgb()) continue;
                const PictureFormat overlay{code, g.overlay.cx, turn & 1 ? g.overlay.cy : -g.overlay.cy,
                                            turn & 4 ? static_cast<std::uint32_t>(g.overlay.cx) + 6 : 0};
                const PictureFormat frame{code, 20, turn & 2 ? 12 : -12, turn & 4 ? 26u : 0u};
                const RECT place = MovedBy(g.inOverlay, g.onFrame.cx, g.onFrame.cy);
                EXPECT_EQ(check.FirstFailure({overlay, frame, g.inOverlay, place}), std::nullopt);
            }
}

TEST(MixBlock, AnswersWhatKeepsItFromMixingInItsOrder) {
    const PictureFormat rgb{RGB32, 4, -4, 0};
    const PictureFormat argb{ARGB32, 4, -4, 0};
    const PictureFormat badRgb{RGB32, 4, -4, 3};
    const RECT whole{0, 0, 4, 4}, small{0, 0, 2, 4}, outside{4, 0, 8, 4};
    const Bytes color(64, 1), weight(64, 255);
    Bytes frame(64, 0);
    const struct {
        const BYTE *pColor, *pWeight;
        const PictureFormat *pOverlay, *pFrame;
        const RECT *pInOverlay, *pOnFrame;
        HRESULT hr;
        // clang-format off
    } cases[] = {
        {nullptr, &weight[0], &argb, &rgb, &whole, &whole, E_INVALIDARG},
        {&color[0], nullptr, &argb, &rgb, &whole, &whole, E_INVALIDARG},
        {&color[0], &weight[0], nullptr, &rgb, &whole, &whole, E_INVALIDARG},
        {&color[0], &weight[0], &rgb, nullptr, &whole, &whole, E_INVALIDARG},
        {&color[0], &weight[0], &argb, &badRgb, &whole, &whole, E_NOTIMPL}, // before what else is wrong with it
        {&color[0], &weight[0], &badRgb, &badRgb, &whole, &small, E_INVALIDARG},
        {&color[0], &weight[0], &rgb, &rgb, &small, &whole, E_NOTIMPL},
        {&color[0], &weight[0], &rgb, &rgb, &whole, &outside, S_FALSE}};
    // clang-format on
    for (const auto& c : cases)
        EXPECT_EQ(CPictureFormats::MixBlockAlpha(c.pColor, c.pWeight, frame.data(), c.pOverlay, c.pFrame, c.pInOverlay,
                                                 c.pOnFrame),
                  c.hr)
            << &c - cases;
    EXPECT_EQ(CPictureFormats::MixBlockAlpha(&color[0], &weight[0], nullptr, &argb, &rgb, &whole, &whole),
              E_INVALIDARG);
    EXPECT_EQ(frame, Bytes(64, 0));
}

// Three rows of two pages each; the second page of the middle row cannot be touched in one of the blocks.
TEST(MixRows, EndsARowAtAFaultAndGoesOnWithTheNext) {
    constexpr std::size_t cbRow = 2 * cbPage;
    constexpr std::size_t forbidden = 3;
    const SIZE size{cbRow, 3};
    for (const std::size_t struck : {0u, 1u, 2u})
        for (const bool bUpward : {false, true}) {
            CPageBuffer frame(6), color(6), weight(6);
            std::fill(frame.Begin(), frame.End(), BYTE{0});
            std::fill(color.Begin(), color.End(), BYTE{77});
            std::fill(weight.Begin(), weight.End(), BYTE{255});
            CPageBuffer* pStruck = std::array{&frame, &color, &weight}[struck];
            pStruck->ForbidPage(forbidden);
            MixRows(color.Begin(), weight.Begin(), bUpward ? frame.Begin() + 2 * cbRow : frame.Begin(), &size, 1, cbRow,
                    bUpward ? -static_cast<std::ptrdiff_t>(cbRow) : cbRow);
            pStruck->PermitPage(forbidden);

            Bytes want(6 * cbPage, 77);
            std::fill_n(want.begin() + forbidden * cbPage, cbPage, BYTE{0});
            EXPECT_TRUE(std::equal(want.begin(), want.end(), frame.Begin())) << struck << " " << bUpward;
        }
}

TEST(SehMixMemory, TellsOfAFaultAndRunsOnTheNextCall) {
    CPageBuffer pages(2);
    pages.ForbidPage(1);
    const Bytes src(100, 77), weight(100, 255);
    BYTE* pAcross = pages.Begin() + cbPage - 40;
    EXPECT_FALSE(SEH_MixMemory(pAcross, src.data(), weight.data(), 100));
    EXPECT_TRUE(SEH_MixMemory(pAcross, src.data(), weight.data(), 40));
    EXPECT_TRUE(std::all_of(pAcross, pAcross + 40, [](BYTE b) { return b == 77; }));
}

} // namespace
} // namespace vellumcaster
