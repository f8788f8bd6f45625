#pragma once

#include "platform/text/placed_text.h"

#include <span>

namespace vellumcaster {

/// A canvas of one byte a pixel. \param bytes  rows of `size.cx` bytes without a gap.
struct ByteCanvas {
    std::span<BYTE> bytes;
    SIZE size;
};

/// Draws a text in one bit on a black canvas that is `nBlock` times as wide and as high as the given one, without
/// painting it: gives the average of each block of it, rounded to the nearest. They are the bytes that painting the
/// large canvas and averaging its blocks would give.
/// \param nPen  width of the shapes' strokes in pixels of the large canvas; 0: they are filled.
/// \param nBlock  2 to 16.
void CoverBlocks(const PlacedText& text, LONG nPen, LONG nBlock, const ByteCanvas& canvas);

/// Draws a text in one bit over what the canvas has, which is black and white.
///
/// Each shape is painted by itself and then cut off at the canvas's edges: cut while it is painted, it would come out
/// otherwise along them.
void CoverInOneBit(const PlacedText& text, LONG nPen, const ByteCanvas& canvas);

/// Draws a smoothed text in white over what the canvas has.
void CoverSmoothly(const PlacedText& text, const ByteCanvas& canvas);

} // namespace vellumcaster
