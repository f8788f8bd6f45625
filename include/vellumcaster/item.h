#pragma once

#include <vellumcaster/types.h>

namespace vellumcaster {

/// The kinds of overlay items.
enum ITEM_TYPE : std::int32_t {
    eImage = 0,         ///< a bitmap from a file or from memory
    eRect = 1,          ///< a rounded rectangle: the value is known, no call creates such an item
    eText = 2,          ///< a fixed text
    eDate = 3,          ///< a live date
    eTime = 4,          ///< a live time
    eFrameNumber = 5,   ///< a live frame counter
    eSMPTETimeCode = 6, ///< a live timecode
};

/// A bitmap in memory.
struct ImageInfoTag {
    LONG biWidth = 0;        ///< pixels
    LONG biHeight = 0;       ///< pixels; positive: rows from the bottom up, negative: from the top down
    WORD biBitCount = 0;     ///< 24 or 32
    DWORD biCompression = 0; ///< 0
    DWORD biSizeImage = 0;   ///< bytes of pixel data
};
static_assert(sizeof(ImageInfoTag) == 20);

/// The public properties of one item.
///
/// Colours are 0xAABBGGRR: alpha in the top byte, red in the low byte.
struct OVERLAY_PROPS {
    BOOL bShow = 0;         ///< the item is drawn
    LONG nCounterStart = 0; ///< what `nCounterCur` takes each time the filter leaves Stopped
    /// The live counter, coded by the item's kind; -1 on dates and times is the system clock.
    LONG nCounterCur = 0;
    LONG nPosX = 0;         ///< left edge on the frame in pixels, any value
    LONG nPosY = 0;         ///< top edge on the frame in pixels, any value
    double dblXDelta = 0.0; ///< horizontal movement in pixels a frame
    double dblYDelta = 0.0; ///< vertical movement in pixels a frame
    /// An item that has left the frame completely comes in again at the opposite edge.
    BOOL bNoOffscreen = 0;
    LONG lForeColor = 0;          ///< colour of a text
    LONG lBackColor = 0;          ///< colour of the panel behind a text
    LONG lOutColor = 0;           ///< colour of a text's outline
    std::int16_t sAlphaValue = 0; ///< alpha of the whole item: 0 invisible to 255 opaque
    /// The text or format string going in, the item's name coming out. Who is given a record through
    /// `GetItemProps` frees the string.
    BSTR bsTextString = nullptr;
    LONG nColorKeyMin = 0;        ///< lower colour key of an image
    LONG nColorKeyMax = 0;        ///< upper colour key of an image
    double dblOutlineWidth = 0.0; ///< outline in pixels; 0 is plain text
};

} // namespace vellumcaster
