#pragma once

#include <vellumcaster/callback.h>
#include <vellumcaster/item.h>
#include <vellumcaster/log_font.h>
#include <vellumcaster/results.h>

namespace vellumcaster {

/// The control interface of a stack of overlay items, in its first form: what each call does stands with the call of
/// `IVellumcaster2` that has the same name and a 2 behind it.
///
/// Every call may come from any thread, in any state, while frames flow; it takes effect from the next frame on. A
/// cookie names one item. Colours are 0xAABBGGRR. Strings that go in stay the caller's; strings that come out are the
/// caller's to free with `SysFreeString`.
///
/// Each call answers S_OK, what stands with it, or E_OUTOFMEMORY; a call with a cookie answers E_INVALIDARG for one that
/// is not in the list. After a failure nothing has changed, unless the call says otherwise.
struct IVellumcaster : IUnknown {
    static constexpr GUID IID{0x0BF3D0F4, 0xE212, 0x4872, {0xA0, 0x9B, 0x7C, 0x71, 0xA4, 0xD5, 0xBF, 0x81}};

    /// Puts a text on top of the stack: without outline, shown, at (0, 0), on the machine's clock where it is a date or
    /// a time. Otherwise as `AddOutlinedText`.
    /// \param _pLogFont  null for the default font.
    /// \param _pSize  in: the least size in pixels; out: the item's. May be null.
    /// \param _pdwCookie  receives the item's cookie; may be null.
    virtual HRESULT AddOvlText(BSTR _bsText, ITEM_TYPE _eTextType, const LOGFONT* _pLogFont, SIZE* _pSize,
                               DWORD _dwTextCol, DWORD _dwBackCol, ULONG* _pdwCookie) = 0;
    /// The same with a font of a face and a height, as `AddOutlinedTextVB` makes it.
    virtual HRESULT AddOvlText2(BSTR _bsText, ITEM_TYPE _eTextType, BSTR _bsFontFace, DWORD _dwFontHeight, SIZE* _pSize,
                                DWORD _dwTextCol, DWORD _dwBackCol, ULONG* _pdwCookie) = 0;
    /// \param _bTopLeftTrans  whether the colour of the picture's first pixel becomes transparent.
    virtual HRESULT AddImage(BSTR _bsFileName, BOOL _bTopLeftTrans, SIZE* _pSize, ULONG* _pdwCookie) = 0;
    virtual HRESULT RemoveItem(ULONG _dwCookie) = 0;
    virtual HRESULT GetItemCount(LONG* _pnCount) = 0;
    virtual HRESULT GetItemInfo(LONG _nIndex, ULONG* _pdwCookie, BSTR* _pbsName, ITEM_TYPE* _pItemType) = 0;
    virtual HRESULT ShowItem(ULONG _dwCookie, BOOL _bShow) = 0;
    /// \return S_OK: shown; S_FALSE: hidden.
    virtual HRESULT IsItemShow(ULONG _dwCookie) = 0;
    virtual HRESULT SwitchItems(ULONG _dwCookieHide, ULONG _dwCookieShow) = 0;
    virtual HRESULT SetItemPos(ULONG _dwCookie, LONG _nPosX, LONG _nPosY) = 0;
    virtual HRESULT GetItemPos(ULONG _dwCookie, LONG* _pnPosX, LONG* _pnPosY) = 0;
    virtual HRESULT SetItemAlpha(ULONG _dwCookie, BYTE _btAlpha) = 0;
    virtual HRESULT GetItemAlpha(ULONG _dwCookie, BYTE* _pbtAlpha) = 0;
    virtual HRESULT UseExtraBuffer(BOOL _bUse) = 0;
    /// \return S_OK: on; S_FALSE: off.
    virtual HRESULT IsUseExtraBuffer() = 0;
    virtual HRESULT AddImageFromMemory(ImageInfoTag* _pImageInfo, DWORD _cbImage, const BYTE* _pbImage,
                                       BSTR _bsItemName, BOOL _bTopLeftTrans, SIZE* _pSize, ULONG* _pdwCookie) = 0;

protected:
    ~IVellumcaster() = default;
};

/// The control interface of a stack of overlay items. Threads, ownership and common results are as for `IVellumcaster`.
///
/// The stack is a list from the bottom up; a new item goes on top. "Marks unsaved" says that the call makes
/// `IPersistStream::IsDirty` answer yes.
struct IVellumcaster2 : IVellumcaster {
    using Parent = IVellumcaster;
    static constexpr GUID IID{0x0BF3D0F6, 0xE212, 0x4872, {0xA0, 0x9B, 0x7C, 0x71, 0xA4, 0xD5, 0xBF, 0x81}};

