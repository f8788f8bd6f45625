#pragma once

#include "platform/text/placed_text.h"
#include "platform/text/text_lock.h"

#include <pango/pangocairo.h>

namespace vellumcaster {

/// A face at a size and a slope, as Pango has chosen it for some characters of a text.
struct TextFace {
    /// \param id  of this face and never of another in the life of the process.
    TextFace(std::uint64_t faceId, PangoFont* pFont, const cairo_matrix_t& lineSlope);
    TextFace(const TextFace&) = delete;
    TextFace& operator=(const TextFace&) = delete;
    ~TextFace();

    const std::uint64_t id;
    CGObjectPtr<PangoFont> spFont;
    const cairo_matrix_t slope; ///< from along the line to the canvas
    const bool bPictures;       ///< its glyphs are coloured pictures and have no outlines
};

/// Belongs to the face.
[[nodiscard]] cairo_scaled_font_t* ScaledFontOf(const TextFace& face);

/// Adds a shape's outline to the current path of `cr`, whose matrix is the identity before and behind. Called under the
/// lock.
///
/// Glyphs go in by their outlines in 1/256 pixels, so that a shape at another whole pixel gives the same bits there.
void AppendShapePath(cairo_t* cr, const TextFace& face, const TextShape& shape, LONG x, LONG y);

} // namespace vellumcaster
