#pragma once

#include "engine/overlay_item.h"

namespace vellumcaster {

/// What keeps an item's pixels in step with its record. The engine calls it with the item lock held, on whatever
/// thread changed the item or delivers the frame. No operation may throw.
class IItemPainter {
public:
    IItemPainter() = default;
    IItemPainter(const IItemPainter&) = delete;
    IItemPainter& operator=(const IItemPainter&) = delete;
    virtual ~IItemPainter() = default;

    /// Once a frame for each item, shown or hidden, before it is mixed: counts and redraws what is live.
    virtual HRESULT UpdateLiveItem(OverlayItem& item, bool bShow) = 0;
    /// Draws a fixed text anew.
    virtual HRESULT UpdateTextItem(OverlayItem& item) = 0;
    /// Draws a date or a time anew; with `bForce` also where the text is the same.
    virtual HRESULT UpdateDate(OverlayItem& item, bool bForce) = 0;
    virtual HRESULT UpdateTime(OverlayItem& item, bool bForce) = 0;
    /// Fills the colour planes again.
    virtual HRESULT UpdateItemColors(OverlayItem& item) = 0;
    /// Scales the weight planes again.
    virtual HRESULT UpdateItemAlpha(OverlayItem& item) = 0;
    /// Builds all planes in the stream's format.
    virtual HRESULT PrepareImage(OverlayItem& item) = 0;
};

/// For items whose planes their owner fills by hand: whatever changes, they stay as they are.
class CHandPaintedItems final : public IItemPainter {
public:
    HRESULT UpdateLiveItem(OverlayItem&, bool) override { return S_FALSE; }
    HRESULT UpdateTextItem(OverlayItem&) override { return S_FALSE; }
    HRESULT UpdateDate(OverlayItem&, bool) override { return S_FALSE; }
    HRESULT UpdateTime(OverlayItem&, bool) override { return S_FALSE; }
    HRESULT UpdateItemColors(OverlayItem&) override { return S_FALSE; }
    HRESULT UpdateItemAlpha(OverlayItem&) override { return S_FALSE; }
    HRESULT PrepareImage(OverlayItem&) override { return S_FALSE; }
};

} // namespace vellumcaster
