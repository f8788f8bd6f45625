#pragma once

#include "engine/overlay_item.h"
#include "image/plane_layout.h"

#include <string_view>

namespace vellumcaster::testing_support {

/// An item whose planes are prepared by hand: one byte value all over in `layerFore`, one weight.
inline OverlayItem FlatItem(std::uint32_t dwFormat, SIZE size, BYTE color, BYTE weight = 255) {
    OverlayItem item;
    item.eType = eImage;
    item.sizeItem = size;
    item.props.bShow = 1;
    const std::size_t cb = CPictureFormats::GetBufferSize(OverlayFormat(dwFormat, size));
    static_cast<void>(item.layerFore.planeColor.Alloc(cb, true, color));
    static_cast<void>(item.layerFore.planeWeight.Alloc(cb, true, weight));
    return item;
}

/// An item that only has a kind and a name.
inline OverlayItem NamedItem(ITEM_TYPE eType, std::u16string_view name) {
    OverlayItem item;
    item.eType = eType;
    static_cast<void>(item.bsName.Assign(name));
    return item;
}

} // namespace vellumcaster::testing_support
