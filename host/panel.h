#pragma once

#include "engine/overlay_item.h"
#include "host/item_option.h"

namespace vellumcaster {

/// A flat item as the command line asks for it.
struct Panel {
    ItemPlacement placement;
    SIZE size;               ///< pixels, even, at least 2
    std::uint32_t color = 0; ///< red in the low byte
};

/// Reads "X,Y,W,H,#RRGGBB[,alpha=0..255][,dx=N][,dy=N][,wrap]". Sizes are rounded down to even ones.
/// A `Refusal` names the panel and what is wrong with it.
[[nodiscard]] Panel ParsePanel(const std::string& text);

/// The item of a panel, with its planes prepared in a stream's format. A `Refusal` when there is no memory.
[[nodiscard]] OverlayItem MakeFlatItem(const Panel& panel, std::uint32_t dwFormat);

} // namespace vellumcaster
