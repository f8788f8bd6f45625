#include "support/mixer_control.h"

#include <gtest/gtest.h>

#include <vector>

namespace vellumcaster {
namespace {

using namespace testing_support;

class RenderItem : public testing::Test, protected MixerControl {
protected:
    static ImageInfoTag InfoOf(const SIZE& size, WORD nBits) { return {size.cx, size.cy, nBits, 0, 0}; }

    static std::vector<BYTE> Canvas(const SIZE& size, WORD nBits) {
        const auto cbRow = static_cast<std::size_t>(size.cx) * nBits / 8;
        return std::vector<BYTE>(cbRow * static_cast<std::size_t>(size.cy), 90);
    }

    /// What a frame of the item's own size looks like with the item on it.
    std::vector<BYTE> MixedAlone(const SIZE& size, WORD nBits) const {
        const FrameFormat format{nBits == 32 ? eRGB32 : eRGB24, size.cx, size.cy, 0, 0};
        EXPECT_EQ(spMixer->SetFormat(&format), S_OK);
        EXPECT_EQ(spMixer->Start(), S_OK);
        std::vector<BYTE> frame = Canvas(size, nBits);
        EXPECT_EQ(spMixer->MixFrame(frame.data(), frame.size(), nullptr, nullptr, nullptr, nullptr), S_OK);
        EXPECT_EQ(spMixer->Stop(), S_OK);
        return frame;
    }
};

TEST_F(RenderItem, DrawsATextAsAFrameShowsIt) {
    const LONG cookie = AddText();
    OVERLAY_PROPS props = PropsOf(cookie);
    props.lBackColor = static_cast<LONG>(0x80336699);
    props.dblOutlineWidth = 1.5;
    props.lOutColor = static_cast<LONG>(0xFF0000FF);
    ASSERT_EQ(spControl->SetItemProps(cookie, &props, 0), S_OK);
    const SIZE size = SizeOf(cookie);
    for (const WORD nBits : {WORD{32}, WORD{24}}) {
        std::vector<BYTE> rendered = Canvas(size, nBits);
        ImageInfoTag info = InfoOf(size, nBits);
        info.biHeight = -info.biHeight; // the sign does not count
        ASSERT_EQ(spItem->RenderItem(cookie, nullptr, 0, &info, 0, rendered.data()), S_OK);
        EXPECT_NE(rendered, Canvas(size, nBits));
        EXPECT_EQ(rendered, MixedAlone(size, nBits));
    }
}

TEST_F(RenderItem, TriesARecordOutAndLeavesTheItemAsItIs) {
    const LONG cookie = AddText(eText, u"text");
    const SIZE size = SizeOf(cookie);
    const std::vector<BYTE> before = MixedAlone(size, 32);
    // The same glyphs over another box, so that the trial has the item's size.
    const CBstr other = Text(u"txet");
    OVERLAY_PROPS trial = PropsOf(cookie);
    trial.bsTextString = other.Get();
    trial.lBackColor = static_cast<LONG>(0xFF00FF00);
    ImageInfoTag info = InfoOf(size, 32);
    std::vector<BYTE> tried = Canvas(size, 32);
    ASSERT_EQ(spItem->RenderItem(cookie, &trial, 0, &info, 0, tried.data()), S_OK);
    EXPECT_EQ(MixedAlone(size, 32), before);

    ASSERT_EQ(spControl->SetItemProps(cookie, &trial, 0), S_OK);
    EXPECT_EQ(tried, MixedAlone(size, 32)) << "as the item looks with the record applied";
}

TEST_F(RenderItem, RefusesWhatCannotBeDrawn) {
    const LONG text = AddText();
    const SIZE size = SizeOf(text);
    std::vector<BYTE> canvas = Canvas({size.cx + 2, size.cy}, 32);
    const std::vector<BYTE> untouched = canvas;
    const ImageInfoTag own = InfoOf(size, 32);
    const ImageInfoTag wider = InfoOf({size.cx + 2, size.cy}, 32);
    const ImageInfoTag negative = InfoOf({-size.cx, size.cy}, 32);
    const auto render = [&](LONG cookie, const ImageInfoTag* pInfo) {
        return spItem->RenderItem(cookie, nullptr, 0, pInfo, 0, canvas.data());
    };
    EXPECT_EQ(render(text, nullptr), E_POINTER);
    EXPECT_EQ(render(12345, &own), E_INVALIDARG);
    EXPECT_EQ(render(text, &wider), E_NOTIMPL);
    EXPECT_EQ(render(text, &negative), E_INVALIDARG);
    EXPECT_EQ(render(AddText(eFrameNumber), &own), E_UNEXPECTED) << "not drawn yet";
    EXPECT_EQ(render(AddPicture(), &wider), S_OK) << "a picture is only prepared";
    EXPECT_EQ(spItem->RenderItem(text, nullptr, 0, &own, 0, nullptr), E_INVALIDARG);
    EXPECT_EQ(canvas, untouched);
}

} // namespace
} // namespace vellumcaster
