#pragma once

#include "image/color_key.h"
#include "platform/com/no_exceptions.h"

#include <vellumcaster/control.h>

namespace vellumcaster {

/// The control interfaces of an object around an engine: the second one forwards to the engine, the first one to the
/// second. No exception leaves a call.
/// \tparam Object  derives from this and has `Engine()`, a `COverlayEngine`, and `Demands()`, a `CStreamDemands`.
template <class Object>
class IVellumcaster2Impl : public IVellumcaster2 {
public:
    // IVellumcaster

    HRESULT AddOvlText(BSTR bsText, ITEM_TYPE eTextType, const LOGFONT* pLogFont, SIZE* pSize, DWORD dwTextCol,
                       DWORD dwBackCol, ULONG* pdwCookie) override {
        const OVERLAY_PROPS props = PlainText(bsText, dwTextCol, dwBackCol);
        return WithCookie(pdwCookie, [&](LONG* pnCookie) {
            return AddOutlinedText(eTextType, pLogFont, nPlainTextFormat, &props, pSize, pnCookie);
        });
    }
    HRESULT AddOvlText2(BSTR bsText, ITEM_TYPE eTextType, BSTR bsFontFace, DWORD dwFontHeight, SIZE* pSize,
                        DWORD dwTextCol, DWORD dwBackCol, ULONG* pdwCookie) override {
        const OVERLAY_PROPS props = PlainText(bsText, dwTextCol, dwBackCol);
        return WithCookie(pdwCookie, [&](LONG* pnCookie) {
            return AddOutlinedTextVB(eTextType, bsFontFace, dwFontHeight, nPlainTextFormat, &props, pSize, pnCookie);
        });
    }
    HRESULT AddImage(BSTR bsFileName, BOOL bTopLeftTrans, SIZE* pSize, ULONG* pdwCookie) override {
        return WithCookie(pdwCookie, [&](LONG* pnCookie) {
            return AddImage2(bsFileName, nTopLeftKeyMin, UpperKey(bTopLeftTrans), pSize, pnCookie);
        });
    }
    HRESULT RemoveItem(ULONG dwCookie) override { return RemoveItem2(Signed(dwCookie)); }
    HRESULT GetItemCount(LONG* pnCount) override { return GetItemCount2(pnCount); }
    HRESULT GetItemInfo(LONG nIndex, ULONG* pdwCookie, BSTR* pbsName, ITEM_TYPE* pItemType) override {
        return WithCookie(pdwCookie,
                          [&](LONG* pnCookie) { return GetItemInfo2(nIndex, pnCookie, pbsName, pItemType); });
    }
    HRESULT ShowItem(ULONG dwCookie, BOOL bShow) override { return ShowItem2(Signed(dwCookie), bShow); }
    HRESULT IsItemShow(ULONG dwCookie) override { return IsItemShow2(Signed(dwCookie), nullptr); }
    HRESULT SwitchItems(ULONG dwCookieHide, ULONG dwCookieShow) override {
        return SwitchItems2(Signed(dwCookieHide), Signed(dwCookieShow));
    }
    HRESULT SetItemPos(ULONG dwCookie, LONG nPosX, LONG nPosY) override {
        return SetItemPos2(Signed(dwCookie), nPosX, nPosY);
    }
    HRESULT GetItemPos(ULONG dwCookie, LONG* pnPosX, LONG* pnPosY) override {
        return GetItemPos2(Signed(dwCookie), pnPosX, pnPosY);
    }
    HRESULT SetItemAlpha(ULONG dwCookie, BYTE btAlpha) override { return SetItemAlpha2(Signed(dwCookie), btAlpha); }
    HRESULT GetItemAlpha(ULONG dwCookie, BYTE* pbtAlpha) override {
        if (!pbtAlpha) return E_POINTER;
        std::int16_t sAlpha = 0;
        const HRESULT hr = GetItemAlpha2(Signed(dwCookie), &sAlpha);
        if (SUCCEEDED(hr)) *pbtAlpha = static_cast<BYTE>(sAlpha);
        return hr;
    }
    HRESULT UseExtraBuffer(BOOL bUse) override { return UseExtraBuffer2(bUse); }
    HRESULT IsUseExtraBuffer() override { return IsUseExtraBuffer2(nullptr); }
    HRESULT AddImageFromMemory(ImageInfoTag* pImageInfo, DWORD cbImage, const BYTE* pbImage, BSTR bsItemName,
                               BOOL bTopLeftTrans, SIZE* pSize, ULONG* pdwCookie) override {
        return WithCookie(pdwCookie, [&](LONG* pnCookie) {
            return AddImageFromMemory2(pImageInfo, cbImage, pbImage, bsItemName, nTopLeftKeyMin,
                                       UpperKey(bTopLeftTrans), pSize, pnCookie);
        });
    }

