#include "support/engine_on_a_row.h"
#include "support/scripted_callback.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <utility>

namespace vellumcaster {
namespace {

using namespace testing_support;
using Script = std::function<HRESULT(OVERLAY_PROPS&)>;

class FrameCallback : public EngineOnARow {
protected:
    /// An item of one pixel.
    Cookie AddWith(const CComPtr<CScriptedCallback>& spCallback, BYTE color = 50, LONG nPosX = 0) {
        OverlayItem item = FlatItem(format_code::RGB32, {1, 1}, color);
        static_cast<void>(item.bsName.Assign(std::u16string_view(u"item")));
        item.spCallback = spCallback.Get();
        item.props.nPosX = nPosX;
        item.SnapToSetPosition();
        return Add(std::move(item));
    }

    static CComPtr<CScriptedCallback> Callback(Script script) {
        return MakeCounted<CScriptedCallback>(std::move(script));
    }
};

TEST_F(FrameCallback, ChangesItsItemOnTheFrameInHandWhenItSaysOk) {
    BOOL bShow = 1;
    HRESULT answer = S_FALSE;
    AddWith(Callback([&](OVERLAY_PROPS& props) {
        EXPECT_EQ(std::u16string(props.bsTextString), u"item");
        props.nPosX = 3;
        props.bShow = bShow;
        return answer;
    }));
    EXPECT_EQ(Mix(), (Row{50, 0, 0, 0, 0, 0, 0, 0})) << "its changes are dropped";
    answer = S_OK;
    EXPECT_EQ(Mix(), (Row{0, 0, 0, 50, 0, 0, 0, 0})) << "but it is called again";
    bShow = 0;
    EXPECT_EQ(Mix(), Row{});
    bShow = 1;
    EXPECT_EQ(Mix()[3], 50) << "a hidden item's callback can show it";
}

TEST_F(FrameCallback, LosesTheFractionOfAMovementWhenItSaysOk) {
    HRESULT answer = S_OK;
    const Cookie cookie = AddWith(Callback([&answer](OVERLAY_PROPS&) { return answer; }));
    OVERLAY_PROPS props = PropsOf(cookie);
    props.dblXDelta = 0.25;
    ASSERT_EQ(m_Engine.SetItemProps(cookie, &props, 0), S_OK);
    const auto posXAfterEightFrames = [&] {
        for (int frame = 0; frame < 8; ++frame)
            Mix();
        return PropsOf(cookie).nPosX;
    };
    EXPECT_EQ(posXAfterEightFrames(), 0);
    answer = S_FALSE;
    EXPECT_EQ(posXAfterEightFrames(), 2);
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
    Cookie cookie = 0;
    const auto callback = Callback([&](OVERLAY_PROPS&) {
        EXPECT_EQ(m_Engine.ChangeItemOrder(cookie, -1), S_OK);
        return E_FAIL;
    });
    AddWith(nullptr);
    cookie = AddWith(callback);
    Mix();
    Mix();
    EXPECT_EQ(callback->m_nCalls, 1);
}

TEST_F(FrameCallback, MayTakeItemsOffTheList) {
    Cookie removed = 0;
    const auto remove = Callback([&](OVERLAY_PROPS& props) {
        m_Engine.RemoveItem2(removed);
        props.nPosX = 7; // of an item that may be gone
        return S_OK;
    });
    const Cookie own = AddWith(remove, 50);
    AddWith(nullptr, 60, 1);
    removed = own; // the neighbour moves into the place and is drawn there, unchanged
    EXPECT_EQ(Mix(), (Row{0, 60, 0, 0, 0, 0, 0, 0}));

    removed = AddWith(remove, 70); // the last of the list
    EXPECT_EQ(Mix(), (Row{0, 60, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(m_Engine.RemoveItem2(removed), E_INVALIDARG) << "it has gone";
}

} // namespace
} // namespace vellumcaster
