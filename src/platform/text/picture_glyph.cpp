#include "platform/text/picture_glyph.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace vellumcaster {

namespace {

constexpr std::uint16_t farAway = std::numeric_limits<std::uint16_t>::max();

/// An empty picture as large as the glyph and its stroke need.
ByteImage MakeRoom(const TextFace& face, const cairo_glyph_t& glyph, LONG nPen) {
    cairo_text_extents_t extents;
    cairo_scaled_font_glyph_extents(ScaledFontOf(face), &glyph, 1, &extents);
    std::array<double, 4> x{extents.x_bearing, extents.x_bearing + extents.width, extents.x_bearing,
                            extents.x_bearing + extents.width};
    std::array<double, 4> y{extents.y_bearing, extents.y_bearing, extents.y_bearing + extents.height,
                            extents.y_bearing + extents.height};
    for (std::size_t i = 0; i < x.size(); ++i)
        cairo_matrix_transform_point(&face.slope, &x[i], &y[i]);
    const auto [left, right] = std::minmax_element(x.begin(), x.end());
    const auto [top, bottom] = std::minmax_element(y.begin(), y.end());
    return MakeImage(*left, *top, *right, *bottom, 1 + std::ceil(nPen / 2.0));
}

/// The glyph in colours, one word a pixel, multiplied by their alpha.
std::vector<std::uint32_t> PaintInColor(const TextFace& face, const TextShape& shape, const ByteImage& room) {
    std::vector<std::uint32_t> pixels(room.pitch * static_cast<std::size_t>(room.height));
    cairo_surface_t* pSurface =
        cairo_image_surface_create_for_data(reinterpret_cast<BYTE*>(pixels.data()), CAIRO_FORMAT_ARGB32, room.width,
                                            room.height, static_cast<int>(room.pitch * 4));
    cairo_t* cr = cairo_create(pSurface);
    cairo_matrix_t place = face.slope;
    place.x0 = shape.quarters / 4.0 - room.left;
    place.y0 = -room.top;
    cairo_set_matrix(cr, &place);
    cairo_set_scaled_font(cr, ScaledFontOf(face));
    const cairo_glyph_t glyph{shape.glyph, 0, 0};
    cairo_show_glyphs(cr, &glyph, 1);
    cairo_destroy(cr);
    cairo_surface_destroy(pSurface);
    return pixels;
}

std::uint32_t AlphaOf(std::uint32_t pixel) { return pixel >> 24; }

std::uint32_t BrightnessOf(std::uint32_t pixel) {
    return ((pixel >> 16 & 0xFF) * 77 + (pixel >> 8 & 0xFF) * 150 + (pixel & 0xFF) * 29) >> 8;
}

/// Pixels along the row to the nearest one that is set.
void MeasureRow(const BYTE* pSet, std::size_t count, std::uint16_t* pDistances) {
    const auto step = [&](std::uint16_t& distance, std::size_t i) {
        distance = pSet[i] != 0 ? 0 : static_cast<std::uint16_t>(distance + (distance < farAway));
        pDistances[i] = std::min(pDistances[i], distance);
    };
    std::fill_n(pDistances, count, farAway);
    std::uint16_t distance = farAway;
    for (std::size_t i = 0; i < count; ++i)
        step(distance, i);
    distance = farAway;
    for (std::size_t i = count; i > 0; --i)
        step(distance, i - 1);
}

/// Sets every pixel within half a pen of one that is set.
void Widen(ByteImage& image, LONG nPen) {
    std::vector<std::uint16_t> distances(image.bytes.size());
    for (std::size_t i = 0; i < distances.size(); i += image.pitch)
        MeasureRow(image.bytes.data() + i, image.pitch, distances.data() + i);
    const double radius = nPen / 2.0;
    const auto nReach = static_cast<LONG>(radius);
    for (LONG y = 0; y < image.height; ++y)
        for (LONG from = std::max(0, y - nReach); from <= std::min(image.height - 1, y + nReach); ++from) {
            const auto along = static_cast<std::uint16_t>(std::sqrt(radius * radius - (from - y) * (from - y)));
            const std::uint16_t* pDistances = distances.data() + static_cast<std::size_t>(from) * image.pitch;
            BYTE* pRow = image.bytes.data() + static_cast<std::size_t>(y) * image.pitch;
            for (std::size_t x = 0; x < static_cast<std::size_t>(image.width); ++x)
                pRow[x] = static_cast<BYTE>(pRow[x] | (pDistances[x] <= along ? 255 : 0));
        }
}

} // namespace

ByteImage PaintPictureGlyph(const TextFace& face, const TextShape& shape, const ShapeStyle& style) {
    ByteImage image = MakeRoom(face, {shape.glyph, 0, 0}, style.nPen);
    if (image.bytes.empty()) return image;
    const std::vector<std::uint32_t> pixels = PaintInColor(face, shape, image);
    const auto coverageOf = [&](std::uint32_t pixel) {
        const std::uint32_t coverage = style.nPen > 0 ? AlphaOf(pixel) : BrightnessOf(pixel);
        return static_cast<BYTE>(style.bSmooth ? coverage : coverage >= 128 ? 255 : 0);
    };
    std::transform(pixels.begin(), pixels.end(), image.bytes.begin(), coverageOf);
    if (style.nPen > 0) Widen(image, style.nPen);
    return image;
}

} // namespace vellumcaster