    /// Demands one pixel format of the stream: "ARGB32", "RGB32", "RGB24", "YUY2", "YVYU", "UYVY", "YV12" or "I420", in
    /// any case; null, empty or "Any" lifts the demand, also while frames flow. Marks unsaved when nothing is connected.
    /// \return S_FALSE: it is the present demand; VFW_E_NOT_STOPPED; VFW_E_TYPE_NOT_ACCEPTED for any other name, and
    ///         where a neighbour of the filter does not take the format.
    virtual HRESULT SetColorSpace(BSTR _bsFourccDesired) = 0;
    /// The name of the demanded format, or "Any". \return E_POINTER for null.
    virtual HRESULT GetColorSpace(BSTR* _pbsFourccDesired) = 0;
    /// Whether frames are produced into ordinary memory and copied once to where they go on, for the sake of output
    /// memory that is slow to read. On in a new filter.
    /// \return S_FALSE: it is so already; VFW_E_NOT_STOPPED; VFW_E_NOT_IN_GRAPH, or why the graph could not connect the
    ///         filter anew, and the setting is as before.
    virtual HRESULT UseExtraBuffer2(BOOL _bUse) = 0; // NOLINT(bugprone-virtual-near-miss): a call of its own
    /// \param _pbUse  receives 1 or 0; may be null. \return S_OK: on; S_FALSE: off.
    virtual HRESULT IsUseExtraBuffer2(BOOL* _pbUse) = 0;

    /// Puts the picture of a bitmap file on top of the stack, hidden, at (0, 0), opaque. Marks unsaved.
    /// \param _bsImageFileName  24 or 32 bits, not compressed. It becomes the item's name.
    /// \param _nColorKeyMin, _nColorKeyMax  -1, -1: no key. -1 and anything else: the colour of the first pixel becomes
    ///        transparent. Else the colours from the one to the other (0xAABBGGRR) get the alpha that their top bytes
    ///        say.
    /// \param _pSize  in: the size wanted in pixels, a 0 in either for the picture's own; out: the item's, which is even.
    ///        May be null.
    /// \param _pnCookie  receives the item's cookie; may be null.
    /// \return E_INVALIDARG for a null name; what reading the file failed with; as `AddImageFromMemory2`.
    virtual HRESULT AddImage2(BSTR _bsImageFileName, LONG _nColorKeyMin, LONG _nColorKeyMax, SIZE* _pSize,
                              LONG* _pnCookie) = 0;
    /// The same with a picture in memory, which is copied. Marks unsaved.
    /// \param _pImageInfo  describes the picture; where it is scaled it then describes the scaled one.
    /// \param _cbImage  bytes at `_pbImage`, at least the record's `biSizeImage`.
    /// \param _bsItemName  null for "Memory Image".
    /// \return E_INVALIDARG for a null picture, too few bytes, or a picture that cannot be taken; E_NOTIMPL in a stream
    ///         whose format items cannot be prepared for.
    virtual HRESULT AddImageFromMemory2(ImageInfoTag* _pImageInfo, DWORD _cbImage, const BYTE* _pbImage,
                                        BSTR _bsItemName, LONG _nColorKeyMin, LONG _nColorKeyMax, SIZE* _pSize,
                                        LONG* _pnCookie) = 0;
    /// Draws a text and puts it on top of the stack. Marks unsaved.
    /// \param _eTextType  a kind of text.
    /// \param _pLogFont  null, or without a face name, for the default font.
    /// \param _nTextFormat  the format word of the text drawing call; 4 is usual.
    /// \param _pOvlProps  all the item's properties. `bsTextString` is the text of a fixed one; of a date or a time the
    ///        picture that it is formatted by, "yyyy/MM/dd" or "HH:mm:ss" where there is none; of the others a label.
    /// \param _pSize  in: the least size wanted in pixels; out: the item's. May be null.
    /// \param _pnCookie  receives the item's cookie; may be null.
    /// \return E_INVALIDARG for a null record, a kind that is no text, or a fixed text that is not there; what drawing
    ///         answers.
    virtual HRESULT AddOutlinedText(ITEM_TYPE _eTextType, const LOGFONT* _pLogFont, LONG _nTextFormat,
                                    const OVERLAY_PROPS* _pOvlProps, SIZE* _pSize, LONG* _pnCookie) = 0;
    /// The same with a regular, smoothed font of a face and a height.
    /// \param _bsFontFace  its UTF-8 is cut to 31 bytes; null for the default font.
    /// \param _dwFontHeight  a `lfHeight`.
    virtual HRESULT AddOutlinedTextVB(ITEM_TYPE _eTextType, BSTR _bsFontFace, DWORD _dwFontHeight, LONG _nTextFormat,
                                      const OVERLAY_PROPS* _pOvlProps, SIZE* _pSize, LONG* _pnCookie) = 0;
    /// \return E_NOTIMPL, always.
    virtual HRESULT AddRoundRect(const SIZE* _pSize, const SIZE* _pEllipseSize, const OVERLAY_PROPS* pOvlProps,
                                 LONG* _pdwCookie) = 0;

