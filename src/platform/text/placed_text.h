#pragma once

#include <vellumcaster/types.h>

#include <memory>
#include <vector>

namespace vellumcaster {

struct TextFace;

/// What texts are made of: a glyph of a face, or a bar along the line, as underlines are.
struct TextShape {
    std::uint64_t face = 0; ///< `TextFace::id`
    std::uint32_t glyph = 0;
    BYTE quarters = 0; ///< of a pixel that the glyph stands to the right of its place
    LONG barWidth = 0; ///< pixels; 0 for a glyph
    LONG barHeight = 0;

    friend bool operator==(const TextShape&, const TextShape&) = default;
};

/// A shape at a whole pixel of a canvas, which may lie outside.
struct PlacedShape {
    TextShape shape;
    const TextFace* pFace;
    LONG x; ///< where the glyph stands on its baseline, or the bar's upper left corner
    LONG y;
};

/// A text as it stands on a canvas. The picture of a text is that of its shapes, one over the other.
struct PlacedText {
    std::vector<PlacedShape> shapes;
    std::vector<std::shared_ptr<const TextFace>> faces; ///< keeps the shapes' faces
    bool bSmooth = true;                                ///< edges are to be smoothed
};

} // namespace vellumcaster
