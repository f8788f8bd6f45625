#pragma once

#include "platform/text/shape_masks.h"

namespace vellumcaster {

/// Paints a glyph that is a coloured picture and has no outline, as emoji are: bright parts cover, dark ones do not.
/// Its stroke is all that is no further than half the pen from the picture. As `PaintShape` otherwise.
[[nodiscard]] ByteImage PaintPictureGlyph(const TextFace& face, const TextShape& shape, const ShapeStyle& style);

} // namespace vellumcaster