    /// Takes an item off the list; its callback is not called again. Marks unsaved.
    virtual HRESULT RemoveItem2(LONG _nCookie) = 0;
    virtual HRESULT RemoveAllItems() = 0;
    /// \return E_POINTER for null.
    virtual HRESULT GetItemCount2(LONG* _pnCount) = 0; // NOLINT(bugprone-virtual-near-miss): a call of its own
    /// What stands at a place of the list.
    /// \param _nIndex  from 0, the bottom of the stack.
    /// \return E_POINTER for a null pointer; E_INVALIDARG for a place outside of the list.
    virtual HRESULT GetItemInfo2(LONG _nIndex, LONG* _pnCookie, BSTR* _pbsName, ITEM_TYPE* _pItemType) = 0;
    /// Width and height in pixels; 0, 0 for a frame number or a timecode before its first frame.
    /// \return E_POINTER for null.
    virtual HRESULT GetItemSize(LONG _nCookie, SIZE* _pSize) = 0;
    /// The whole record, with a copy of the item's name in `bsTextString`, which the caller frees.
    /// \return E_POINTER for null.
    virtual HRESULT GetItemProps(LONG _nCookie, OVERLAY_PROPS* _pProps) = 0;
    /// Swaps the item with its neighbour: above for a positive, below for a negative change. The cookies keep their
    /// places in the stack, so that each then names the other item. At the end of the list nothing moves. Marks unsaved.
    /// \return S_FALSE for a change of 0.
    virtual HRESULT ChangeItemOrder(LONG _nCookie, LONG _nChange) = 0;
    /// Replaces the item's callback and takes a reference on it; null removes it.
    virtual HRESULT SetItemCallback(LONG _nCookie, IVellumcasterCallback* _pCallback) = 0;
    /// Applies a whole record: every field counts. What the changes make necessary is drawn anew. Of an image the colour
    /// keys count when both have changed. Marks unsaved.
    /// \param nMask  is not looked at.
    /// \return E_INVALIDARG for a null record; for a text whose string or outline changed, what its drawing answers, and
    ///         the record applies all the same.
    virtual HRESULT SetItemProps(LONG _nCookie, const OVERLAY_PROPS* _pProps, LONG nMask) = 0;
    /// Marks unsaved.
    virtual HRESULT ShowItem2(LONG _nCookie, BOOL _bShow) = 0;
    /// \param _pbShow  receives the item's `bShow`; may be null. \return S_OK: shown; S_FALSE: hidden.
    virtual HRESULT IsItemShow2(LONG _nCookie, BOOL* _pbShow) = 0;
    /// Hides one item and shows another, between the same two frames. Marks unsaved.
    virtual HRESULT SwitchItems2(LONG _nCookieHide, LONG _nCookieShow) = 0;
    /// Pixels from the frame's left and top edge, any values. Marks unsaved.
    virtual HRESULT SetItemPos2(LONG _nCookie, LONG _nPosX, LONG _nPosY) = 0;
    /// Either pointer may be null.
    virtual HRESULT GetItemPos2(LONG _nCookie, LONG* _pnPosX, LONG* _pnPosY) = 0;
    /// Pixels a frame; with `_bNoOffscreen` an item that has left the frame comes in again at the opposite edge. Marks
    /// unsaved.
    virtual HRESULT SetItemMovement(LONG _nCookie, double _dblXDelta, double _dblYDelta, BOOL _bNoOffscreen) = 0;
    /// Any of the pointers may be null.
    virtual HRESULT GetItemMovement(LONG _nCookie, double* _pdblXDelta, double* _pdblYDelta, BOOL* _pbNoOffscreen) = 0;
    /// Sets the live counter, coded by the item's kind; a date or a time is drawn at once.
    virtual HRESULT SetItemCounter(LONG _nCookie, LONG _nCounter) = 0;
    /// \return E_POINTER for null.
    virtual HRESULT GetItemCounter(LONG _nCookie, LONG* _pnCounter) = 0;
    /// 0 is invisible, 255 opaque; other values are brought to the nearer of the two. Marks unsaved.
    /// \return S_FALSE: it is so already; what weighing the planes anew answers, and the value stands.
    virtual HRESULT SetItemAlpha2(LONG _nCookie, std::int16_t _sAlpha) = 0;
    /// \return E_POINTER for null.
    virtual HRESULT GetItemAlpha2(LONG _nCookie, std::int16_t* _psAlpha) = 0;

protected:
    ~IVellumcaster2() = default;
};

} // namespace vellumcaster
