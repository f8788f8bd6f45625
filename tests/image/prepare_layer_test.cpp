#include "image/prepare_layer.h"

#include "image/block_fill.h"
#include "image/plane_layout.h"
#include "support/random_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace vellumcaster {
namespace {

using namespace format_code;

constexpr SIZE size{6, 2};
constexpr std::uint32_t streamFormats[] = {RGB32, RGB24, YUY2, YVYU, UYVY, YV12, I420};

/// Every pixel blue 10, green 20, red 30, with this alpha.
CTaskBlob FlatPicture(BYTE alpha) {
    CTaskBlob blob;
    EXPECT_EQ(blob.Resize(6 * 2 * 4), S_OK);
    for (std::size_t i = 0; i < blob.Size(); ++i)
        blob.Data()[i] = i % 4 == 3 ? alpha : static_cast<BYTE>(10 * (i % 4 + 1));
    return blob;
}

/// Each weight of a layer is the first, or the second behind the last whole eight; rows of RGB24 end in two gaps.
void ExpectWeights(const OverlayLayer& layer, std::uint32_t format, BYTE inEights, BYTE behind) {
    const std::size_t cb = CPictureFormats::GetBufferSize({format, 6, -2, 0});
    ASSERT_EQ(layer.planeWeight.Size(), cb);
    for (std::size_t i = 0; i < cb; ++i)
        if (format != RGB24 || i % 20 < 18) {
            EXPECT_EQ(layer.planeWeight.Data()[i], i < cb / 8 * 8 ? inEights : behind) << i;
        }
}

OVERLAY_PROPS Props(LONG keyMin, LONG keyMax) {
    OVERLAY_PROPS props;
    props.sAlphaValue = 255;
    props.nColorKeyMin = keyMin, props.nColorKeyMax = keyMax;
    return props;
}

TEST(PrepareLayer, MakesThePlanesOfAnImageAndOfATextInEveryStreamFormat) {
    for (const std::uint32_t format : streamFormats) {
        SCOPED_TRACE(testing::Message() << std::hex << format);
        OVERLAY_PROPS props = Props(-1, -1);
        OverlayLayer layer;
        ASSERT_EQ(PrepareImage2(FlatPicture(200), size, format, props, layer), S_OK);
        EXPECT_EQ(layer.planeColor.Size(), 48u);
        ExpectWeights(layer, format, 199, 199); // (200 * 255 + 128) >> 8
        // Blue, or Y = (6423 * 10 + 33030 * 20 + 16843 * 30 + 0x108000) >> 16 = 35.
        EXPECT_EQ(layer.planeColor.Data()[format == UYVY ? 1 : 0], format == RGB32 || format == RGB24 ? 10 : 35);

        props.sAlphaValue = 0;
        ASSERT_EQ(PrepareImage2(FlatPicture(200), size, format, props, layer), S_OK);
        EXPECT_FALSE(layer.TakesPartInMixing());

        constexpr std::uint32_t color = 0x80302010;
        ASSERT_EQ(PrepareImage2(FlatPicture(255), size, format, color, 99, layer), S_OK);
        std::vector<BYTE> want(48);
        const PictureFormat pf{format, 6, -2, 0};
        ASSERT_EQ(CPictureFormats::FillBlock(want.data(), &pf, color, nullptr), S_OK);
        EXPECT_TRUE(std::equal(want.begin(), want.begin() + 18, layer.planeColor.Data()));
        ExpectWeights(layer, format, 50, 49); // effective alpha round(99 * 128 / 255) = 50; (255 * 50 + 128) >> 8
    }
}

TEST(PrepareLayer, AppliesTheKeyBeforeTheWeights) {
    const OVERLAY_PROPS props = Props(-1, 0);
    CTaskBlob picture = FlatPicture(255);
    picture.Data()[44] = 11; // the last pixel differs
    OverlayLayer layer;
    ASSERT_EQ(PrepareImage2(picture, size, RGB32, props, layer), S_OK);
    const BYTE* pWeight = layer.planeWeight.Data();
    EXPECT_TRUE(std::all_of(pWeight, pWeight + 44, [](BYTE w) { return w == 0; }));
    EXPECT_EQ(pWeight[44], 254);
}

TEST(PrepareLayer, EmptiesWhatATextDoesNotDraw) {
    const struct {
        std::uint32_t color;
        std::int16_t alpha;
        bool bCoverage, bColor, bWeight;
    } cases[] = {{0x00FFFFFF, 255, true, false, false},
                 {0xFFFFFFFF, 0, true, true, false},
                 {0xFFFFFFFF, 255, false, false, false},
                 {0x01FFFFFF, 1, true, true, false}, // 1 / 255 rounds to 0
                 {0xFFFFFFFF, 1, true, true, true}};
    for (const auto& c : cases) {
        OverlayLayer layer;
        ASSERT_EQ(PrepareImage2(FlatPicture(255), size, I420, 0xFFFFFFFF, 255, layer), S_OK);
        const CTaskBlob coverage = c.bCoverage ? FlatPicture(255) : CTaskBlob();
        ASSERT_EQ(PrepareImage2(coverage, size, I420, c.color, c.alpha, layer), S_OK);
        EXPECT_EQ(!layer.planeColor.IsEmpty(), c.bColor);
        EXPECT_EQ(!layer.planeWeight.IsEmpty(), c.bWeight);
        EXPECT_EQ(!layer.planeAlpha.IsEmpty(), c.bCoverage);
    }
}

TEST(PrepareLayer, LeavesALayerUndrawnWhenAStepFails) {
    const CTaskBlob picture = FlatPicture(255);
    const struct {
        SIZE size;
        std::uint32_t format;
        HRESULT hr;
    } cases[] = {{size, ARGB32, E_NOTIMPL},     {{6, 1}, YUY2, E_INVALIDARG},   {{5, 2}, I420, E_INVALIDARG},
                 {{6, 4}, RGB32, E_INVALIDARG}, {{-6, 2}, RGB32, E_INVALIDARG}, {{32768, 2}, RGB32, E_INVALIDARG}};
    for (const auto& c : cases) {
        const OVERLAY_PROPS props = Props(-1, -1);
        OverlayLayer layer;
        ASSERT_EQ(PrepareImage2(picture, size, I420, props, layer), S_OK);
        ASSERT_TRUE(layer.TakesPartInMixing());
        EXPECT_EQ(PrepareImage2(picture, c.size, c.format, props, layer), c.hr);
        EXPECT_FALSE(layer.TakesPartInMixing());
        EXPECT_LT(PrepareImage2(picture, c.size, c.format, 0xFFFFFFFF, 255, layer), 0);
        EXPECT_FALSE(layer.TakesPartInMixing());
    }
}

} // namespace
} // namespace vellumcaster
