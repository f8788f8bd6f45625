#include "image/picture_persist.h"
#include "platform/com/memory_stream.h"
#include "support/mixer_control.h"
#include "support/scripted_callback.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace vellumcaster {
namespace {

using namespace testing_support;

constexpr LONG nUnknown = 0x7EADBEEF;

class ControlInterfaces : public testing::Test, protected MixerControl {
protected:
    /// Whether an operation marked the stack as changed.
    bool Marks(const std::function<HRESULT()>& operation, HRESULT hrExpected) {
        CComPtr<IStream> spStream;
        EXPECT_EQ(CreateMemoryStream({}, spStream.Put()), S_OK);
        EXPECT_EQ(spPersist->Save(spStream.Get(), 1), S_OK);
        EXPECT_EQ(spPersist->IsDirty(), S_FALSE);
        EXPECT_EQ(operation(), hrExpected);
        return spPersist->IsDirty() == S_OK;
    }
};

TEST_F(ControlInterfaces, AreAllOneObject) {
    const auto identityOf = [](auto& sp) {
        CComPtr<IUnknown> spIdentity;
        EXPECT_EQ(sp->QueryInterface(IUnknown::IID, reinterpret_cast<void**>(spIdentity.Put())), S_OK);
        return spIdentity.Get();
    };
    const auto spPersistOnly = Ask<IPersist>();
    for (const IUnknown* pIdentity : {identityOf(spFirst), identityOf(spControl), identityOf(spPersist),
                                      identityOf(spItem), identityOf(spPersistOnly)})
        EXPECT_EQ(pIdentity, identityOf(spMixer));
    void* pv = this;
    EXPECT_EQ(spControl->QueryInterface(IVellumcasterCallback::IID, &pv), E_NOINTERFACE);
    EXPECT_EQ(pv, nullptr);
}

TEST_F(ControlInterfaces, RefuseACookieThatIsNotInTheList) {
    const LONG known = AddText();
    OVERLAY_PROPS props;
    SIZE size;
    LONG n = 0;
    std::int16_t s = 0;
    BYTE bt = 0;
    const ULONG dw = static_cast<ULONG>(nUnknown);
    const struct {
        const char* pszName;
        HRESULT hr;
    } answers[] = {
        {"RemoveItem", spFirst->RemoveItem(dw)},
        {"ShowItem", spFirst->ShowItem(dw, 1)},
        {"IsItemShow", spFirst->IsItemShow(dw)},
        {"SwitchItems, hidden", spFirst->SwitchItems(dw, static_cast<ULONG>(known))},
        {"SwitchItems, shown", spFirst->SwitchItems(static_cast<ULONG>(known), dw)},
        {"SetItemPos", spFirst->SetItemPos(dw, 1, 1)},
        {"GetItemPos", spFirst->GetItemPos(dw, nullptr, nullptr)},
        {"SetItemAlpha", spFirst->SetItemAlpha(dw, 1)},
        {"GetItemAlpha", spFirst->GetItemAlpha(dw, &bt)},
        {"RemoveItem2", spControl->RemoveItem2(nUnknown)},
        {"GetItemSize", spControl->GetItemSize(nUnknown, &size)},
        {"GetItemProps", spControl->GetItemProps(nUnknown, &props)},
        {"ChangeItemOrder", spControl->ChangeItemOrder(nUnknown, 1)},
        {"SetItemCallback", spControl->SetItemCallback(nUnknown, nullptr)},
        {"SetItemProps", spControl->SetItemProps(nUnknown, &props, 0)},
        {"ShowItem2", spControl->ShowItem2(nUnknown, 1)},
        {"IsItemShow2", spControl->IsItemShow2(nUnknown, &n)},
        {"SwitchItems2", spControl->SwitchItems2(known, nUnknown)},
        {"SetItemPos2", spControl->SetItemPos2(nUnknown, 1, 1)},
        {"GetItemPos2", spControl->GetItemPos2(nUnknown, &n, &n)},
        {"SetItemMovement", spControl->SetItemMovement(nUnknown, 1, 1, 1)},
        {"GetItemMovement", spControl->GetItemMovement(nUnknown, nullptr, nullptr, nullptr)},
        {"SetItemCounter", spControl->SetItemCounter(nUnknown, 1)},
        {"GetItemCounter", spControl->GetItemCounter(nUnknown, &n)},
        {"SetItemAlpha2", spControl->SetItemAlpha2(nUnknown, 1)},
        {"GetItemAlpha2", spControl->GetItemAlpha2(nUnknown, &s)},
        {"GetItemTextFormat", spItem->GetItemTextFormat(nUnknown, nullptr, nullptr, nullptr)},
    };
    for (const auto& answer : answers)
        EXPECT_EQ(answer.hr, E_INVALIDARG) << answer.pszName;
    EXPECT_EQ(spControl->IsItemShow2(known, nullptr), S_OK) << "a switch that fails hides nothing";
    EXPECT_EQ(spControl->ChangeItemOrder(nUnknown, 0), S_FALSE);
}

TEST_F(ControlInterfaces, RefuseNullPointers) {
    const LONG known = AddText();
    const ULONG dw = static_cast<ULONG>(known);
    LONG n = 0;
    ULONG ul = 0;
    BSTR bs = nullptr;
    ITEM_TYPE e = eText;
    ImageInfoTag info{2, 2, 32, 0, 16};
    const BYTE pixels[16] = {};
    OVERLAY_PROPS noText;
    const struct {
        const char* pszName;
        HRESULT hr;
        HRESULT hrExpected;
    } answers[] = {
        {"GetItemCount", spFirst->GetItemCount(nullptr), E_POINTER},
        {"GetItemInfo, cookie", spFirst->GetItemInfo(0, nullptr, &bs, &e), E_POINTER},
        {"GetItemInfo, name", spFirst->GetItemInfo(0, &ul, nullptr, &e), E_POINTER},
        {"GetItemInfo, kind", spFirst->GetItemInfo(0, &ul, &bs, nullptr), E_POINTER},
        {"GetItemInfo, place", spFirst->GetItemInfo(1, &ul, &bs, &e), E_INVALIDARG},
        {"GetItemInfo2, place", spControl->GetItemInfo2(-1, &n, &bs, &e), E_INVALIDARG},
        {"GetItemPos", spFirst->GetItemPos(dw, nullptr, nullptr), S_OK},
        {"GetItemAlpha", spFirst->GetItemAlpha(dw, nullptr), E_POINTER},
        {"GetItemAlpha, before the cookie", spFirst->GetItemAlpha(static_cast<ULONG>(nUnknown), nullptr), E_POINTER},
        {"GetColorSpace", spControl->GetColorSpace(nullptr), E_POINTER},
        {"IsUseExtraBuffer2", spControl->IsUseExtraBuffer2(nullptr), S_OK},
        {"GetItemCount2", spControl->GetItemCount2(nullptr), E_POINTER},
        {"GetItemSize", spControl->GetItemSize(known, nullptr), E_POINTER},
        {"GetItemProps", spControl->GetItemProps(known, nullptr), E_POINTER},
        {"SetItemProps", spControl->SetItemProps(known, nullptr, 0), E_INVALIDARG},
        {"GetItemMovement", spControl->GetItemMovement(known, nullptr, nullptr, nullptr), S_OK},
        {"GetItemCounter", spControl->GetItemCounter(known, nullptr), E_POINTER},
        {"GetItemAlpha2", spControl->GetItemAlpha2(known, nullptr), E_POINTER},
        {"GetItemTextFormat", spItem->GetItemTextFormat(known, nullptr, nullptr, nullptr), S_OK},
        {"AddImage2", spControl->AddImage2(nullptr, -1, -1, nullptr, nullptr), E_INVALIDARG},
        {"AddImageFromMemory2, record",
         spControl->AddImageFromMemory2(nullptr, 16, pixels, nullptr, -1, -1, nullptr, nullptr), E_INVALIDARG},
        {"AddImageFromMemory2, pixels",
         spControl->AddImageFromMemory2(&info, 16, nullptr, nullptr, -1, -1, nullptr, nullptr), E_INVALIDARG},
        {"AddImageFromMemory2, a byte short",
         spControl->AddImageFromMemory2(&info, 15, pixels, nullptr, -1, -1, nullptr, nullptr), E_INVALIDARG},
        {"AddOutlinedText", spControl->AddOutlinedText(eText, nullptr, 4, nullptr, nullptr, nullptr), E_INVALIDARG},
        {"AddOutlinedText, text", spControl->AddOutlinedText(eText, nullptr, 4, &noText, nullptr, nullptr),
         E_INVALIDARG},
        {"AddOutlinedText, kind", spControl->AddOutlinedText(eImage, nullptr, 4, &noText, nullptr, nullptr),
         E_INVALIDARG},
        {"AddRoundRect", spControl->AddRoundRect(nullptr, nullptr, nullptr, nullptr), E_NOTIMPL},
        {"Reserved", spItem->Reserved(0, 0, 0, 0, 0, 0, 0, 0), E_NOTIMPL},
        {"SetColorSpace", spControl->SetColorSpace(nullptr), S_OK},
    };
    for (const auto& answer : answers)
        EXPECT_EQ(answer.hr, answer.hrExpected) << answer.pszName;
    EXPECT_EQ(spControl->GetItemCount2(&n), S_OK);
    EXPECT_EQ(n, 1) << "what was refused is not in the list";
}

TEST_F(ControlInterfaces, MarkWhatIsWorthSaving) {
    const LONG text = AddText();
    const LONG picture = AddPicture();
    OVERLAY_PROPS props = PropsOf(picture);
    const CBstr i420 = Text(u"i420");
    const CBstr none = Text(u"ANY");
    const struct {
        const char* pszName;
        std::function<HRESULT()> operation;
        HRESULT hr;
        bool bMarks;
    } cases[] = {
        {"ShowItem2, as it is", [&] { return spControl->ShowItem2(text, 1); }, S_OK, true},
        {"IsItemShow2", [&] { return spControl->IsItemShow2(text, nullptr); }, S_OK, false},
        {"SwitchItems2", [&] { return spControl->SwitchItems2(text, picture); }, S_OK, true},
        {"SetItemPos2", [&] { return spControl->SetItemPos2(text, 3, 4); }, S_OK, true},
        {"SetItemMovement", [&] { return spControl->SetItemMovement(text, 1, 2, 1); }, S_OK, true},
        {"SetItemCounter", [&] { return spControl->SetItemCounter(text, 3); }, S_OK, false},
        {"SetItemAlpha2, another", [&] { return spControl->SetItemAlpha2(text, 7); }, S_OK, true},
        {"SetItemAlpha2, the same", [&] { return spControl->SetItemAlpha2(text, 7); }, S_FALSE, false},
        {"SetItemCallback", [&] { return spControl->SetItemCallback(text, nullptr); }, S_OK, false},
        {"SetItemProps", [&] { return spControl->SetItemProps(picture, &props, 0); }, S_OK, true},
        {"ChangeItemOrder, by none", [&] { return spControl->ChangeItemOrder(text, 0); }, S_FALSE, false},
        {"ChangeItemOrder, at the end", [&] { return spControl->ChangeItemOrder(text, -1); }, S_OK, true},
        {"SetColorSpace", [&] { return spControl->SetColorSpace(i420.Get()); }, S_OK, true},
        {"SetColorSpace, the same", [&] { return spControl->SetColorSpace(i420.Get()); }, S_FALSE, false},
        {"SetColorSpace, any", [&] { return spControl->SetColorSpace(none.Get()); }, S_OK, true},
        {"AddImage2, refused", [&] { return spControl->AddImage2(nullptr, 0, 0, nullptr, nullptr); }, E_INVALIDARG,
         false},
        {"AddImageFromMemory2", [&] { return AddPicture() == nUnknown ? S_FALSE : S_OK; }, S_OK, true},
        {"AddOutlinedText", [&] { return AddText() == nUnknown ? S_FALSE : S_OK; }, S_OK, true},
        {"RemoveItem2", [&] { return spControl->RemoveItem2(text); }, S_OK, true},
        {"RemoveItem2, again", [&] { return spControl->RemoveItem2(text); }, E_INVALIDARG, false},
        {"RemoveAllItems", [&] { return spControl->RemoveAllItems(); }, S_OK, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Marks(c.operation, c.hr), c.bMarks) << c.pszName;
    LONG nLeft = -1;
    EXPECT_EQ(spControl->GetItemCount2(&nLeft), S_OK);
    EXPECT_EQ(nLeft, 0);
}

TEST_F(ControlInterfaces, GiveBackWhatWasSet) {
    const LONG cookie = AddText();
    EXPECT_EQ(spControl->SetItemPos2(cookie, -3, 40000), S_OK);
    LONG x = 0;
    LONG y = 0;
    EXPECT_EQ(spControl->GetItemPos2(cookie, &x, nullptr), S_OK);
    EXPECT_EQ(spFirst->GetItemPos(static_cast<ULONG>(cookie), nullptr, &y), S_OK);
    EXPECT_EQ(x, -3);
    EXPECT_EQ(y, 40000);

    EXPECT_EQ(spControl->SetItemMovement(cookie, 0.5, -2.25, 7), S_OK);
    double dx = 0;
    double dy = 0;
    BOOL bWrap = 0;
    EXPECT_EQ(spControl->GetItemMovement(cookie, &dx, &dy, &bWrap), S_OK);
    EXPECT_EQ(dx, 0.5);
    EXPECT_EQ(dy, -2.25);
    EXPECT_EQ(bWrap, 7);

    const std::pair<std::int16_t, std::int16_t> alphas[] = {{300, 255}, {-5, 0}, {77, 77}};
    for (const auto& [set, stored] : alphas) {
        spControl->SetItemAlpha2(cookie, set);
        std::int16_t s = -1;
        EXPECT_EQ(spControl->GetItemAlpha2(cookie, &s), S_OK);
        EXPECT_EQ(s, stored);
    }
    EXPECT_EQ(spFirst->SetItemAlpha(static_cast<ULONG>(cookie), 200), S_OK);
    BYTE bt = 0;
    EXPECT_EQ(spFirst->GetItemAlpha(static_cast<ULONG>(cookie), &bt), S_OK);
    EXPECT_EQ(bt, 200);

    EXPECT_EQ(spControl->SetItemCounter(cookie, 1234), S_OK);
    LONG nCounter = 0;
    EXPECT_EQ(spControl->GetItemCounter(cookie, &nCounter), S_OK);
    EXPECT_EQ(nCounter, 1234);

    EXPECT_EQ(spFirst->ShowItem(static_cast<ULONG>(cookie), 5), S_OK);
    BOOL bShow = 0;
    EXPECT_EQ(spControl->IsItemShow2(cookie, &bShow), S_OK);
    EXPECT_EQ(bShow, 5);
    EXPECT_EQ(spFirst->SwitchItems(static_cast<ULONG>(cookie), static_cast<ULONG>(AddPicture())), S_OK);
    EXPECT_EQ(spFirst->IsItemShow(static_cast<ULONG>(cookie)), S_FALSE);
}

TEST_F(ControlInterfaces, AddPlainTextsAndPicturesThroughTheFirstInterface) {
    const CBstr text = Text(u"plain");
    const CBstr face = Text(u"DejaVu Sans, a face of a long\u20AC");
    SIZE size{0, 0};
    ULONG dwText = 0;
    ULONG dwFace = 0;
    ULONG dwPicture = 0;
    ASSERT_EQ(spFirst->AddOvlText(text.Get(), eText, nullptr, &size, 0xFF112233, 0x80445566, &dwText), S_OK);
    ASSERT_EQ(spFirst->AddOvlText2(text.Get(), eText, face.Get(), 24, nullptr, 1, 2, &dwFace), S_OK);
    ImageInfoTag info{5, 3, 24, 0, 48};
    const BYTE pixels[48] = {};
    ASSERT_EQ(spFirst->AddImageFromMemory(&info, 48, pixels, nullptr, 1, nullptr, &dwPicture), S_OK);

    const OVERLAY_PROPS props = PropsOf(static_cast<LONG>(dwText));
    EXPECT_EQ(static_cast<DWORD>(props.lForeColor), 0xFF112233u);
    EXPECT_EQ(static_cast<DWORD>(props.lBackColor), 0x80445566u);
    EXPECT_EQ(props.sAlphaValue, 255);
    EXPECT_EQ(props.bShow, 1);
    EXPECT_EQ(props.nCounterStart, -1);
    EXPECT_EQ(props.nCounterCur, -1);
    EXPECT_EQ(props.dblOutlineWidth, 0);
    EXPECT_EQ(size, SizeOf(static_cast<LONG>(dwText)));

    LOGFONT font;
    LONG nFormat = 0;
    ITEM_TYPE eType = eImage;
    ASSERT_EQ(spItem->GetItemTextFormat(static_cast<LONG>(dwFace), &font, &nFormat, &eType), S_OK);
    EXPECT_STREQ(font.lfFaceName, "DejaVu Sans, a face of a long") << "31 bytes would split a character";
    EXPECT_EQ((std::array<LONG, 5>{font.lfHeight, font.lfWeight, font.lfCharSet, font.lfQuality, nFormat}),
              (std::array<LONG, 5>{24, 400, 1, 7, 4}));
    EXPECT_EQ(eType, eText);

    const OVERLAY_PROPS picture = PropsOf(static_cast<LONG>(dwPicture));
    EXPECT_EQ(picture.nColorKeyMin, -1);
    EXPECT_EQ(picture.nColorKeyMax, 0) << "the first pixel's colour is transparent";
    EXPECT_EQ(picture.bShow, 0);

    const std::u16string_view names[] = {u"plain", u"plain", u"Memory Image"};
    LONG nCount = 0;
    ASSERT_EQ(spFirst->GetItemCount(&nCount), S_OK);
    ASSERT_EQ(nCount, 3);
    for (LONG i = 0; i < nCount; ++i) {
        ULONG dwCookie = 0;
        BSTR bsName = nullptr;
        ASSERT_EQ(spFirst->GetItemInfo(i, &dwCookie, &bsName, &eType), S_OK);
        EXPECT_EQ(TakeName(bsName), names[i]);
        EXPECT_EQ(dwCookie, (std::array{dwText, dwFace, dwPicture}[static_cast<std::size_t>(i)]));
    }
    EXPECT_EQ(eType, eImage);
}

TEST_F(ControlInterfaces, TakeAPictureFileInTheSizeThatIsAskedFor) {
    const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "control_interfaces_\u00E9.bmp";
    const BITMAPINFOHEADER header{40, 5, 3, 1, 24, BI_RGB, 48, 0, 0, 0, 0};
    const std::vector<BYTE> pixels(48, 7);
    ASSERT_EQ(CPicturePersist::SaveToFile(file.string().c_str(), &header, pixels.data()), S_OK);
    const CBstr name = Text(file.u16string());
    const struct {
        SIZE asked;
        SIZE made;
    } cases[] = {{{0, 0}, {4, 2}}, {{100, 0}, {4, 2}}, {{9, 7}, {8, 6}}};
    for (const auto& c : cases) {
        SIZE size = c.asked;
        LONG cookie = 0;
        ASSERT_EQ(spControl->AddImage2(name.Get(), -1, -1, &size, &cookie), S_OK);
        EXPECT_EQ(size, c.made);
        EXPECT_EQ(SizeOf(cookie), c.made);
        OVERLAY_PROPS props;
        ASSERT_EQ(spControl->GetItemProps(cookie, &props), S_OK);
        EXPECT_EQ(TakeName(props.bsTextString), name.View());
        EXPECT_EQ(props.sAlphaValue, 255);
        EXPECT_EQ(props.bShow, 0);
    }
    std::filesystem::remove(file);
    EXPECT_EQ(spFirst->AddImage(name.Get(), 0, nullptr, nullptr), static_cast<HRESULT>(0x80070002)) << "it is gone";
    LONG nCount = 0;
    EXPECT_EQ(spControl->GetItemCount2(&nCount), S_OK);
    EXPECT_EQ(nCount, 3);
}

TEST_F(ControlInterfaces, DemandOneOfTheColourSpacesThatItemsCanStandIn) {
    for (const auto* pszName : {u"ARGB32", u"rgb32", u"RGB24", u"YUY2", u"yvyu", u"UYVY", u"YV12", u"I420"}) {
        const CBstr name = Text(pszName);
        EXPECT_EQ(spControl->SetColorSpace(name.Get()), S_OK);
        EXPECT_EQ(spControl->SetColorSpace(name.Get()), S_FALSE);
        BSTR bsNow = nullptr;
        ASSERT_EQ(spControl->GetColorSpace(&bsNow), S_OK);
        std::u16string upper(name.View());
        for (char16_t& c : upper)
            if (c >= u'a') c = static_cast<char16_t>(c - u'a' + u'A');
        EXPECT_EQ(TakeName(bsNow), upper);
    }
    for (const auto* pszName : {u"RGB565", u"RGB555", u"RGB8", u"YVU9", u"NV12"})
        EXPECT_EQ(spControl->SetColorSpace(Text(pszName).Get()), VFW_E_TYPE_NOT_ACCEPTED);
    for (const auto* pszName : {u"", u"any"}) {
        EXPECT_EQ(spControl->SetColorSpace(Text(pszName).Get()), S_OK);
        BSTR bsNow = nullptr;
        ASSERT_EQ(spControl->GetColorSpace(&bsNow), S_OK);
        EXPECT_EQ(TakeName(bsNow), u"Any");
    }
}

TEST_F(ControlInterfaces, ReleaseTheCallbackOfARemovedItemWithTheListUnlocked) {
    // A callback whose last words go to the control interfaces from another thread would wait for the list forever.
    const LONG cookie = AddText();
    LONG nCountAtTheEnd = -1;
    struct LastWords {
        std::function<void()> say;
        ~LastWords() { say(); }
    };
    auto spWords = std::make_shared<LastWords>();
    spWords->say = [&] { std::thread([&] { spControl->GetItemCount2(&nCountAtTheEnd); }).join(); };
    {
        auto spCallback = MakeCounted<CScriptedCallback>([spWords](OVERLAY_PROPS&) { return S_OK; });
        spWords.reset();
        ASSERT_EQ(spControl->SetItemCallback(cookie, spCallback.Get()), S_OK);
    }
    EXPECT_EQ(spControl->RemoveItem2(cookie), S_OK);
    EXPECT_EQ(nCountAtTheEnd, 0);
}

} // namespace
} // namespace vellumcaster
