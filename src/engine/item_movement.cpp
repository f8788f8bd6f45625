#include "engine/item_movement.h"

#include "image/rounding.h"

namespace vellumcaster {

namespace {

/// Each test sees the position as the test before left it.
void WrapAround(OverlayItem& item, const SIZE& sizeFrame) {
    const double width = item.sizeItem.cx; // whose negative always exists
    const double height = item.sizeItem.cy;
    if (-width > item.dblPosX) item.dblPosX = sizeFrame.cx;
    if (-height > item.dblPosY) item.dblPosY = sizeFrame.cy;
    if (sizeFrame.cx < item.dblPosX) item.dblPosX = -width;
    if (sizeFrame.cy < item.dblPosY) item.dblPosY = -height;
}

LONG RoundPosition(double position) { return SaturateToInt32(RoundToInt64(position)); }

} // namespace

void MoveItem(OverlayItem& item, const SIZE& sizeFrame) {
    item.dblPosX += item.props.dblXDelta;
    item.dblPosY += item.props.dblYDelta;
    if (item.props.bNoOffscreen) WrapAround(item, sizeFrame);
    item.props.nPosX = RoundPosition(item.dblPosX);
    item.props.nPosY = RoundPosition(item.dblPosY);
}

} // namespace vellumcaster
