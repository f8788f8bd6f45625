#include "platform/text/text_face.h"

#include <hb-ot.h>

namespace vellumcaster {

namespace {

bool HasPictures(PangoFont* pFont) {
    hb_font_t* p = pango_font_get_hb_font(pFont);
    return p && hb_ot_color_has_png(hb_font_get_face(p)) != 0;
}

} // namespace

TextFace::TextFace(std::uint64_t faceId, PangoFont* pFont, const cairo_matrix_t& lineSlope)
    : id(faceId), spFont(PANGO_FONT(g_object_ref(pFont))), slope(lineSlope), bPictures(HasPictures(pFont)) {}

TextFace::~TextFace() {
    const CAutoLock lock(TextLock());
    spFont.reset();
}

cairo_scaled_font_t* ScaledFontOf(const TextFace& face) {
    return pango_cairo_font_get_scaled_font(PANGO_CAIRO_FONT(face.spFont.get()));
}

void AppendShapePath(cairo_t* cr, const TextFace& face, const TextShape& shape, LONG x, LONG y) {
    cairo_matrix_t place = face.slope;
    place.x0 = x + shape.quarters / 4.0;
    place.y0 = y;
    cairo_set_matrix(cr, &place);
    if (shape.barWidth > 0) {
        cairo_rectangle(cr, 0, 0, shape.barWidth, shape.barHeight);
    } else {
        cairo_set_scaled_font(cr, ScaledFontOf(face));
        const cairo_glyph_t glyph{shape.glyph, 0, 0};
        cairo_glyph_path(cr, &glyph, 1);
    }
    cairo_identity_matrix(cr);
}

} // namespace vellumcaster
