#include "engine/overlay_engine.h"
#include "support/flat_item.h"
#include "support/recording_painter.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace vellumcaster {
namespace {

using namespace testing_support;

OverlayItem TextItem(ITEM_TYPE eType, const char16_t* pszName) {
    OverlayItem item;
    item.eType = eType;
    if (pszName) static_cast<void>(item.bsName.Assign(std::u16string_view(pszName)));
    return item;
}

class OverlayEngine : public testing::Test {
protected:
    Cookie Add(OverlayItem item) {
        Cookie cookie = -1;
        EXPECT_EQ(m_Engine.AddItem(std::move(item), &cookie), S_OK);
        return cookie;
    }

    std::u16string NameOf(Cookie cookie) {
        OVERLAY_PROPS props;
        EXPECT_EQ(m_Engine.GetItemProps(cookie, &props), S_OK);
        std::u16string name(props.bsTextString ? props.bsTextString : u"(none)");
        SysFreeString(props.bsTextString);
        return name;
    }

    CRecordingPainter m_Painter;
    COverlayEngine m_Engine{m_Painter};
};

TEST_F(OverlayEngine, SwapsRecordsAndNotCookies) {
    const Cookie a = Add(TextItem(eText, u"a"));
    const Cookie b = Add(TextItem(eText, u"b"));
    const Cookie c = Add(TextItem(eText, u"c"));
    EXPECT_EQ(m_Engine.ChangeItemOrder(a, 5), S_OK) << "only the sign counts";
    EXPECT_EQ(NameOf(a) + NameOf(b) + NameOf(c), u"bac");
    EXPECT_EQ(m_Engine.ChangeItemOrder(c, -1), S_OK);
    EXPECT_EQ(NameOf(a) + NameOf(b) + NameOf(c), u"bca");
    EXPECT_EQ(m_Engine.ChangeItemOrder(c, 1), S_OK) << "at the top nothing moves";
    EXPECT_EQ(m_Engine.ChangeItemOrder(a, -1), S_OK) << "nor at the bottom";
    EXPECT_EQ(NameOf(a) + NameOf(b) + NameOf(c), u"bca");
    EXPECT_EQ(m_Engine.ChangeItemOrder(12345, 0), S_FALSE) << "asked before the cookie is looked at";
    EXPECT_EQ(m_Engine.ChangeItemOrder(12345, 1), E_INVALIDARG);
}

TEST(AddedItem, IsPreparedAgainForAFormatThatCameMeanwhile) {
    // The connection is made while a picture is on its way into the list.
    class CInterruptedPainter final : public IItemPainter {
    public:
        HRESULT UpdateLiveItem(OverlayItem&, bool) override { return S_OK; }
        HRESULT UpdateTextItem(OverlayItem& item) override { return PrepareImage(item); }
        HRESULT UpdateDate(OverlayItem& item, bool) override { return PrepareImage(item); }
        HRESULT UpdateTime(OverlayItem& item, bool) override { return PrepareImage(item); }
        HRESULT UpdateItemColors(OverlayItem&) override { return S_OK; }
        HRESULT UpdateItemAlpha(OverlayItem&) override { return S_OK; }
        HRESULT PrepareImage(OverlayItem& item) override {
            item.nTextFormat = nFormat;
            if (pConnected) std::exchange(pConnected, nullptr)->PrepareItems();
            nFormat = 2;
            return S_OK;
        }
        COverlayEngine* pConnected = nullptr;
        LONG nFormat = 1;
    };
    CInterruptedPainter painter;
    COverlayEngine engine(painter);
    painter.pConnected = &engine;
    CBstr text;
    ASSERT_EQ(text.Assign(std::u16string_view(u"text")), S_OK);
    OVERLAY_PROPS props;
    props.bsTextString = text.Get();
    Cookie cookie = 0;
    ASSERT_EQ(engine.AddOutlinedText(eText, nullptr, 0, &props, nullptr, &cookie), S_OK);
    LONG nPreparedFor = 0;
    ASSERT_EQ(engine.GetItemTextFormat(cookie, nullptr, &nPreparedFor, nullptr), S_OK);
    EXPECT_EQ(nPreparedFor, 2);
}

TEST_F(OverlayEngine, StartsAStreamFromTheSetValues) {
    OverlayItem item = TextItem(eFrameNumber, u"n");
    item.props.nCounterStart = 25;
    item.props.nCounterCur = 99;
    item.props.nPosX = 7;
    item.dblPosX = 123.5;
    item.props.bShow = 1;
    item.props.dblXDelta = 1;
    const Cookie cookie = Add(std::move(item));
    m_Engine.ResetItemForRun();

    BYTE frame[16] = {};
    ASSERT_EQ(m_Engine.MixFrame({frame, 16, {format_code::RGB32, 2, 2, 0}}, {2, 2}, {}), S_OK);
    OVERLAY_PROPS props;
    ASSERT_EQ(m_Engine.GetItemProps(cookie, &props), S_OK);
    SysFreeString(props.bsTextString);
    EXPECT_EQ(props.nCounterCur, 25);
    EXPECT_EQ(props.nPosX, 8) << "one step from the set position";
}

TEST_F(OverlayEngine, DrawsAnewWhatAChangedRecordMakesNecessary) {
    struct Change {
        const char* pszName;
        ITEM_TYPE eType;
        std::function<void(OVERLAY_PROPS&)> change;
        const char16_t* pszText; ///< in the record; null is none
        const char* pszJournal;
        const char16_t* pszNameAfter;
    };
    const auto nothing = [](OVERLAY_PROPS&) {};
    const auto counter = [](OVERLAY_PROPS& p) { p.nCounterCur = 5; };
    const auto outline = [](OVERLAY_PROPS& p) { p.dblOutlineWidth = 1.5; };
    const auto color = [](OVERLAY_PROPS& p) { p.lOutColor = 0x00000001; };
    const auto colorAlpha = [](OVERLAY_PROPS& p) { p.lBackColor = 0x01000000; };
    const auto alpha = [](OVERLAY_PROPS& p) { p.sAlphaValue = 300; };
    const auto oneKey = [](OVERLAY_PROPS& p) { p.nColorKeyMin = 1; };
    const auto bothKeys = [](OVERLAY_PROPS& p) { p.nColorKeyMin = p.nColorKeyMax = 1; };
    const auto everything = [](OVERLAY_PROPS& p) {
        p.nCounterCur = 5, p.lForeColor = 0x7F000000, p.sAlphaValue = 1, p.dblOutlineWidth = 1;
    };
    const Change changes[] = {
        {"position", eText, [](OVERLAY_PROPS& p) { p.nPosX = 3; }, u"name", "", u"name"},
        {"counter of a time", eTime, counter, u"name", "time!", u"name"},
        {"counter of a date", eDate, counter, u"name", "date!", u"name"},
        {"colour", eText, color, u"name", "colors", u"name"},
        {"colour's alpha", eSMPTETimeCode, colorAlpha, u"name", "colors alpha", u"name"},
        {"colour of an image", eImage, colorAlpha, u"name", "", u"name"},
        {"alpha", eText, alpha, u"name", "alpha", u"name"},
        {"alpha of an image", eImage, alpha, u"name", "alpha", u"name"},
        {"text", eText, nothing, u"other", "text", u"other"},
        {"text of a time", eTime, nothing, u"other", "time!", u"other"},
        {"no text", eText, nothing, nullptr, "", u"name"},
        {"label of a timecode", eSMPTETimeCode, nothing, u"other", "", u"other"},
        {"outline", eText, outline, nullptr, "text", u"name"},
        {"one key", eImage, oneKey, u"name", "", u"name"},
        {"both keys", eImage, bothKeys, u"name", "prepare", u"name"},
        {"everything", eTime, everything, u"other", "time! colors alpha time!", u"other"},
    };
    for (const Change& c : changes) {
        SCOPED_TRACE(c.pszName);
        const Cookie cookie = Add(TextItem(c.eType, u"name"));
        OVERLAY_PROPS props;
        c.change(props);
        CBstr text;
        ASSERT_EQ(text.Assign(std::u16string_view(c.pszText ? c.pszText : u"")), S_OK);
        props.bsTextString = c.pszText ? text.Get() : nullptr;
        EXPECT_EQ(m_Engine.SetItemProps(cookie, &props, 0), S_OK);
        EXPECT_EQ(m_Painter.TakeJournal(), c.pszJournal);
        EXPECT_EQ(NameOf(cookie), c.pszNameAfter);
    }
}

TEST_F(OverlayEngine, UpdatesHiddenItemsAndMixesShownOnes) {
    OverlayItem shown = FlatItem(format_code::RGB32, {2, 2}, 100);
    OverlayItem hidden = FlatItem(format_code::RGB32, {2, 2}, 200);
    hidden.props.bShow = 0;
    hidden.props.dblXDelta = 1;
    Add(std::move(shown));
    const Cookie cookie = Add(std::move(hidden));
    m_Engine.PrepareItems();
    BYTE frame[16] = {};
    ASSERT_EQ(m_Engine.MixFrame({frame, 16, {format_code::RGB32, 2, -2, 0}}, {2, 2}, {}), S_OK);
    EXPECT_EQ(m_Painter.TakeJournal(), "prepare prepare live live-hidden");
    for (const BYTE byte : frame)
        EXPECT_EQ(byte, 100);
    OVERLAY_PROPS props;
    ASSERT_EQ(m_Engine.GetItemProps(cookie, &props), S_OK);
    EXPECT_EQ(props.nPosX, 0) << "a hidden item does not move";
}

TEST_F(OverlayEngine, MixesItemsAndLayersFromTheBottomUp) {
    const auto layer = [](BYTE color, std::size_t cb) {
        OverlayLayer made;
        static_cast<void>(made.planeColor.Alloc(cb, true, color));
        static_cast<void>(made.planeWeight.Alloc(cb, true, 0));
        return made;
    };
    // One pixel a layer: each lies open where those above it have no weight.
    const SIZE size{4, 1};
    OverlayItem item;
    item.sizeItem = size;
    item.props.bShow = 1;
    item.layerBack = layer(10, 16);
    item.layerOutline = layer(20, 16);
    item.layerFore = layer(30, 16);
    std::fill_n(item.layerBack.planeWeight.Data(), 12, BYTE{255});
    std::fill_n(item.layerOutline.planeWeight.Data(), 8, BYTE{255});
    std::fill_n(item.layerFore.planeWeight.Data(), 4, BYTE{255});
    Add(std::move(item));
    OverlayItem above = FlatItem(format_code::RGB32, {1, 1}, 40);
    above.props.nPosX = 3;
    Add(std::move(above));

    BYTE frame[16] = {};
    ASSERT_EQ(m_Engine.MixFrame({frame, 16, {format_code::RGB32, 4, -1, 0}}, {4, 1}, {}), S_OK);
    EXPECT_EQ((std::vector<BYTE>{frame[0], frame[4], frame[8], frame[12]}), (std::vector<BYTE>{30, 20, 10, 40}));
}

} // namespace
} // namespace vellumcaster
