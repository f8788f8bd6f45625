// Draws the logo that stands in where nobody brought one, as a bitmap file: a badge on black, whose rim fades into the
// black, so that a soft colour key takes the ground away and leaves no hard edge.

#include "host/owned_cairo.h"
#include "host/refusal.h"
#include "image/picture_persist.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <numbers>
#include <vector>

namespace {

using namespace vellumcaster;

constexpr int nSide = 192;
constexpr double center = nSide / 2.0;
constexpr double twoPi = 2 * std::numbers::pi;

struct Stop {
    double offset, r, g, b;
};

template <std::size_t n>
void FillDisc(cairo_t* pCairo, double radius, const Stop (&stops)[n]) {
    const OwnedCairo<cairo_pattern_t> ramp(cairo_pattern_create_radial(center, center, 0, center, center, radius));
    for (const Stop& stop : stops)
        cairo_pattern_add_color_stop_rgb(ramp.get(), stop.offset, stop.r, stop.g, stop.b);
    cairo_arc(pCairo, center, center, radius, 0, twoPi);
    cairo_set_source(pCairo, ramp.get());
    cairo_fill(pCairo);
}

void DrawBadge(cairo_t* pCairo) {
    // Neutral from black to white: alpha rises with the brightness until the key lets go of it.
    FillDisc(pCairo, 94, {{0.86, 1, 1, 1}, {0.94, 0.42, 0.42, 0.42}, {1.0, 0, 0, 0}});
    FillDisc(pCairo, 78, {{0.0, 0.98, 0.62, 0.20}, {0.7, 0.92, 0.36, 0.16}, {1.0, 0.72, 0.18, 0.22}});

    cairo_set_line_width(pCairo, 17);
    cairo_set_line_cap(pCairo, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(pCairo, CAIRO_LINE_JOIN_ROUND);
    cairo_set_source_rgb(pCairo, 1, 0.97, 0.90);
    cairo_move_to(pCairo, center - 38, center - 34);
    cairo_line_to(pCairo, center, center + 40);
    cairo_line_to(pCairo, center + 38, center - 34);
    cairo_stroke(pCairo);
}

/// The surface's pixels as 24 bits, from the bottom up.
std::vector<BYTE> ToBitmapRows(cairo_surface_t* pSurface) {
    cairo_surface_flush(pSurface);
    const unsigned char* pPixels = cairo_image_surface_get_data(pSurface);
    const std::ptrdiff_t pitch = cairo_image_surface_get_stride(pSurface);
    std::vector<BYTE> rows;
    for (std::ptrdiff_t y = nSide - 1; y >= 0; --y)
        for (std::ptrdiff_t x = 0; x < nSide; ++x)
            rows.insert(rows.end(), pPixels + y * pitch + 4 * x, pPixels + y * pitch + 4 * x + 3);
    return rows;
}

void DrawLogo(const char* pszFile) {
    const OwnedCairo<cairo_surface_t> surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, nSide, nSide));
    const OwnedCairo<cairo_t> cairo(cairo_create(surface.get()));
    if (cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS) throw Refusal("there is no memory for the logo");
    DrawBadge(cairo.get());

    BITMAPINFOHEADER header;
    header.biSize = sizeof header;
    header.biWidth = header.biHeight = nSide;
    header.biPlanes = 1;
    header.biBitCount = 24;
    const std::vector<BYTE> rows = ToBitmapRows(surface.get());
    if (FAILED(CPicturePersist::SaveToFile(pszFile, &header, rows.data())))
        throw Refusal(std::string("cannot write ") + pszFile);
}

} // namespace

int main(int argc, char** argv) {
    try {
        if (argc != 2) throw Refusal("what is wanted is the name of the file to write");
        DrawLogo(argv[1]);
        return 0;
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "draw_logo: %s\n", error.what()));
        return 1;
    }
}
