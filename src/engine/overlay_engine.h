#pragma once

#include "engine/frame_times.h"
#include "engine/item_list.h"
#include "engine/item_painter.h"
#include "image/picture_format.h"
#include "platform/kernel/critical_section.h"

#include <atomic>

namespace vellumcaster {

/// A frame to draw on, in the caller's memory.
struct FrameBuffer {
    BYTE* pData = nullptr;
    std::size_t cb = 0; ///< bytes that may be written
    PictureFormat desc;
};

/// The stack of items and its drawing on one frame, with no graph around it: all that is needed to put items on
/// frames of one's own.
///
/// Every operation may be called from any thread while frames are mixed; it takes the item lock, waits for the
/// frame in hand and applies from the next item or frame on. None of them throws.
class COverlayEngine {
public:
    /// \param painter  keeps the items' pixels; owned by the caller and alive as long as the engine.
    explicit COverlayEngine(IItemPainter& painter) : m_Painter(painter) {}
    COverlayEngine(const COverlayEngine&) = delete;
    COverlayEngine& operator=(const COverlayEngine&) = delete;

    /// Puts a copy of an item, drawn and prepared already, on top of the stack.
    /// \param pnCookie  receives the item's cookie; may be null.
    /// \return S_OK; E_OUTOFMEMORY, and list, cookie and dirty flag are as before.
    HRESULT AddItem(const OverlayItem& item, Cookie* pnCookie);

    /// Puts a bitmap on top of the stack, hidden, at (0, 0), with an alpha of 255. It is copied, scaled and prepared
    /// without the item lock.
    /// \param pImageInfo  24 or 32 bits, not compressed; where the picture is scaled it then describes the scaled one.
    /// \param cbImage  bytes at `pbImage`, at least the record's `biSizeImage`.
    /// \param bsItemName  null for "Memory Image".
    /// \param nColorKeyMin, nColorKeyMax  as in the item's properties.
    /// \param pSize  in: the size wanted in pixels, a 0 in either for the bitmap's own; out: the item's. May be null.
    /// \param pnCookie  receives the item's cookie; may be null.
    /// \return S_OK; E_INVALIDARG for a null bitmap, too few bytes, or a bitmap that cannot be taken; E_NOTIMPL in a
    ///         stream whose format items cannot be prepared for; E_OUTOFMEMORY. After a failure the list is as before.
    HRESULT AddImageFromMemory2(ImageInfoTag* pImageInfo, DWORD cbImage, const BYTE* pbImage, BSTR bsItemName,
                                LONG nColorKeyMin, LONG nColorKeyMax, SIZE* pSize, Cookie* pnCookie);

    /// Draws a text and puts it on top of the stack. It is drawn without the item lock; a frame number or a timecode is
    /// drawn on its first frame.
    /// \param eType  a kind of text.
    /// \param pLogFont  null, or without a face name, for the default font.
    /// \param nTextFormat  the format word of the text drawing call.
    /// \param pOvlProps  the item's properties. `bsTextString` is the text of a fixed one; of a date or a time the
    ///        picture that it is formatted by, "yyyy/MM/dd" or "HH:mm:ss" where there is none; of the others a label.
    /// \param pSize  in: the least size wanted in pixels; out: the item's. May be null.
    /// \param pnCookie  receives the item's cookie; may be null.
    /// \return S_OK; E_INVALIDARG for a null record, a kind that is no text, or a fixed text that is not there;
    ///         E_OUTOFMEMORY; what drawing answers. After a failure the list is as before.
    HRESULT AddOutlinedText(ITEM_TYPE eType, const LOGFONT* pLogFont, LONG nTextFormat, const OVERLAY_PROPS* pOvlProps,
                            SIZE* pSize, Cookie* pnCookie);

    /// \return S_OK; E_INVALIDARG for an unknown cookie.
    HRESULT RemoveItem2(Cookie nCookie);

    /// Empties the list. \return S_OK.
    HRESULT RemoveAllItems();

    /// \return S_OK; E_POINTER.
    HRESULT GetItemCount2(LONG* pnCount);

    /// The whole record, with a copy of the item's name in `bsTextString` that the caller frees.
    /// \return S_OK; E_POINTER; E_INVALIDARG for an unknown cookie; E_OUTOFMEMORY.
    HRESULT GetItemProps(Cookie nCookie, OVERLAY_PROPS* pProps);

    /// Width and height of the item in pixels.
    /// \return S_OK; E_POINTER; E_INVALIDARG for an unknown cookie.
    HRESULT GetItemSize(Cookie nCookie, SIZE* pSize);

    /// Applies a whole record: every field counts. The exact position is set to the record's, and what the
    /// changes make necessary is drawn anew.
    /// \param nMask  is not looked at.
    /// \return S_OK; E_INVALIDARG for a null record or an unknown cookie; E_OUTOFMEMORY; for a text whose string
    ///         or outline changed, what its drawing answers.
    HRESULT SetItemProps(Cookie nCookie, const OVERLAY_PROPS* pProps, LONG nMask);

    /// Replaces the item's callback and takes a reference; null removes it.
    /// \return S_OK; E_INVALIDARG for an unknown cookie.
    HRESULT SetItemCallback(Cookie nCookie, IVellumcasterCallback* pCallback);

    /// Swaps the item's record with its neighbour's: above for a positive, below for a negative change. The
    /// cookies keep their places, so each then names the other record. At the end of the list nothing moves.
    /// \return S_OK; S_FALSE for a change of 0; E_INVALIDARG for an unknown cookie.
    HRESULT ChangeItemOrder(Cookie nCookie, LONG nChange);

    /// Builds the planes of every item, in list order, for a stream's format that has just become known. An item
    /// that cannot be prepared stays without planes and is not drawn.
    void PrepareItems();

    /// Before a stream starts: counters at their start, exact positions at the set ones, clocks to be anchored.
    void ResetItemForRun();

    /// Draws the stack on one frame, from the bottom up: for each item its callback, its live update, and for a
    /// shown one its layers and one step of its movement. An item that fails is left out. Allocates nothing
    /// beyond what callbacks ask for.
    /// \param frame  the frame, mixed in place.
    /// \param sizeStream  of the stream's frames in pixels, at whose edges moving items wrap.
    /// \param times  what callbacks are told of the frame.
    /// \return S_OK; E_INVALIDARG when the buffer is null or smaller than its descriptor says, and nothing was done.
    HRESULT MixFrame(const FrameBuffer& frame, const SIZE& sizeStream, const FrameTimes& times);

    /// Guards the list, its records and planes. Reentrant; held across a whole frame.
    [[nodiscard]] CCriticalSection& ItemLock() { return m_csItems; }

    /// Whether there are changes that no stream holds.
    [[nodiscard]] bool IsDirty() const { return m_bDirty; }

private:
    template <class Operation>
    HRESULT WithItem(Cookie nCookie, const Operation& operation);

    HRESULT ApplyProps(OverlayItem& item, const OVERLAY_PROPS& props);
    HRESULT ApplyText(OverlayItem& item, const OVERLAY_PROPS& before, BSTR bsText);
    void CallBack(LONG index, const FrameTimes& times);

    IItemPainter& m_Painter;
    ItemMap m_Items;
    CCriticalSection m_csItems;
    std::atomic<bool> m_bDirty = false; ///< read without the lock
};

} // namespace vellumcaster
