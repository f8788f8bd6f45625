// Draws the clip that stands in where nobody brought one: four seconds of hills under a changing sky, as YUV4MPEG2.

#include "host/output_file.h"
#include "host/owned_cairo.h"
#include "host/refusal.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <numbers>
#include <string>
#include <vector>

namespace {

using vellumcaster::COutputFile;
using vellumcaster::OwnedCairo;
using vellumcaster::Refusal;

constexpr int nWidth = 1280;
constexpr int nHeight = 720;
constexpr int nFrames = 100;
constexpr std::ptrdiff_t nPixels = std::ptrdiff_t{nWidth} * nHeight;
constexpr double twoPi = 2 * std::numbers::pi;

struct Rgb {
    double r, g, b;
};

constexpr Rgb Blend(const Rgb& a, const Rgb& b, double t) {
    return {a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}

void AddStop(cairo_pattern_t* pPattern, double offset, const Rgb& c, double alpha = 1.0) {
    cairo_pattern_add_color_stop_rgba(pPattern, offset, c.r, c.g, c.b, alpha);
}

void FillWith(cairo_t* pCairo, cairo_pattern_t* pPattern) {
    cairo_set_source(pCairo, pPattern);
    cairo_fill(pCairo);
}

/// \param t  0 at the first frame, 1 at the end of the clip; the same for the rest.
void DrawSky(cairo_t* pCairo, double t) {
    const OwnedCairo<cairo_pattern_t> sky(cairo_pattern_create_linear(0, 0, 0, nHeight));
    AddStop(sky.get(), 0.0, Blend({0.09, 0.13, 0.30}, {0.22, 0.16, 0.38}, t));
    AddStop(sky.get(), 0.45, Blend({0.36, 0.42, 0.66}, {0.72, 0.40, 0.50}, t));
    AddStop(sky.get(), 0.75, Blend({0.96, 0.76, 0.60}, {0.99, 0.62, 0.38}, t));
    cairo_rectangle(pCairo, 0, 0, nWidth, nHeight);
    FillWith(pCairo, sky.get());
}

void DrawGlow(cairo_t* pCairo, double x, double y, double radius, const Rgb& color, double alpha) {
    const OwnedCairo<cairo_pattern_t> glow(cairo_pattern_create_radial(x, y, 0, x, y, radius));
    AddStop(glow.get(), 0.0, color, alpha);
    AddStop(glow.get(), 0.35, color, alpha * 0.45);
    AddStop(glow.get(), 1.0, color, 0.0);
    cairo_arc(pCairo, x, y, radius, 0, twoPi);
    FillWith(pCairo, glow.get());
}

void DrawSun(cairo_t* pCairo, double t) {
    const double x = 300 + 420 * t;
    const double y = 330 + 120 * t;
    DrawGlow(pCairo, x, y, 360, {1.0, 0.85, 0.60}, 0.75);
    cairo_arc(pCairo, x, y, 54, 0, twoPi);
    cairo_set_source_rgb(pCairo, 1.0, 0.95, 0.84);
    cairo_fill(pCairo);
}

struct Ridge {
    double base, swing, length, speed; ///< pixels, pixels, pixels a wave, pixels a clip
    Rgb color;
};

constexpr std::array<Ridge, 4> ridges{{
    {470, 46, 620, 60, {0.56, 0.44, 0.58}},
    {530, 54, 470, 130, {0.38, 0.34, 0.52}},
    {590, 44, 380, 240, {0.22, 0.25, 0.41}},
    {650, 36, 300, 400, {0.10, 0.14, 0.26}},
}};

void DrawRidge(cairo_t* pCairo, const Ridge& ridge, double t) {
    cairo_move_to(pCairo, 0, nHeight);
    for (int x = 0; x <= nWidth; x += 4) {
        const double phase = twoPi * (x + ridge.speed * t) / ridge.length;
        const double y = ridge.base - ridge.swing * (0.6 * std::sin(phase) + 0.3 * std::sin(2.3 * phase + ridge.base) +
                                                     0.1 * std::sin(7.1 * phase));
        cairo_line_to(pCairo, x, y);
    }
    cairo_line_to(pCairo, nWidth, nHeight);
    cairo_close_path(pCairo);
    cairo_set_source_rgb(pCairo, ridge.color.r, ridge.color.g, ridge.color.b);
    cairo_fill(pCairo);
}

/// Lanterns that rise from the valley, each on its own way.
void DrawLanterns(cairo_t* pCairo, double t) {
    constexpr int nLanterns = 14;
    for (int i = 0; i < nLanterns; ++i) {
        const double own = std::fmod(i * 0.618, 1.0);
        const double x = nWidth * std::fmod(own + 0.05 * t, 1.0) + 14 * std::sin(twoPi * (2 * t + own));
        const double y = nHeight * (0.95 - std::fmod(0.55 * t + 0.754877 * i, 0.85));
        const double radius = 8 + 10 * own;
        DrawGlow(pCairo, x, y, 5 * radius, {1.0, 0.72, 0.35}, 0.5);
        cairo_arc(pCairo, x, y, radius, 0, twoPi);
        cairo_set_source_rgb(pCairo, 1.0, 0.88, 0.62);
        cairo_fill(pCairo);
    }
}

void DrawFrame(cairo_t* pCairo, double t) {
    DrawSky(pCairo, t);
    DrawSun(pCairo, t);
    for (const Ridge& ridge : ridges)
        DrawRidge(pCairo, ridge, t);
    DrawLanterns(pCairo, t);
}

/// 4:2:0 in studio range by ITU-R BT.709, each chroma sample the mean of its four pixels.
void ToPlanes(cairo_surface_t* pSurface, std::vector<std::uint8_t>& planes) {
    cairo_surface_flush(pSurface);
    const unsigned char* pPixels = cairo_image_surface_get_data(pSurface);
    const std::ptrdiff_t pitch = cairo_image_surface_get_stride(pSurface);
    std::uint8_t* pY = planes.data();
    std::uint8_t* pU = pY + nPixels;
    std::uint8_t* pV = pU + nPixels / 4;
    const auto luma = [](const Rgb& c) { return 0.2126 * c.r + 0.7152 * c.g + 0.0722 * c.b; };
    const auto code = [](double value) { return static_cast<std::uint8_t>(std::lround(value)); };
    for (std::ptrdiff_t y = 0; y < nHeight; y += 2) {
        for (std::ptrdiff_t x = 0; x < nWidth; x += 2) {
            Rgb mean{};
            for (const int i : {0, 1, 2, 3}) {
                const std::ptrdiff_t row = y + i / 2;
                const std::ptrdiff_t column = x + i % 2;
                const unsigned char* pPixel = pPixels + row * pitch + column * 4;
                const Rgb pixel{pPixel[2] / 255.0, pPixel[1] / 255.0, pPixel[0] / 255.0};
                pY[row * nWidth + column] = code(16 + 219 * luma(pixel));
                mean = {mean.r + pixel.r / 4, mean.g + pixel.g / 4, mean.b + pixel.b / 4};
            }
            const std::ptrdiff_t chroma = y / 2 * (nWidth / 2) + x / 2;
            pU[chroma] = code(128 + 224 * (mean.b - luma(mean)) / 1.8556);
            pV[chroma] = code(128 + 224 * (mean.r - luma(mean)) / 1.5748);
        }
    }
}

void DrawClip(COutputFile& output) {
    const OwnedCairo<cairo_surface_t> surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, nWidth, nHeight));
    const OwnedCairo<cairo_t> cairo(cairo_create(surface.get()));
    if (cairo_status(cairo.get()) != CAIRO_STATUS_SUCCESS) throw Refusal("there is no memory for a frame");
    std::vector<std::uint8_t> planes(nPixels * 3 / 2);
    output.Write("YUV4MPEG2 W" + std::to_string(nWidth) + " H" + std::to_string(nHeight) +
                 " F25:1 Ip A1:1 C420jpeg XCOLORRANGE=LIMITED\n");
    for (int frame = 0; frame < nFrames; ++frame) {
        DrawFrame(cairo.get(), static_cast<double>(frame) / nFrames);
        ToPlanes(surface.get(), planes);
        output.Write("FRAME\n");
        output.Write(planes);
    }
}

} // namespace

int main(int argc, char** argv) {
    try {
        if (argc > 2) throw Refusal("what is wanted is at most one name, of the clip to write");
        COutputFile output(argc == 2 ? argv[1] : "-");
        DrawClip(output);
        output.Commit();
        return 0;
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "draw_clip: %s\n", error.what()));
        return 1;
    }
}
