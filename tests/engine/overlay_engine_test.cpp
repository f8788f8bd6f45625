#include "support/engine_on_a_row.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <utility>

namespace vellumcaster {
namespace {

using namespace testing_support;

class OverlayEngine : public EngineOnARow {
protected:
    std::u16string NameOf(Cookie cookie) {
        OVERLAY_PROPS props;
        EXPECT_EQ(m_Engine.GetItemProps(cookie, &props), S_OK);
        return TakeName(props.bsTextString);
    }

    HRESULT AddText() {
        const CBstr text = Text(u"text");
        OVERLAY_PROPS props;
        props.bsTextString = text.Get();
        return m_Engine.AddOutlinedText(eText, nullptr, 0, &props, nullptr, nullptr);
    }

    HRESULT AddImage() {
        constexpr BYTE pixels[16] = {};
        ImageInfoTag info{2, -2, 32, 0, sizeof pixels};
        return m_Engine.AddImageFromMemory2(&info, sizeof pixels, pixels, nullptr, 0, 0, nullptr, nullptr);
    }
};

TEST_F(OverlayEngine, SwapsRecordsAndNotCookies) {
    const Cookie a = Add(NamedItem(eText, u"a"));
    const Cookie b = Add(NamedItem(eText, u"b"));
    const Cookie c = Add(NamedItem(eText, u"c"));
    EXPECT_EQ(m_Engine.ChangeItemOrder(a, 5), S_OK) << "only the sign counts";
    EXPECT_EQ(NameOf(a) + NameOf(b) + NameOf(c), u"bac");
    EXPECT_EQ(m_Engine.ChangeItemOrder(c, -1), S_OK);
    EXPECT_EQ(NameOf(a) + NameOf(b) + NameOf(c), u"bca");
    EXPECT_EQ(m_Engine.ChangeItemOrder(c, 1), S_OK) << "at the top nothing moves";
    EXPECT_EQ(m_Engine.ChangeItemOrder(a, -1), S_OK) << "nor at the bottom";
    EXPECT_EQ(NameOf(a) + NameOf(b) + NameOf(c), u"bca");
}

TEST_F(OverlayEngine, DrawsAnItemBeforeItsAddAsksForTheList) {
    const auto journalAtTheLock = [&](const std::function<HRESULT()>& add) {
        CCriticalSection& cs = m_Engine.ItemLock();
        cs.Enter();
        std::thread adding([&] { EXPECT_EQ(add(), S_OK); });
        while (cs.Waiting() == 0)
            std::this_thread::yield();
        std::string journal = m_Painter.TakeJournal();
        cs.Leave();
        adding.join();
        return journal;
    };
    EXPECT_EQ(journalAtTheLock([this] { return AddText(); }), "text");
    EXPECT_EQ(journalAtTheLock([this] { return AddImage(); }), "prepare");
    EXPECT_EQ(m_Painter.TakeJournal(), "") << "nothing more with the list in hand";
}

TEST_F(OverlayEngine, PreparesAnAddedItemAgainForAFormatThatCameMeanwhile) {
    m_Painter.m_meanwhile = [this] { m_Engine.PrepareItems(); };
    EXPECT_EQ(AddText(), S_OK);
    EXPECT_EQ(m_Painter.TakeJournal(), "text prepare");
}

TEST_F(OverlayEngine, StartsAStreamFromTheSetValues) {
    OverlayItem item = NamedItem(eFrameNumber, u"n");
    item.props.nCounterStart = 25;
    item.props.nCounterCur = 99;
    item.props.nPosX = 7;
    item.dblPosX = 123.5;
    item.props.bShow = 1;
    item.props.dblXDelta = 1;
    const Cookie cookie = Add(std::move(item));
    m_Engine.ResetItemForRun();
    Mix();
    EXPECT_EQ(PropsOf(cookie).nCounterCur, 25);
    EXPECT_EQ(PropsOf(cookie).nPosX, 8) << "one step from the set position";
}

TEST_F(OverlayEngine, DrawsAnewWhatAChangedRecordMakesNecessary) {
    const auto nothing = [](OVERLAY_PROPS&) {};
    const auto colorAlpha = [](OVERLAY_PROPS& p) { p.lBackColor = 0x01000000; };
    const auto everything = [](OVERLAY_PROPS& p) {
        p.nCounterCur = 5, p.lForeColor = 0x7F000000, p.sAlphaValue = 1, p.dblOutlineWidth = 1;
    };
    const struct {
        const char* pszName;
        ITEM_TYPE eType;
        std::function<void(OVERLAY_PROPS&)> change;
        const char16_t* pszText; ///< in the record; null is none
        const char* pszJournal;
    } changes[] = {
        {"counter of a date", eDate, [](auto& p) { p.nCounterCur = 5; }, u"name", "date!"},
        {"colour", eText, [](auto& p) { p.lOutColor = 0x00000001; }, u"name", "colors"},
        {"colour's alpha", eSMPTETimeCode, colorAlpha, u"name", "colors alpha"},
        {"colour of an image", eImage, colorAlpha, u"name", ""},
        {"alpha of an image", eImage, [](auto& p) { p.sAlphaValue = 300; }, u"name", "alpha"},
        {"text", eText, nothing, u"other", "text"},
        {"text of a date", eDate, nothing, u"other", "date!"},
        {"no text", eText, nothing, nullptr, ""},
        {"label of a timecode", eSMPTETimeCode, nothing, u"other", ""},
        {"outline", eText, [](auto& p) { p.dblOutlineWidth = 1.5; }, nullptr, "text"},
        {"one key", eImage, [](auto& p) { p.nColorKeyMin = 1; }, u"name", ""},
        {"both keys", eImage, [](auto& p) { p.nColorKeyMin = p.nColorKeyMax = 1; }, u"name", "prepare"},
        {"everything", eTime, everything, u"other", "time! colors alpha time!"},
    };
    for (const auto& c : changes) {
        SCOPED_TRACE(c.pszName);
        const Cookie cookie = Add(NamedItem(c.eType, u"name"));
        OVERLAY_PROPS props;
        c.change(props);
        CBstr text;
        if (c.pszText) text = Text(c.pszText);
        props.bsTextString = text.Get();
        EXPECT_EQ(m_Engine.SetItemProps(cookie, &props, 0), S_OK);
        EXPECT_EQ(m_Painter.TakeJournal(), c.pszJournal);
        EXPECT_EQ(NameOf(cookie), c.pszText ? c.pszText : u"name");
    }
}

TEST_F(OverlayEngine, UpdatesHiddenItemsAndMixesShownOnes) {
    Add(FlatItem(format_code::RGB32, {2, 1}, 100));
    OverlayItem hidden = FlatItem(format_code::RGB32, {2, 1}, 200);
    hidden.props.bShow = 0;
    hidden.props.dblXDelta = 1;
    const Cookie cookie = Add(std::move(hidden));
    m_Engine.PrepareItems();
    EXPECT_EQ(Mix(), (Row{100, 100, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(m_Painter.TakeJournal(), "prepare prepare live live-hidden");
    EXPECT_EQ(PropsOf(cookie).nPosX, 0) << "a hidden item does not move";
}

TEST_F(OverlayEngine, MixesItemsAndLayersFromTheBottomUp) {
    // One pixel a layer: each lies open where those above it have no weight.
    const auto layer = [](BYTE color, std::size_t nPixelsCovered) {
        OverlayLayer made;
        static_cast<void>(made.planeColor.Alloc(16, true, color));
        static_cast<void>(made.planeWeight.Alloc(16, true, 0));
        std::fill_n(made.planeWeight.Data(), 4 * nPixelsCovered, BYTE{255});
        return made;
    };
    OverlayItem item;
    item.sizeItem = {4, 1};
    item.props.bShow = 1;
    item.layerBack = layer(10, 3);
    item.layerOutline = layer(20, 2);
    item.layerFore = layer(30, 1);
    Add(std::move(item));
    OverlayItem above = FlatItem(format_code::RGB32, {1, 1}, 40);
    above.props.nPosX = 3;
    Add(std::move(above));
    EXPECT_EQ(Mix(), (Row{30, 20, 10, 40, 0, 0, 0, 0}));
}

} // namespace
} // namespace vellumcaster