    // IVellumcaster2

    HRESULT SetColorSpace(BSTR bsFourccDesired) override {
        return WithoutExceptions([&] { return This().Demands().SetColorSpace(bsFourccDesired); });
    }
    HRESULT GetColorSpace(BSTR* pbsFourccDesired) override {
        return WithoutExceptions([&] { return This().Demands().GetColorSpace(pbsFourccDesired); });
    }
    HRESULT UseExtraBuffer2(BOOL bUse) override {
        return WithoutExceptions([&] { return This().Demands().UseExtraBuffer2(bUse); });
    }
    HRESULT IsUseExtraBuffer2(BOOL* pbUse) override {
        return WithoutExceptions([&] { return This().Demands().IsUseExtraBuffer2(pbUse); });
    }

    HRESULT AddImage2(BSTR bsImageFileName, LONG nColorKeyMin, LONG nColorKeyMax, SIZE* pSize,
                      LONG* pnCookie) override {
        return CallEngine([&](auto& engine) {
            return engine.AddImage2(bsImageFileName, nColorKeyMin, nColorKeyMax, pSize, pnCookie);
        });
    }
    HRESULT AddImageFromMemory2(ImageInfoTag* pImageInfo, DWORD cbImage, const BYTE* pbImage, BSTR bsItemName,
                                LONG nColorKeyMin, LONG nColorKeyMax, SIZE* pSize, LONG* pnCookie) override {
        return CallEngine([&](auto& engine) {
            return engine.AddImageFromMemory2(pImageInfo, cbImage, pbImage, bsItemName, nColorKeyMin, nColorKeyMax,
                                              pSize, pnCookie);
        });
    }
    HRESULT AddOutlinedText(ITEM_TYPE eTextType, const LOGFONT* pLogFont, LONG nTextFormat,
                            const OVERLAY_PROPS* pOvlProps, SIZE* pSize, LONG* pnCookie) override {
        return CallEngine([&](auto& engine) {
            return engine.AddOutlinedText(eTextType, pLogFont, nTextFormat, pOvlProps, pSize, pnCookie);
        });
    }
    HRESULT AddOutlinedTextVB(ITEM_TYPE eTextType, BSTR bsFontFace, DWORD dwFontHeight, LONG nTextFormat,
                              const OVERLAY_PROPS* pOvlProps, SIZE* pSize, LONG* pnCookie) override {
        return CallEngine([&](auto& engine) {
            return engine.AddOutlinedTextVB(eTextType, bsFontFace, dwFontHeight, nTextFormat, pOvlProps, pSize,
                                            pnCookie);
        });
    }
    HRESULT AddRoundRect(const SIZE* pSize, const SIZE* pEllipseSize, const OVERLAY_PROPS* pOvlProps,
                         LONG* pdwCookie) override {
        return CallEngine([&](auto& engine) { return engine.AddRoundRect(pSize, pEllipseSize, pOvlProps, pdwCookie); });
    }

