#include "host/snapshot.h"

#include "host/frame_option.h"
#include "host/output_file.h"
#include "host/owned_cairo.h"
#include "host/refusal.h"

#include <algorithm>
#include <cmath>

namespace vellumcaster {

namespace {

/// Red and blue weights of luma; the rest is green's.
struct LumaWeights {
    double red;
    double blue;
};

constexpr LumaWeights bt601{0.299, 0.114};
constexpr LumaWeights bt709{0.2126, 0.0722};
constexpr std::int32_t firstHeightOfBt709 = 720;

struct Range {
    double black, white, chroma; ///< codes: of black, of white, and the span of chroma on either side of 128
};

constexpr Range studioRange{16, 235, 112};
constexpr Range fullRange{0, 255, 127.5};

class YuvToRgb {
public:
    explicit YuvToRgb(const Y4mHeader& header)
        : m_Weights(header.height >= firstHeightOfBt709 ? bt709 : bt601),
          m_Range(header.bFullRange ? fullRange : studioRange) {}

    /// 0x00RRGGBB, as Cairo has it.
    std::uint32_t operator()(std::uint8_t y, std::uint8_t u, std::uint8_t v) const {
        const double luma = (y - m_Range.black) / (m_Range.white - m_Range.black);
        const double cb = (u - 128) / (2 * m_Range.chroma);
        const double cr = (v - 128) / (2 * m_Range.chroma);
        const double red = luma + 2 * (1 - m_Weights.red) * cr;
        const double blue = luma + 2 * (1 - m_Weights.blue) * cb;
        const double green =
            (luma - m_Weights.red * red - m_Weights.blue * blue) / (1 - m_Weights.red - m_Weights.blue);
        return ToByte(red) << 16 | ToByte(green) << 8 | ToByte(blue);
    }

private:
    static std::uint32_t ToByte(double value) {
        return static_cast<std::uint32_t>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
    }

    LumaWeights m_Weights;
    Range m_Range;
};

void Paint(cairo_surface_t* pSurface, const Y4mHeader& header, std::span<const std::uint8_t> planes) {
    const auto width = static_cast<std::size_t>(header.width);
    const auto height = static_cast<std::size_t>(header.height);
    const std::size_t rowsPerChroma = header.layout == ChromaLayout::Planar420 ? 2 : 1;
    const std::size_t cbLuma = width * height;
    const std::uint8_t* pU = planes.data() + cbLuma;
    const std::uint8_t* pV = pU + cbLuma / 2 / rowsPerChroma;

    const YuvToRgb convert(header);
    unsigned char* pPixels = cairo_image_surface_get_data(pSurface);
    const auto pitch = static_cast<std::size_t>(cairo_image_surface_get_stride(pSurface));
    for (std::size_t y = 0; y < height; ++y) {
        auto* pRow = reinterpret_cast<std::uint32_t*>(pPixels + y * pitch);
        for (std::size_t x = 0; x < width; ++x) {
            const std::size_t chroma = y / rowsPerChroma * (width / 2) + x / 2;
            pRow[x] = convert(planes[y * width + x], pU[chroma], pV[chroma]);
        }
    }
    cairo_surface_mark_dirty(pSurface);
}

/// Takes the bytes of a picture from Cairo, through which no exception may pass.
cairo_status_t TakeBytes(void* pClosure, const unsigned char* pData, unsigned int cb) {
    try {
        static_cast<std::string*>(pClosure)->append(reinterpret_cast<const char*>(pData), cb);
        return CAIRO_STATUS_SUCCESS;
    } catch (...) {
        return CAIRO_STATUS_NO_MEMORY;
    }
}

} // namespace

Snapshot ParseSnapshot(const std::string& text) {
    const std::optional<FrameOption> option = ParseFrameOption(text);
    if (!option) throw Refusal("--snapshot " + text + ": what is wanted is N:FILE.png, with frames counted from 0");
    return {option->nFrame, option->text};
}

void WriteSnapshot(const std::string& path, const Y4mHeader& header, std::span<const std::uint8_t> planes) {
    COutputFile file(path);
    const OwnedCairo<cairo_surface_t> surface(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, header.width, header.height));
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS)
        throw Refusal("there is no memory for the picture " + path);
    Paint(surface.get(), header, planes);

    std::string png;
    const cairo_status_t status = cairo_surface_write_to_png_stream(surface.get(), TakeBytes, &png);
    if (status != CAIRO_STATUS_SUCCESS)
        throw Refusal("the picture " + path + " cannot be made: " + cairo_status_to_string(status));
    file.Write(png);
    file.Commit();
}

} // namespace vellumcaster
