#pragma once

#include "engine/overlay_engine.h"
#include "host/item_option.h"
#include "image/color_key.h"

namespace vellumcaster {

/// A bitmap file as an item, as the command line asks for it.
struct Picture {
    std::string text; ///< as it stood there
    std::string path;
    ItemPlacement placement;
    SIZE size; ///< wanted, pixels; a 0 follows the other side by the file's proportions, two are the file's own size
    LONG nColorKeyMin = nNoColorKeyMin;
    LONG nColorKeyMax = nNoColorKeyMax;
};

/// Reads "FILE.bmp[,x=][,y=][,w=][,h=][,alpha=][,key=topleft|MIN-MAX][,dx=][,dy=][,wrap]", with MIN and MAX as AARRGGBB
/// or RRGGBB. A `Refusal` names the picture and what is wrong with it.
[[nodiscard]] Picture ParsePicture(const std::string& text);

/// Loads a picture and puts it on top of an engine's stack, shown. One of 32 bits whose fourth bytes are all 0 counts as
/// opaque. A `Refusal` says why that cannot be.
/// \return the item's cookie.
Cookie AddPicture(COverlayEngine& engine, const Picture& picture);

/// The same with properties of its own in place of the picture's placement. \param props  with no string.
Cookie AddPicture(COverlayEngine& engine, const Picture& picture, const OVERLAY_PROPS& props);

} // namespace vellumcaster