    HRESULT RemoveItem2(LONG nCookie) override {
        return CallEngine([&](auto& engine) { return engine.RemoveItem2(nCookie); });
    }
    HRESULT RemoveAllItems() override {
        return CallEngine([](auto& engine) { return engine.RemoveAllItems(); });
    }
    HRESULT GetItemCount2(LONG* pnCount) override {
        return CallEngine([&](auto& engine) { return engine.GetItemCount2(pnCount); });
    }
    HRESULT GetItemInfo2(LONG nIndex, LONG* pnCookie, BSTR* pbsName, ITEM_TYPE* pItemType) override {
        return CallEngine([&](auto& engine) { return engine.GetItemInfo2(nIndex, pnCookie, pbsName, pItemType); });
    }
    HRESULT GetItemSize(LONG nCookie, SIZE* pSize) override {
        return CallEngine([&](auto& engine) { return engine.GetItemSize(nCookie, pSize); });
    }
    HRESULT GetItemProps(LONG nCookie, OVERLAY_PROPS* pProps) override {
        return CallEngine([&](auto& engine) { return engine.GetItemProps(nCookie, pProps); });
    }
    HRESULT ChangeItemOrder(LONG nCookie, LONG nChange) override {
        return CallEngine([&](auto& engine) { return engine.ChangeItemOrder(nCookie, nChange); });
    }
    HRESULT SetItemCallback(LONG nCookie, IVellumcasterCallback* pCallback) override {
        return CallEngine([&](auto& engine) { return engine.SetItemCallback(nCookie, pCallback); });
    }
    HRESULT SetItemProps(LONG nCookie, const OVERLAY_PROPS* pProps, LONG nMask) override {
        return CallEngine([&](auto& engine) { return engine.SetItemProps(nCookie, pProps, nMask); });
    }
    HRESULT ShowItem2(LONG nCookie, BOOL bShow) override {
        return CallEngine([&](auto& engine) { return engine.ShowItem2(nCookie, bShow); });
    }
    HRESULT IsItemShow2(LONG nCookie, BOOL* pbShow) override {
        return CallEngine([&](auto& engine) { return engine.IsItemShow2(nCookie, pbShow); });
    }
    HRESULT SwitchItems2(LONG nCookieHide, LONG nCookieShow) override {
        return CallEngine([&](auto& engine) { return engine.SwitchItems2(nCookieHide, nCookieShow); });
    }
    HRESULT SetItemPos2(LONG nCookie, LONG nPosX, LONG nPosY) override {
        return CallEngine([&](auto& engine) { return engine.SetItemPos2(nCookie, nPosX, nPosY); });
    }
    HRESULT GetItemPos2(LONG nCookie, LONG* pnPosX, LONG* pnPosY) override {
        return CallEngine([&](auto& engine) { return engine.GetItemPos2(nCookie, pnPosX, pnPosY); });
    }
    HRESULT SetItemMovement(LONG nCookie, double dblXDelta, double dblYDelta, BOOL bNoOffscreen) override {
        return CallEngine(
            [&](auto& engine) { return engine.SetItemMovement(nCookie, dblXDelta, dblYDelta, bNoOffscreen); });
    }
    HRESULT GetItemMovement(LONG nCookie, double* pdblXDelta, double* pdblYDelta, BOOL* pbNoOffscreen) override {
        return CallEngine(
            [&](auto& engine) { return engine.GetItemMovement(nCookie, pdblXDelta, pdblYDelta, pbNoOffscreen); });
    }
    HRESULT SetItemCounter(LONG nCookie, LONG nCounter) override {
        return CallEngine([&](auto& engine) { return engine.SetItemCounter(nCookie, nCounter); });
    }
    HRESULT GetItemCounter(LONG nCookie, LONG* pnCounter) override {
        return CallEngine([&](auto& engine) { return engine.GetItemCounter(nCookie, pnCounter); });
    }
    HRESULT SetItemAlpha2(LONG nCookie, std::int16_t sAlpha) override {
        return CallEngine([&](auto& engine) { return engine.SetItemAlpha2(nCookie, sAlpha); });
    }
    HRESULT GetItemAlpha2(LONG nCookie, std::int16_t* psAlpha) override {
        return CallEngine([&](auto& engine) { return engine.GetItemAlpha2(nCookie, psAlpha); });
    }

protected:
    ~IVellumcaster2Impl() = default;

private:
    static constexpr LONG nPlainTextFormat = 4;

    Object& This() { return static_cast<Object&>(*this); }

    template <class Call>
    HRESULT CallEngine(const Call& call) {
        return WithoutExceptions([&] { return call(This().Engine()); });
    }

    /// The first interface has the second one's cookies under another type.
    static LONG Signed(ULONG dwCookie) { return static_cast<LONG>(dwCookie); }

    /// \param call  gets a pointer to a cookie, null where `pdwCookie` is; a cookie that it leaves alone stays.
    template <class Call>
    static HRESULT WithCookie(ULONG* pdwCookie, const Call& call) {
        if (!pdwCookie) return call(nullptr);
        LONG nCookie = Signed(*pdwCookie);
        const HRESULT hr = call(&nCookie);
        *pdwCookie = static_cast<ULONG>(nCookie);
        return hr;
    }

    static LONG UpperKey(BOOL bTopLeftTrans) { return bTopLeftTrans ? nTopLeftKeyMax : nNoColorKeyMax; }
    static_assert(nTopLeftKeyMin == nNoColorKeyMin);

    /// A shown text without outline, on the machine's clock.
    static OVERLAY_PROPS PlainText(BSTR bsText, DWORD dwTextCol, DWORD dwBackCol) {
        OVERLAY_PROPS props;
        props.bsTextString = bsText;
        props.lForeColor = static_cast<LONG>(dwTextCol);
        props.lBackColor = static_cast<LONG>(dwBackCol);
        props.sAlphaValue = 255;
        props.bShow = 1;
        props.nCounterStart = -1;
        props.nCounterCur = -1;
        return props;
    }
};

} // namespace vellumcaster
