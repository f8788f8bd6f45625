#include "engine/item_planes.h"

#include "image/picture_format.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vellumcaster {
namespace {

using format_code::ARGB32;
using format_code::I420;
using format_code::RGB32;

constexpr SIZE size{4, 2};

void FillBlob(CTaskBlob& blob, BYTE value) { ASSERT_EQ(blob.Alloc(4 * 2 * 4, true, value), S_OK); }

/// A text whose three layers are covered whole.
OverlayItem MakeText() {
    OverlayItem item;
    item.sizeItem = size;
    item.props.sAlphaValue = 255;
    item.props.lForeColor = static_cast<LONG>(0xFF0000FF);
    item.props.lBackColor = static_cast<LONG>(0x8000FF00);
    item.props.lOutColor = static_cast<LONG>(0x40FF0000);
    item.props.dblOutlineWidth = 2.0;
    for (OverlayLayer* pLayer : {&item.layerFore, &item.layerBack, &item.layerOutline})
        FillBlob(pLayer->blobAlpha, 0xFF);
    return item;
}

/// First bytes of the planes, fore, back and outline; -1 for an empty one.
struct FirstBytes {
    int color[3];
    int weight[3];

    explicit FirstBytes(const OverlayItem& item) {
        const OverlayLayer* layers[] = {&item.layerFore, &item.layerBack, &item.layerOutline};
        const auto first = [](const CVirtualBlob& blob) { return blob.IsEmpty() ? -1 : int{blob.Data()[0]}; };
        for (int i = 0; i < 3; ++i) {
            color[i] = first(layers[i]->planeColor);
            weight[i] = first(layers[i]->planeWeight);
        }
    }
};

#define VELLUM_EXPECT_PLANES(item, c0, c1, c2, w0, w1, w2)                                                             \
    do {                                                                                                               \
        const FirstBytes got(item);                                                                                    \
        EXPECT_EQ((std::array{got.color[0], got.color[1], got.color[2], got.weight[0], got.weight[1], got.weight[2]}), \
                  (std::array{c0, c1, c2, w0, w1, w2}));                                                               \
    } while (false)

TEST(ItemPlanes, ArePreparedOnlyForAConnectedPin) {
    OverlayItem text = MakeText();
    EXPECT_EQ(PrepareImage(text, 0), S_OK);
    VELLUM_EXPECT_PLANES(text, -1, -1, -1, -1, -1, -1);
    OverlayItem image;
    image.eType = eImage;
    EXPECT_EQ(PrepareImage(image, 0), S_OK);
    EXPECT_EQ(PrepareImage(image, I420), E_UNEXPECTED);
    OverlayItem undrawn;
    EXPECT_EQ(PrepareImage(undrawn, I420), S_OK);
    EXPECT_EQ(PrepareImage(text, ARGB32), E_NOTIMPL);
}

TEST(ItemPlanes, FollowATextsColoursAndAlphas) {
    OverlayItem text = MakeText();
    ASSERT_EQ(PrepareImage(text, I420), S_OK);
    // Red, green, blue in Y; weights (255 * 255 + 128) >> 8, (255 * 128 + 128) >> 8, (255 * 64 + 128) >> 8.
    VELLUM_EXPECT_PLANES(text, 82, 145, 41, 254, 128, 64);

    text.props.lForeColor = static_cast<LONG>(0x00FFFFFF);
    text.props.lBackColor = static_cast<LONG>(0xFFFFFFFF);
    text.props.dblOutlineWidth = 0.0;
    EXPECT_EQ(UpdateItemColors(text, I420), S_OK);
    VELLUM_EXPECT_PLANES(text, -1, 235, -1, 254, 128, 64);
    EXPECT_EQ(UpdateItemAlpha(text, I420), S_OK);
    VELLUM_EXPECT_PLANES(text, -1, 235, -1, -1, 254, 64);

    text.props.sAlphaValue = 51;
    text.layerOutline.planeAlpha.Clear();
    EXPECT_EQ(UpdateItemAlpha(text, I420), S_OK);
    VELLUM_EXPECT_PLANES(text, -1, 235, -1, -1, 51, -1);
    EXPECT_EQ(UpdateItemColors(text, 0), E_INVALIDARG);
}

TEST(ItemPlanes, FollowAnImagesAlpha) {
    OverlayItem image = MakeText();
    ASSERT_EQ(PrepareImage(image, RGB32), S_OK);
    image.eType = eImage;
    FillBlob(image.blobImage, 0x80);
    image.props.nColorKeyMin = image.props.nColorKeyMax = -1;
    ASSERT_EQ(PrepareImage(image, RGB32), S_OK);
    VELLUM_EXPECT_PLANES(image, 0x80, 0, 255, 128, 128, 64); // the other layers stay
    EXPECT_EQ(UpdateItemColors(image, RGB32), S_OK);
    image.props.sAlphaValue = 100;
    EXPECT_EQ(UpdateItemAlpha(image, RGB32), S_OK);
    VELLUM_EXPECT_PLANES(image, 0x80, -1, -1, 50, -1, -1);
    image.props.sAlphaValue = 0;
    EXPECT_EQ(UpdateItemAlpha(image, RGB32), S_OK);
    VELLUM_EXPECT_PLANES(image, 0x80, -1, -1, -1, -1, -1);
}

} // namespace
} // namespace vellumcaster
