#include "engine/item_movement.h"
#include "engine/item_placement.h"
#include "image/picture_format.h"

#include <gtest/gtest.h>

#include <limits>

namespace vellumcaster {
namespace {

using namespace format_code;

TEST(ItemPlacement, AlignsDownToWhatTheFormatCanAddress) {
    const struct {
        std::uint32_t code;
        LONG x, y;
        RECT rc;
    } cases[] = {
        {RGB24, 3, 3, {3, 3, 10, 8}}, {RGB32, -3, -3, {-3, -3, 4, 2}}, {ARGB32, 3, 3, {2, 3, 8, 8}},
        {RGB565, 3, 3, {2, 3, 8, 8}}, {YUY2, 5, 7, {4, 7, 10, 12}},    {UYVY, -3, -3, {-4, -3, 2, 2}},
        {I420, 5, 7, {4, 6, 10, 10}}, {YV12, -3, -3, {-4, -4, 2, 0}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(PlaceItem(c.code, {7, 5}, c.x, c.y), c.rc) << std::hex << c.code;
}

TEST(ItemPlacement, StaysWithin32BitsAtTheFarEnds) {
    constexpr LONG last = std::numeric_limits<LONG>::max();
    constexpr LONG first = std::numeric_limits<LONG>::min();
    EXPECT_EQ(PlaceItem(I420, {6, 4}, last, first), (RECT{last - 7, first, last - 1, first + 4}));
    EXPECT_EQ(PlaceItem(RGB32, {6, 4}, last - 6, last), (RECT{last - 6, last - 4, last, last}));
}

OverlayItem MovingItem(double x, double y, double dx, double dy, bool bWrap) {
    OverlayItem item;
    item.sizeItem = {100, 50};
    item.dblPosX = x;
    item.dblPosY = y;
    item.props.dblXDelta = dx;
    item.props.dblYDelta = dy;
    item.props.bNoOffscreen = bWrap;
    return item;
}

TEST(ItemMovement, RoundsTheSetPositionAndKeepsTheExactOne) {
    OverlayItem item = MovingItem(0, 0, 0.25, -0.25, false);
    for (const LONG nRounded : {0, 1, 1, 1, 1, 2, 2, 2}) {
        MoveItem(item, {720, 576});
        EXPECT_EQ(item.props.nPosX, nRounded) << item.dblPosX;
        EXPECT_EQ(item.props.nPosY, -nRounded) << item.dblPosY;
    }
    EXPECT_EQ(item.dblPosX, 2.0);
}

TEST(ItemMovement, WrapsOnlyBeyondTheItemsOwnSize) {
    // Each row: exact position and step, then the exact position after one frame of 720 x 576.
    const struct {
        double x, y, dx, dy, wrappedX, wrappedY;
    } cases[] = {
        {-99, 0, -1, 0, -100, 0},  {-100, 0, -1, 0, 720, 0},        {719, 0, 1, 0, 720, 0},
        {720, 0, 1, 0, -100, 0},   {0, -49.5, 0, -0.5, 0, -50},     {0, -50, 0, -0.5, 0, 576},
        {0, 576, 0, 0.25, 0, -50}, {720, 576, 0.5, 0.5, -100, -50},
    };
    for (const auto& c : cases) {
        OverlayItem item = MovingItem(c.x, c.y, c.dx, c.dy, true);
        MoveItem(item, {720, 576});
        EXPECT_EQ(item.dblPosX, c.wrappedX) << c.x << " + " << c.dx;
        EXPECT_EQ(item.dblPosY, c.wrappedY) << c.y << " + " << c.dy;

        OverlayItem runaway = MovingItem(c.x, c.y, c.dx, c.dy, false);
        MoveItem(runaway, {720, 576});
        EXPECT_EQ(runaway.dblPosX, c.x + c.dx);
    }
}

TEST(ItemMovement, EndsAtTheLastPositionThatCanBeSet) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    OverlayItem item = MovingItem(0, 0, infinity, -1e300, false);
    MoveItem(item, {720, 576});
    EXPECT_EQ(item.props.nPosX, std::numeric_limits<LONG>::max());
    EXPECT_EQ(item.props.nPosY, std::numeric_limits<LONG>::min());
    item.props.dblXDelta = -infinity;
    MoveItem(item, {720, 576});
    EXPECT_EQ(item.props.nPosX, 0) << "no number has no place";
}

} // namespace
} // namespace vellumcaster
