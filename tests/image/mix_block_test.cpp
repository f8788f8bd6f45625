#include "image/mix_block.h"

#include "support/block_check.h"
#include "support/mix_cases.h"

#include <gtest/gtest.h>

#include <array>

namespace vellumcaster {
namespace {

using namespace format_code;
using namespace testing_support;
using Bytes = std::vector<BYTE>;

BYTE Mixed(int dst, int src, int w) { return static_cast<BYTE>((dst * (255 - w) + src * w + 255) >> 8); }

HRESULT MixBlock(Inputs inputs, BYTE* pFrame, const BlockCase& block) {
    return CPictureFormats::MixBlockAlpha(inputs[0], inputs[1], pFrame, &block.a, &block.b, &block.inA, &block.inB);
}

CBlockCheck MixCheck() {
    return {[](BYTE dst, std::span<const BYTE> in) { return Mixed(dst, in[0], in[1]); }, MixBlock, 2};
}

constexpr RECT Whole(const PictureFormat& pf) { return {0, 0, pf.nWidth, static_cast<LONG>(RowCount(pf))}; }

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
    CBlockCheck check = MixCheck();
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

TEST(MixBlock, IsExactInTheCasesThatAreTimed) {
    CBlockCheck check = MixCheck();
    for (const MixCase& mixCase : mixCases)
        for (LONG i = 0; i < mixCase.nItems; i += 3) {
            const PictureFormat overlay = mixCase.Overlay();
            EXPECT_EQ(check.FirstFailure({overlay, mixCase.frame, Whole(overlay), mixCase.Place(i)}), std::nullopt);
        }
}

TEST(MixBlock, TakesWholePicturesForNull) {
    const PictureFormat pf{RGB32, 4, -2, 0};
    const Bytes color(32, 100), weight(32, 128);
    Bytes frame(32, 200);
    ASSERT_EQ(CPictureFormats::MixBlockAlpha(color.data(), weight.data(), frame.data(), &pf, &pf, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(frame, Bytes(32, 150));
}

TEST(MixBlock, AnswersWhatKeepsItFromMixingInItsOrder) {
    const PictureFormat rgb{RGB32, 4, -4, 0};
    const PictureFormat argb{ARGB32, 4, -4, 0};
    const PictureFormat badRgb{RGB32, 4, -4, 3};
    const RECT whole{0, 0, 4, 4}, small{0, 0, 2, 4}, outside{4, 0, 8, 4};
    const struct {
        const PictureFormat *pOverlay, *pFrame;
        const RECT *pInOverlay, *pOnFrame;
        HRESULT hr;
    } cases[] = {
        {nullptr, &rgb, nullptr, nullptr, E_INVALIDARG},  {&rgb, nullptr, nullptr, nullptr, E_INVALIDARG},
        {&argb, &badRgb, &whole, &whole, E_NOTIMPL}, // another format before what is wrong with it
        {&badRgb, &badRgb, &whole, &small, E_INVALIDARG}, {&rgb, &rgb, &small, &whole, E_NOTIMPL},
        {&rgb, &rgb, &whole, &outside, S_FALSE},
    };
    const Bytes color(64, 1), weight(64, 255);
    Bytes frame(64, 0);
    for (const auto& c : cases)
        EXPECT_EQ(CPictureFormats::MixBlockAlpha(color.data(), weight.data(), frame.data(), c.pOverlay, c.pFrame,
                                                 c.pInOverlay, c.pOnFrame),
                  c.hr)
            << &c - cases;
    for (const int missing : {0, 1, 2})
        EXPECT_EQ(CPictureFormats::MixBlockAlpha(missing == 0 ? nullptr : color.data(),
                                                 missing == 1 ? nullptr : weight.data(),
                                                 missing == 2 ? nullptr : frame.data(), &argb, &rgb, nullptr, nullptr),
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
    EXPECT_FALSE(SEH_MixMemory(pages.Begin() + cbPage, src.data(), weight.data(), 100));
    EXPECT_TRUE(SEH_MixMemory(pAcross, src.data(), weight.data(), 40));
    EXPECT_TRUE(std::all_of(pAcross, pAcross + 40, [](BYTE b) { return b == 77; }));
    EXPECT_EQ(pAcross[-1], 0);
}

} // namespace
} // namespace vellumcaster
