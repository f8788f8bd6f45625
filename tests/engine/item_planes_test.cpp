#include "engine/item_planes.h"

#include "engine/overlay_engine.h"
#include "engine/stream_painter.h"
#include "image/picture_format.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vellumcaster {
namespace {

using format_code::ARGB32;
using format_code::I420;
using format_code::RGB32;
using format_code::YUY2;

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

struct MemoryImage {
    ImageInfoTag info;
    std::array<BYTE, 4 * 2 * 3> pixels{};

    MemoryImage() {
        info.biWidth = 4;
        info.biHeight = 2;
        info.biBitCount = 24;
        info.biSizeImage = sizeof pixels;
        pixels.fill(90);
    }
};

TEST(AddImage, PutsAHiddenPictureOnTop) {
    CStreamPainter painter;
    COverlayEngine engine(painter);
    MemoryImage image;
    SIZE wanted;
    Cookie cookie = -1;
    ASSERT_EQ(engine.AddImageFromMemory2(&image.info, 24, image.pixels.data(), nullptr, -1, 0, &wanted, &cookie), S_OK);
    EXPECT_EQ(wanted, size);
    OVERLAY_PROPS props;
    ASSERT_EQ(engine.GetItemProps(cookie, &props), S_OK);
    EXPECT_EQ(std::u16string_view(props.bsTextString), u"Memory Image");
    SysFreeString(props.bsTextString);
    EXPECT_TRUE(props.bShow == 0 && props.sAlphaValue == 255 && props.nColorKeyMin == -1 && props.nColorKeyMax == 0);
    EXPECT_TRUE(engine.IsDirty());
}

TEST(AddImage, LeavesTheListAsItWasWhenItFails) {
    CStreamPainter painter;
    COverlayEngine engine(painter);
    MemoryImage image;
    const auto add = [&](ImageInfoTag* pInfo, DWORD cb, const BYTE* pPixels) {
        return engine.AddImageFromMemory2(pInfo, cb, pPixels, nullptr, -1, -1, nullptr, nullptr);
    };
    EXPECT_EQ(add(nullptr, 24, image.pixels.data()), E_INVALIDARG);
    EXPECT_EQ(add(&image.info, 24, nullptr), E_INVALIDARG);
    EXPECT_EQ(add(&image.info, 23, image.pixels.data()), E_INVALIDARG);
    painter.SetInputFormat(ARGB32);
    EXPECT_EQ(add(&image.info, 24, image.pixels.data()), E_NOTIMPL);
    LONG nItems = -1;
    EXPECT_EQ(engine.GetItemCount2(&nItems), S_OK);
    EXPECT_TRUE(nItems == 0 && !engine.IsDirty());
}

TEST(AddImage, IsDrawnInWhateverFormatTheStreamTakesOn) {
    CStreamPainter painter;
    COverlayEngine engine(painter);
    MemoryImage image;
    Cookie cookie = 0;
    ASSERT_EQ(engine.AddImageFromMemory2(&image.info, 24, image.pixels.data(), nullptr, -1, -1, nullptr, &cookie),
              S_OK);
    OVERLAY_PROPS props;
    props.bShow = 1;
    props.sAlphaValue = 255;
    props.nPosX = 2;
    ASSERT_EQ(engine.SetItemProps(cookie, &props, 0), S_OK);
    for (const std::uint32_t format : {I420, YUY2, RGB32}) {
        painter.SetInputFormat(format);
        painter.SetOutputFormat(format);
        engine.PrepareItems();
        std::array<BYTE, 8 * 2 * 4> pixels{};
        const FrameBuffer frame{pixels.data(), pixels.size(), {format, 8, format == RGB32 ? -2 : 2, 8}};
        ASSERT_EQ(engine.MixFrame(frame, {8, 2}, FrameTimes{}), S_OK);
        // Grey 90 is Y 93; over 0 with a weight of 254: (93 * 254 + 255) >> 8 = 93, (90 * 254 + 255) >> 8 = 90.
        const std::size_t first = format == I420 ? 2 : format == YUY2 ? 4 : 8;
        EXPECT_EQ(pixels[first], format == RGB32 ? 90 : 93);
        EXPECT_EQ(pixels[first - 1], 0);
    }
}

} // namespace
} // namespace vellumcaster
