#include "engine/overlay_engine.h"
#include "support/flat_item.h"
#include "support/recording_painter.h"
#include "support/scripted_callback.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <utility>

namespace vellumcaster {
namespace {

using namespace testing_support;
using Script = std::function<HRESULT(OVERLAY_PROPS&)>;

/// An 8 x 1 frame in RGB32 and items of one pixel on it.
class FrameCallback : public testing::Test {
protected:
    Cookie AddWith(const CComPtr<CScriptedCallback>& spCallback, BYTE color = 50) {
        OverlayItem item = FlatItem(format_code::RGB32, {1, 1}, color);
        static_cast<void>(item.bsName.Assign(std::u16string_view(u"item")));
        item.spCallback = spCallback.Get();
        Cookie cookie = 0;
        EXPECT_EQ(m_Engine.AddItem(std::move(item), &cookie), S_OK);
        return cookie;
    }

    static CComPtr<CScriptedCallback> Callback(Script script) {
        return MakeCounted<CScriptedCallback>(std::move(script));
    }

    /// The first byte of each pixel after one frame.
    std::array<int, 8> Mix() {
        std::array<BYTE, 32> frame{};
        EXPECT_EQ(m_Engine.MixFrame({frame.data(), 32, {format_code::RGB32, 8, -1, 0}}, {8, 1}, {}), S_OK);
        std::array<int, 8> pixels{};
        for (std::size_t i = 0; i < 8; ++i)
            pixels[i] = frame[4 * i];
        return pixels;
    }

    OVERLAY_PROPS PropsOf(Cookie cookie) {
        OVERLAY_PROPS props;
        EXPECT_EQ(m_Engine.GetItemProps(cookie, &props), S_OK);
        SysFreeString(std::exchange(props.bsTextString, nullptr));
        return props;
    }

    CRecordingPainter m_Painter;
    COverlayEngine m_Engine{m_Painter};
};

TEST_F(FrameCallback, ChangesItsItemOnTheFrameInHand) {
    BOOL bShow = 1;
    AddWith(Callback([&bShow](OVERLAY_PROPS& props) {
        EXPECT_EQ(std::u16string(props.bsTextString), u"item");
        props.nPosX = 3;
        props.bShow = bShow;
        return S_OK;
    }));
    EXPECT_EQ(Mix(), (std::array<int, 8>{0, 0, 0, 50, 0, 0, 0, 0}));
    bShow = 0;
    EXPECT_EQ(Mix(), (std::array<int, 8>{}));
    bShow = 1;
    EXPECT_EQ(Mix()[3], 50) << "a hidden item's callback can show it";
    EXPECT_TRUE(m_Engine.IsDirty());
}

TEST_F(FrameCallback, HasItsChangesDroppedUnlessItSaysOk) {
    const auto callback = Callback([](OVERLAY_PROPS& props) {
        props.nPosX = 3;
        props.bShow = 0;
        return S_FALSE;
    });
    AddWith(callback);
    EXPECT_EQ(Mix()[0], 50);
    EXPECT_EQ(Mix()[0], 50);
    EXPECT_EQ(callback->m_nCalls, 2);
}

TEST_F(FrameCallback, LosesTheFractionOfAMovementWhenItSaysOk) {
    HRESULT answer = S_OK;
    const Cookie cookie = AddWith(Callback([&answer](OVERLAY_PROPS&) { return answer; }));
    OVERLAY_PROPS props = PropsOf(cookie);
    props.dblXDelta = 0.25;
    ASSERT_EQ(m_Engine.SetItemProps(cookie, &props, 0), S_OK);
    for (int frame = 0; frame < 8; ++frame)
        Mix();
    EXPECT_EQ(PropsOf(cookie).nPosX, 0);
    answer = S_FALSE;
    for (int frame = 0; frame < 8; ++frame)
        Mix();
    EXPECT_EQ(PropsOf(cookie).nPosX, 2);
}

TEST_F(FrameCallback, IsNotCalledAgainAfterItFailed) {
    const Script failures[] = {
        [](OVERLAY_PROPS&) { return E_FAIL; },
        [](OVERLAY_PROPS&) -> HRESULT { throw std::runtime_error("application"); },
        [](OVERLAY_PROPS&) { return *reinterpret_cast<volatile HRESULT*>(std::uintptr_t{4096}); },
    };
    for (const Script& fail : failures) {
        m_Engine.RemoveAllItems();
        const auto callback = Callback([&fail](OVERLAY_PROPS& props) {
            props.nPosX = 3;
            return fail(props);
        });
        AddWith(callback);
        EXPECT_EQ(Mix()[0], 50) << "the item stays where it was";
        EXPECT_EQ(Mix()[0], 50);
        EXPECT_EQ(callback->m_nCalls, 1);
        EXPECT_EQ(callback->AddRef(), 2u) << "the item has given its reference back";
        callback->Release();
    }
}

TEST_F(FrameCallback, IsGivenUpThoughItHasMovedItsItem) {
    int nCalls = 0;
    Cookie cookie = 0;
    AddWith(nullptr);
    cookie = AddWith(Callback([&](OVERLAY_PROPS&) {
        ++nCalls;
        EXPECT_EQ(m_Engine.ChangeItemOrder(cookie, 1), S_OK);
        return E_FAIL;
    }));
    Mix();
    Mix();
    EXPECT_EQ(nCalls, 1);
}

TEST_F(FrameCallback, MayTakeItemsOffTheList) {
    Cookie removed = 0;
    const auto remove = Callback([&](OVERLAY_PROPS& props) {
        m_Engine.RemoveItem2(removed);
        props.nPosX = 7; // of an item that may be gone
        return S_OK;
    });
    const Cookie own = AddWith(remove, 50);
    OverlayItem next = FlatItem(format_code::RGB32, {1, 1}, 60);
    next.props.nPosX = 1;
    next.SnapToSetPosition();
    Cookie nextCookie = 0;
    ASSERT_EQ(m_Engine.AddItem(std::move(next), &nextCookie), S_OK);

    removed = own; // the neighbour moves into the place and is drawn there, unchanged
    EXPECT_EQ(Mix(), (std::array<int, 8>{0, 60, 0, 0, 0, 0, 0, 0}));

    removed = AddWith(remove, 70); // the last of the list
    EXPECT_EQ(Mix(), (std::array<int, 8>{0, 60, 0, 0, 0, 0, 0, 0}));
    LONG nCount = 0;
    m_Engine.GetItemCount2(&nCount);
    EXPECT_EQ(nCount, 1);
}

} // namespace
} // namespace vellumcaster
