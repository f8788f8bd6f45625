#include "engine/props_codec.h"
#include "image/picture_persist.h"
#include "support/mixer_control.h"
#include "support/scripted_callback.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace vellumcaster {
namespace {

using namespace testing_support;

class ControlInterfaces : public testing::Test, protected MixerControl {
protected:
    /// Whether an operation marked the stack as changed.
    bool Marks(const std::function<HRESULT()>& operation, HRESULT hrExpected = S_OK) {
        Save();
        EXPECT_EQ(operation(), hrExpected);
        return spPersist->IsDirty() == S_OK;
    }
};

TEST_F(ControlInterfaces, AreAllOneObject) {
    const auto identityOf = [](const auto& sp) {
        CComPtr<IUnknown> spIdentity;
        EXPECT_EQ(sp->QueryInterface(IUnknown::IID, reinterpret_cast<void**>(spIdentity.Put())), S_OK);
        return spIdentity.Get();
    };
    for (const IUnknown* pIdentity : {identityOf(spFirst), identityOf(spControl), identityOf(spPersist),
                                      identityOf(spItem), identityOf(Ask<IPersist>())})
        EXPECT_EQ(pIdentity, identityOf(spMixer));
}

TEST_F(ControlInterfaces, RefuseACookieThatIsNotInTheList) {
    constexpr LONG nUnknown = 0x7EADBEEF;
    const LONG known = AddText();
    BYTE bt = 0;
    EXPECT_EQ(spFirst->GetItemAlpha(static_cast<ULONG>(nUnknown), &bt), E_INVALIDARG);
    EXPECT_EQ(spControl->RemoveItem2(nUnknown), E_INVALIDARG);
    EXPECT_EQ(spControl->ChangeItemOrder(nUnknown, 1), E_INVALIDARG);
    EXPECT_EQ(spControl->ChangeItemOrder(nUnknown, 0), S_FALSE);
    EXPECT_EQ(spControl->SetItemPos2(nUnknown, 1, 1), E_INVALIDARG) << "as all that work on one item";
    EXPECT_EQ(spControl->SwitchItems2(nUnknown, known), E_INVALIDARG);
    EXPECT_EQ(spControl->SwitchItems2(known, nUnknown), E_INVALIDARG);
    EXPECT_EQ(spControl->IsItemShow2(known, nullptr), S_OK) << "a switch that fails hides nothing";
}

TEST_F(ControlInterfaces, RefuseNullPointers) {
    const LONG known = AddText();
    LONG n = 0;
    BSTR bs = nullptr;
    ITEM_TYPE e = eText;
    EXPECT_EQ(spControl->GetItemInfo2(0, nullptr, &bs, &e), E_POINTER);
    EXPECT_EQ(spControl->GetItemInfo2(0, &n, nullptr, &e), E_POINTER);
    EXPECT_EQ(spControl->GetItemInfo2(0, &n, &bs, nullptr), E_POINTER);
    EXPECT_EQ(spControl->GetItemInfo2(1, &n, &bs, &e), E_INVALIDARG);
    EXPECT_EQ(spControl->GetItemInfo2(-1, &n, &bs, &e), E_INVALIDARG);
    EXPECT_EQ(spFirst->GetItemAlpha(static_cast<ULONG>(known), nullptr), E_POINTER);
    EXPECT_EQ(spControl->GetColorSpace(nullptr), E_POINTER);
    EXPECT_EQ(spControl->GetItemCount2(nullptr), E_POINTER);
    EXPECT_EQ(spControl->GetItemSize(known, nullptr), E_POINTER);
    EXPECT_EQ(spControl->GetItemProps(known, nullptr), E_POINTER);
    EXPECT_EQ(spControl->SetItemProps(known, nullptr, 0), E_INVALIDARG);
    EXPECT_EQ(spControl->GetItemCounter(known, nullptr), E_POINTER);
    EXPECT_EQ(spControl->GetItemAlpha2(known, nullptr), E_POINTER);
    EXPECT_EQ(spItem->GetItemTextFormat(known, nullptr, nullptr, nullptr), S_OK) << "what is wanted is given";
    EXPECT_EQ(spControl->AddRoundRect(nullptr, nullptr, nullptr, nullptr), E_NOTIMPL);
    EXPECT_EQ(spItem->Reserved(0, 0, 0, 0, 0, 0, 0, 0), E_NOTIMPL);
}

TEST_F(ControlInterfaces, AddNothingThatCannotBeMade) {
    ImageInfoTag info{2, 2, 32, 0, 16};
    const BYTE pixels[16] = {};
    OVERLAY_PROPS noText;
    const auto addImage = [&](ImageInfoTag* pInfo, DWORD cb, const BYTE* pPixels) {
        return spControl->AddImageFromMemory2(pInfo, cb, pPixels, nullptr, -1, -1, nullptr, nullptr);
    };
    const auto addText = [&](ITEM_TYPE eType, const OVERLAY_PROPS* pProps) {
        return spControl->AddOutlinedText(eType, nullptr, 4, pProps, nullptr, nullptr);
    };
    EXPECT_EQ(spControl->AddImage2(nullptr, -1, -1, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(addImage(nullptr, 16, pixels), E_INVALIDARG);
    EXPECT_EQ(addImage(&info, 16, nullptr), E_INVALIDARG);
    EXPECT_EQ(addImage(&info, 15, pixels), E_INVALIDARG) << "a byte short";
    const FrameFormat argb32{eARGB32, 16, 2, 0, 0};
    ASSERT_EQ(spMixer->SetFormat(&argb32), S_OK);
    EXPECT_EQ(addImage(&info, 16, pixels), E_NOTIMPL) << "items cannot stand in this format";
    EXPECT_EQ(addText(eText, nullptr), E_INVALIDARG);
    EXPECT_EQ(addText(eText, &noText), E_INVALIDARG);
    EXPECT_EQ(addText(eImage, &noText), E_INVALIDARG);
    EXPECT_EQ(Count(), 0);
    EXPECT_EQ(spPersist->IsDirty(), S_FALSE);
}

TEST_F(ControlInterfaces, MarkWhatIsWorthSaving) {
    const LONG text = AddText();
    const LONG picture = AddPicture();
    EXPECT_EQ(spPersist->IsDirty(), S_OK);
    const OVERLAY_PROPS props = PropsOf(picture);
    const auto demand = [this](std::u16string_view name) { return spControl->SetColorSpace(Text(name).Get()); };
    EXPECT_TRUE(Marks([&] { return spControl->ShowItem2(text, 1); })) << "as it is";
    EXPECT_TRUE(Marks([&] { return spControl->SwitchItems2(text, picture); }));
    EXPECT_TRUE(Marks([&] { return spControl->SetItemPos2(text, 3, 4); }));
    EXPECT_TRUE(Marks([&] { return spControl->SetItemMovement(text, 1, 2, 1); }));
    EXPECT_FALSE(Marks([&] { return spControl->SetItemCounter(text, 3); }));
    EXPECT_TRUE(Marks([&] { return spControl->SetItemAlpha2(text, 7); }));
    EXPECT_FALSE(Marks([&] { return spControl->SetItemAlpha2(text, 7); }, S_FALSE));
    EXPECT_TRUE(Marks([&] { return spControl->SetItemProps(picture, &props, 0); }));
    EXPECT_FALSE(Marks([&] { return spControl->ChangeItemOrder(text, 0); }, S_FALSE));
    EXPECT_TRUE(Marks([&] { return spControl->ChangeItemOrder(text, -1); })) << "at the bottom";
    EXPECT_TRUE(Marks([&] { return demand(u"i420"); }));
    EXPECT_FALSE(Marks([&] { return demand(u"i420"); }, S_FALSE));
    EXPECT_TRUE(Marks([&] { return demand(u"ANY"); }));
    EXPECT_TRUE(Marks([&] { return spControl->RemoveItem2(text); }));
    EXPECT_FALSE(Marks([&] { return spControl->RemoveAllItems(); }));
    EXPECT_EQ(Count(), 0);
}

TEST_F(ControlInterfaces, GiveBackWhatWasSet) {
    const LONG cookie = AddText();
    const auto dw = static_cast<ULONG>(cookie);
    EXPECT_EQ(spFirst->SetItemPos(dw, -3, 40000), S_OK);
    EXPECT_EQ(spControl->SetItemMovement(cookie, 0.5, -2.25, 7), S_OK);
    EXPECT_EQ(spControl->SetItemCounter(cookie, 1234), S_OK);
    EXPECT_EQ(spFirst->ShowItem(dw, 5), S_OK);
    LONG x = 0;
    LONG y = 0;
    EXPECT_EQ(spControl->GetItemPos2(cookie, &x, nullptr), S_OK);
    EXPECT_EQ(spFirst->GetItemPos(dw, nullptr, &y), S_OK);
    double dx = 0;
    double dy = 0;
    BOOL bWrap = 0;
    EXPECT_EQ(spControl->GetItemMovement(cookie, &dx, &dy, &bWrap), S_OK);
    LONG nCounter = 0;
    EXPECT_EQ(spControl->GetItemCounter(cookie, &nCounter), S_OK);
    BOOL bShow = 0;
    EXPECT_EQ(spControl->IsItemShow2(cookie, &bShow), S_OK);
    EXPECT_EQ(std::tuple(x, y, dx, dy, bWrap, nCounter, bShow), std::tuple(-3, 40000, 0.5, -2.25, 7, 1234, 5));

    const std::pair<std::int16_t, std::int16_t> alphas[] = {{300, 255}, {-5, 0}, {77, 77}};
    for (const auto& [set, stored] : alphas) {
        spControl->SetItemAlpha2(cookie, set);
        std::int16_t s = -1;
        EXPECT_EQ(spControl->GetItemAlpha2(cookie, &s), S_OK);
        EXPECT_EQ(s, stored);
    }
    EXPECT_EQ(spFirst->SetItemAlpha(dw, 200), S_OK);
    BYTE bt = 0;
    EXPECT_EQ(spFirst->GetItemAlpha(dw, &bt), S_OK);
    EXPECT_EQ(bt, 200);

    EXPECT_EQ(spFirst->SwitchItems(dw, static_cast<ULONG>(AddPicture())), S_OK);
    EXPECT_EQ(spFirst->IsItemShow(dw), S_FALSE);
}

TEST_F(ControlInterfaces, AddPlainTextsAndPicturesThroughTheFirstInterface) {
    const CBstr name = Text(u"plain");
    SIZE size{0, 0};
    ULONG dwText = 0;
    ULONG dwPicture = 0;
    ASSERT_EQ(spFirst->AddOvlText(name.Get(), eText, nullptr, &size, 0xFF112233, 0x80445566, &dwText), S_OK);
    ImageInfoTag info{5, 3, 24, 0, 48};
    const BYTE pixels[48] = {};
    ASSERT_EQ(spFirst->AddImageFromMemory(&info, 48, pixels, nullptr, 1, nullptr, &dwPicture), S_OK);
    EXPECT_EQ(Names(), (std::vector<std::u16string>{u"plain", u"Memory Image"}));

    const auto text = static_cast<LONG>(dwText);
    EXPECT_EQ(ItemAt(0).value().cookie, text);
    EXPECT_EQ(SizeOf(text), size);
    OVERLAY_PROPS props;
    props.lForeColor = static_cast<LONG>(0xFF112233);
    props.lBackColor = static_cast<LONG>(0x80445566);
    props.sAlphaValue = 255;
    props.bShow = 1;
    props.nCounterStart = props.nCounterCur = -1;
    EXPECT_EQ(EncodeProps(PropsOf(text)), EncodeProps(props));

    const auto picture = static_cast<LONG>(dwPicture);
    EXPECT_EQ(ItemAt(1).value().cookie, picture);
    EXPECT_EQ(ItemAt(1).value().eType, eImage);
    EXPECT_EQ(PropsOf(picture).nColorKeyMin, -1);
    EXPECT_EQ(PropsOf(picture).nColorKeyMax, 0) << "the first pixel's colour is transparent";
    EXPECT_EQ(PropsOf(picture).bShow, 0);
}

TEST_F(ControlInterfaces, CutAFaceNameBetweenTwoCharacters) {
    const CBstr face = Text(u"DejaVu Sans, a face of a long\u20AC");
    ULONG dw = 0;
    ASSERT_EQ(spFirst->AddOvlText2(Text(u"x").Get(), eText, face.Get(), 24, nullptr, 1, 2, &dw), S_OK);
    LOGFONT font;
    LONG nFormat = 0;
    ASSERT_EQ(spItem->GetItemTextFormat(static_cast<LONG>(dw), &font, &nFormat, nullptr), S_OK);
    EXPECT_STREQ(font.lfFaceName, "DejaVu Sans, a face of a long") << "31 bytes would split a character";
    EXPECT_EQ((std::array<LONG, 5>{font.lfHeight, font.lfWeight, font.lfCharSet, font.lfQuality, nFormat}),
              (std::array<LONG, 5>{24, 400, 1, 7, 4}));
}

TEST_F(ControlInterfaces, TakeAPictureFileInTheSizeThatIsAskedFor) {
    const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "control_interfaces_\u00E9.bmp";
    const BITMAPINFOHEADER header{40, 5, 3, 1, 24, BI_RGB, 48, 0, 0, 0, 0};
    const std::vector<BYTE> pixels(48, 7);
    ASSERT_EQ(CPicturePersist::SaveToFile(file.string().c_str(), &header, pixels.data()), S_OK);
    const CBstr name = Text(file.u16string());
    SIZE size{9, 7};
    LONG cookie = 0;
    ASSERT_EQ(spControl->AddImage2(name.Get(), -1, -1, &size, &cookie), S_OK);
    EXPECT_EQ(size, (SIZE{8, 6}));
    EXPECT_EQ(SizeOf(cookie), size);
    EXPECT_EQ(PropsOf(cookie).sAlphaValue, 255);
    EXPECT_EQ(PropsOf(cookie).bShow, 0);
    std::filesystem::remove(file);
    EXPECT_EQ(spFirst->AddImage(name.Get(), 0, nullptr, nullptr), static_cast<HRESULT>(0x80070002)) << "it is gone";
    EXPECT_EQ(Names(), std::vector{file.u16string()});
}

TEST_F(ControlInterfaces, DemandOneOfTheColourSpacesThatItemsCanStandIn) {
    const auto demanded = [this] {
        BSTR bsNow = nullptr;
        EXPECT_EQ(spControl->GetColorSpace(&bsNow), S_OK);
        return TakeName(bsNow);
    };
    for (const auto* pszName : {u"ARGB32", u"RGB32", u"RGB24", u"YUY2", u"YVYU", u"UYVY", u"YV12", u"I420"}) {
        EXPECT_EQ(spControl->SetColorSpace(Text(pszName).Get()), S_OK);
        EXPECT_EQ(demanded(), pszName);
    }
    for (const auto* pszName : {u"RGB565", u"RGB555", u"YVU9"})
        EXPECT_EQ(spControl->SetColorSpace(Text(pszName).Get()), VFW_E_TYPE_NOT_ACCEPTED);
    EXPECT_EQ(demanded(), u"I420");
    for (const auto* pszName : {u"", u"any"}) {
        EXPECT_EQ(spControl->SetColorSpace(Text(pszName).Get()), S_OK);
        EXPECT_EQ(demanded(), u"Any");
    }
}

TEST_F(ControlInterfaces, ReleaseTheCallbackOfARemovedItemWithTheListUnlocked) {
    // A callback whose last words go to the control interfaces from another thread would wait for the list forever.
    LONG nCountAtTheEnd = -1;
    const auto sayLastWords = [&](void*) { std::thread([&] { nCountAtTheEnd = Count(); }).join(); };
    const LONG cookie = AddText();
    {
        std::shared_ptr<void> spWords(nullptr, sayLastWords);
        auto spCallback =
            MakeCounted<CScriptedCallback>([spKept = std::move(spWords)](OVERLAY_PROPS&) { return S_OK; });
        ASSERT_EQ(spControl->SetItemCallback(cookie, spCallback.Get()), S_OK);
    }
    EXPECT_EQ(spControl->RemoveItem2(cookie), S_OK);
    EXPECT_EQ(nCountAtTheEnd, 0);
}

} // namespace
} // namespace vellumcaster
