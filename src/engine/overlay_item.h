#pragma once

#include "image/overlay_layer.h"
#include "platform/com/bstr.h"

#include <vellumcaster/callback.h>
#include <vellumcaster/counted_ptr.h>
#include <vellumcaster/item.h>
#include <vellumcaster/log_font.h>

#include <limits>

namespace vellumcaster {

/// `llClockOffset` of an item whose next live update anchors its clock anew.
inline constexpr LONGLONG llAnchorClockAnew = std::numeric_limits<LONGLONG>::max();

/// Everything that is needed to draw one picture or one text on every frame. An item owns its buffers and is never
/// copied: it moves from who made it into the list.
struct OverlayItem {
    ITEM_TYPE eType = eText;
    LOGFONT logFont;      ///< of a text; an empty face name: no font was asked for
    LONG nTextFormat = 4; ///< the format word of the text drawing call
    SIZE sizeItem;        ///< of the prepared overlay; all planes have it
    SIZE sizeRect;        ///< of a rounded rectangle; kept in files, set by no call
    SIZE sizeEllipse;     ///< of its corners; the same
    OVERLAY_PROPS props;  ///< `bsTextString` in it is always null: the string is `bsName`
    CBstr bsName;         ///< text, format string, label or name, as the kind has it
    CComPtr<IVellumcasterCallback> spCallback;
    LONGLONG llClockOffset = 0; ///< what is added to the local clock, in units of 100 ns
    double dblPosX = 0.0;       ///< the exact position, which `nPosX`, `nPosY` round
    double dblPosY = 0.0;
    CTaskBlob blobImage; ///< of an image: the source picture, 32-bit ARGB, top-down
    OverlayLayer layerFore;
    OverlayLayer layerBack;
    OverlayLayer layerOutline;

    /// Puts the exact position where the set position is.
    void SnapToSetPosition() {
        dblPosX = props.nPosX;
        dblPosY = props.nPosY;
    }
};

/// The layers in the order in which they are mixed.
inline constexpr OverlayLayer OverlayItem::*mixingOrder[] = {&OverlayItem::layerBack, &OverlayItem::layerOutline,
                                                             &OverlayItem::layerFore};

} // namespace vellumcaster
