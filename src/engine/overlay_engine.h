#pragma once

#include "engine/frame_times.h"
#include "engine/item_list.h"
#include "engine/item_painter.h"
#include "image/picture_format.h"
#include "platform/kernel/critical_section.h"

#include <vellumcaster/stream.h>

#include <atomic>

namespace vellumcaster {

struct StoredItem;

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

    /// Puts an item, drawn and prepared already, on top of the stack.
    /// \param pnCookie  receives the item's cookie; may be null.
    /// \return S_OK; E_OUTOFMEMORY, and list, cookie and dirty flag are as before.
    HRESULT AddItem(OverlayItem&& item, Cookie* pnCookie);

    // The operations of `IVellumcaster2` that concern items, with its arguments and results.

    HRESULT AddImage2(BSTR bsImageFileName, LONG nColorKeyMin, LONG nColorKeyMax, SIZE* pSize, Cookie* pnCookie);
    HRESULT AddImageFromMemory2(ImageInfoTag* pImageInfo, DWORD cbImage, const BYTE* pbImage, BSTR bsItemName,
                                LONG nColorKeyMin, LONG nColorKeyMax, SIZE* pSize, Cookie* pnCookie);
    HRESULT AddOutlinedText(ITEM_TYPE eType, const LOGFONT* pLogFont, LONG nTextFormat, const OVERLAY_PROPS* pOvlProps,
                            SIZE* pSize, Cookie* pnCookie);
    HRESULT AddOutlinedTextVB(ITEM_TYPE eType, BSTR bsFontFace, DWORD dwFontHeight, LONG nTextFormat,
                              const OVERLAY_PROPS* pOvlProps, SIZE* pSize, Cookie* pnCookie);
    HRESULT AddRoundRect(const SIZE* pSize, const SIZE* pEllipseSize, const OVERLAY_PROPS* pOvlProps, Cookie* pnCookie);

    HRESULT RemoveItem2(Cookie nCookie);
    HRESULT RemoveAllItems();
    HRESULT GetItemCount2(LONG* pnCount);
    HRESULT GetItemInfo2(LONG nIndex, Cookie* pnCookie, BSTR* pbsName, ITEM_TYPE* pItemType);
    HRESULT ChangeItemOrder(Cookie nCookie, LONG nChange);

    HRESULT GetItemSize(Cookie nCookie, SIZE* pSize);
    HRESULT GetItemProps(Cookie nCookie, OVERLAY_PROPS* pProps);
    HRESULT SetItemProps(Cookie nCookie, const OVERLAY_PROPS* pProps, LONG nMask);
    HRESULT SetItemCallback(Cookie nCookie, IVellumcasterCallback* pCallback);
    HRESULT ShowItem2(Cookie nCookie, BOOL bShow);
    HRESULT IsItemShow2(Cookie nCookie, BOOL* pbShow);
    HRESULT SwitchItems2(Cookie nCookieHide, Cookie nCookieShow);
    HRESULT SetItemPos2(Cookie nCookie, LONG nPosX, LONG nPosY);
    HRESULT GetItemPos2(Cookie nCookie, LONG* pnPosX, LONG* pnPosY);
    HRESULT SetItemMovement(Cookie nCookie, double dblXDelta, double dblYDelta, BOOL bNoOffscreen);
    HRESULT GetItemMovement(Cookie nCookie, double* pdblXDelta, double* pdblYDelta, BOOL* pbNoOffscreen);
    HRESULT SetItemCounter(Cookie nCookie, LONG nCounter);
    HRESULT GetItemCounter(Cookie nCookie, LONG* pnCounter);
    HRESULT SetItemAlpha2(Cookie nCookie, std::int16_t sAlpha);
    HRESULT GetItemAlpha2(Cookie nCookie, std::int16_t* psAlpha);

    // The operations of `IVellumcasterItem`.

    HRESULT GetItemTextFormat(Cookie nCookie, LOGFONT* pLogFont, LONG* pnTextFormat, ITEM_TYPE* pType);
    HRESULT RenderItem(Cookie nCookie, const OVERLAY_PROPS* pProps, const ImageInfoTag* pImageInfo, BYTE* pbImage);

    // The operations of `IPersistStream`. The stream is read and written from front to back.

    HRESULT Load(ISequentialStream* pStm);
    HRESULT Save(ISequentialStream* pStm, bool bClearDirty);
    /// Adds an item as a stream has it.
    /// \return whether it could be made; one that cannot is passed over by `Load`.
    bool AddStored(StoredItem& item);
    /// Whether there are changes that no stream holds.
    [[nodiscard]] bool IsDirty() const { return m_bDirty; }
    /// For what is kept beside the items.
    void MarkDirty() { m_bDirty = true; }

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

    /// A frame goes by on which nothing can be drawn: as `MixFrame`, without the layers.
    void SkipFrame(const SIZE& sizeStream, const FrameTimes& times);

    /// Guards the list, its records and planes. Reentrant; held across a whole frame.
    [[nodiscard]] CCriticalSection& ItemLock() { return m_csItems; }

private:
    /// Runs an operation on an item. \return its answer; E_INVALIDARG for an unknown cookie.
    template <class Operation>
    HRESULT WithItem(Cookie nCookie, const Operation& operation) {
        CAutoLock lock(m_csItems);
        OverlayItem* pItem = m_Items.Lookup(nCookie);
        return pItem ? operation(*pItem) : E_INVALIDARG;
    }

    /// Puts an item that was prepared without the item lock on top of the stack.
    /// \param nPreparation  `m_nPreparation` from before the item was prepared.
    HRESULT AddPrepared(OverlayItem&& item, unsigned nPreparation, Cookie* pnCookie);

    HRESULT ApplyProps(OverlayItem& item, const OVERLAY_PROPS& props);
    HRESULT ApplyText(OverlayItem& item, const OVERLAY_PROPS& before, BSTR bsText);
    /// \param pFrame  null: nothing is drawn.
    void RunItems(const FrameBuffer* pFrame, const SIZE& sizeStream, const FrameTimes& times);
    void CallBack(LONG index, const FrameTimes& times);
    /// Takes a callback that failed from its item. \param index  where the item was when it was called.
    void GiveUp(IVellumcasterCallback* pCallback, HRESULT hr, LONG index);

    IItemPainter& m_Painter;
    ItemMap m_Items;
    CCriticalSection m_csItems;
    std::atomic<unsigned> m_nPreparation = 0; ///< how often all items were prepared; read without the lock
    std::atomic<bool> m_bDirty = false;       ///< read without the lock
};

} // namespace vellumcaster
