#include "engine/item_placement.h"

#include "image/format_table.h"

#include <algorithm>
#include <limits>

namespace vellumcaster {

namespace {

constexpr LONG AlignDown(std::int64_t n, LONG step) { return static_cast<LONG>(n & ~std::int64_t{step - 1}); }

/// The wanted edge, or the nearest from which `length` still fits into 32 bits. An item that could not be drawn yet may
/// have any size.
constexpr LONG FirstEdge(LONG wanted, LONG length, LONG step) {
    const std::int64_t first = std::int64_t{std::numeric_limits<LONG>::min()} - std::min<LONG>(length, 0);
    const std::int64_t last = std::int64_t{std::numeric_limits<LONG>::max()} - std::max<LONG>(length, 0);
    return AlignDown(std::clamp<std::int64_t>(wanted, first, last), step);
}

} // namespace

RECT PlaceItem(std::uint32_t dwFormat, const SIZE& sizeItem, LONG nPosX, LONG nPosY) {
    const bool bSinglePixels = dwFormat == format_code::RGB32 || dwFormat == format_code::RGB24;
    const LONG stepX = bSinglePixels ? 1 : 2;
    const LONG stepY = CPictureFormats::IsPlanarFormat(dwFormat) ? 2 : 1;

    const LONG width = AlignDown(sizeItem.cx, stepX);
    const LONG height = AlignDown(sizeItem.cy, stepY);
    const LONG left = FirstEdge(nPosX, width, stepX);
    const LONG top = FirstEdge(nPosY, height, stepY);
    return {left, top, left + width, top + height};
}

} // namespace vellumcaster
