#include "platform/text/shape_masks.h"

#include "platform/text/picture_glyph.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <new>

namespace vellumcaster {

namespace {

struct ReleaseCairo {
    void operator()(cairo_t* p) const { cairo_destroy(p); }
    void operator()(cairo_surface_t* p) const { cairo_surface_destroy(p); }
};
using CSurface = std::unique_ptr<cairo_surface_t, ReleaseCairo>;
using CCairo = std::unique_ptr<cairo_t, ReleaseCairo>;

constexpr double nLargestSide = 32767;
constexpr double nLargestArea = 1 << 28;

CSurface SurfaceOn(ByteImage& image) {
    return CSurface(cairo_image_surface_create_for_data(image.bytes.data(), CAIRO_FORMAT_A8, image.width, image.height,
                                                        static_cast<int>(image.pitch)));
}

/// An empty picture as large as the shape needs.
ByteImage MakeRoom(const TextFace& face, const TextShape& shape, LONG nPen) {
    ByteImage dot{.width = 1, .height = 1, .pitch = 4, .bytes = std::vector<BYTE>(4)};
    const CSurface spSurface = SurfaceOn(dot);
    const CCairo spCairo(cairo_create(spSurface.get()));
    AppendShapePath(spCairo.get(), face, shape, 0, 0);
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    cairo_path_extents(spCairo.get(), &left, &top, &right, &bottom);
    return MakeImage(left, top, right, bottom, 1 + std::ceil(nPen / 2.0));
}

/// The top bits of eight bytes, from the first on.
std::uint64_t PackEight(const BYTE* p) {
    constexpr bool bLowByteFirst = std::endian::native == std::endian::little;
    constexpr std::uint64_t gather = bLowByteFirst ? 0x0102040810204080 : 0x8040201008040201;
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, p, sizeof bytes);
    return (bytes >> 7 & 0x0101010101010101) * gather >> 56;
}

std::uint64_t PackWord(const BYTE* p) {
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < 8; ++i)
        word |= PackEight(p + 8 * i) << 8 * i;
    return word;
}

/// Adds the bits of one row to the counts of its blocks. \param x  of the first block's first pixel, at most 0.
void CountRow(const BitMask& mask, LONG y, LONG x, LONG nBlock, std::vector<std::uint16_t>& counts) {
    for (std::uint16_t& count : counts) {
        count = static_cast<std::uint16_t>(count + std::popcount(mask.Bits(y, x, nBlock)));
        x += nBlock;
    }
}

} // namespace

ByteImage MakeImage(double left, double top, double right, double bottom, double beyond) {
    if (left >= right && top >= bottom) return {};
    const double width = std::ceil(right) - std::floor(left) + 2 * beyond;
    const double height = std::ceil(bottom) - std::floor(top) + 2 * beyond;
    if (!(width <= nLargestSide && height <= nLargestSide && width * height <= nLargestArea)) throw std::bad_alloc();
    ByteImage image{.left = static_cast<LONG>(std::floor(left) - beyond),
                    .top = static_cast<LONG>(std::floor(top) - beyond),
                    .width = static_cast<LONG>(width),
                    .height = static_cast<LONG>(height)};
    image.pitch = (static_cast<std::size_t>(image.width) + 63) / 64 * 64;
    image.bytes.resize(image.pitch * static_cast<std::size_t>(image.height));
    return image;
}

ByteImage PaintShape(const TextFace& face, const TextShape& shape, const ShapeStyle& style) {
    if (face.bPictures && shape.barWidth == 0) return PaintPictureGlyph(face, shape, style);
    ByteImage image = MakeRoom(face, shape, style.nPen);
    if (image.bytes.empty()) return image;
    const CSurface spSurface = SurfaceOn(image);
    const CCairo spCairo(cairo_create(spSurface.get()));
    cairo_set_antialias(spCairo.get(), style.bSmooth ? CAIRO_ANTIALIAS_GRAY : CAIRO_ANTIALIAS_NONE);
    AppendShapePath(spCairo.get(), face, shape, -image.left, -image.top);
    if (style.nPen > 0) {
        cairo_set_line_join(spCairo.get(), CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_cap(spCairo.get(), CAIRO_LINE_CAP_ROUND);
        cairo_set_line_width(spCairo.get(), style.nPen);
        cairo_stroke(spCairo.get());
    } else {
        cairo_fill(spCairo.get());
    }
    if (cairo_status(spCairo.get()) != CAIRO_STATUS_SUCCESS) throw std::bad_alloc();
    cairo_surface_flush(spSurface.get());
    return image;
}

BitMask PackBits(const ByteImage& image) {
    BitMask mask{.left = image.left, .top = image.top, .width = image.width, .height = image.height};
    mask.pitch = image.pitch / 64 + 1;
    mask.words.resize(mask.pitch * static_cast<std::size_t>(image.height));
    for (LONG y = 0; y < image.height; ++y) {
        std::uint64_t* pWords = mask.words.data() + static_cast<std::size_t>(y) * mask.pitch;
        const BYTE* p = image.Row(y);
        for (std::size_t i = 0; i + 1 < mask.pitch; ++i, p += 64)
            pWords[i] = PackWord(p);
    }
    return mask;
}

std::vector<BYTE> AverageOfCounts(LONG nBlock) {
    const double area = (1.0 / nBlock) * (1.0 / nBlock);
    std::vector<BYTE> averages(static_cast<std::size_t>(nBlock * nBlock) + 1);
    for (std::size_t count = 0; count < averages.size(); ++count)
        averages[count] = static_cast<BYTE>(std::floor(static_cast<double>(255 * count) * area + 0.5));
    return averages;
}

ByteImage AverageBlocks(const BitMask& mask, LONG nBlock, LONG x, LONG y) {
    if (mask.words.empty()) return {};
    const LONG left = x + mask.left;
    const LONG top = y + mask.top;
    ByteImage image{.left = FloorDivide(left, nBlock), .top = FloorDivide(top, nBlock)};
    image.width = FloorDivide(left + mask.width - 1, nBlock) - image.left + 1;
    image.height = FloorDivide(top + mask.height - 1, nBlock) - image.top + 1;
    image.pitch = static_cast<std::size_t>(image.width);
    image.bytes.resize(image.pitch * static_cast<std::size_t>(image.height));

    const std::vector<BYTE> averages = AverageOfCounts(nBlock);
    std::vector<std::uint16_t> counts(image.pitch);
    for (LONG row = 0; row < image.height; ++row) {
        std::fill(counts.begin(), counts.end(), std::uint16_t{0});
        const LONG first = (image.top + row) * nBlock - top;
        for (LONG i = std::max(first, 0); i < std::min(first + nBlock, mask.height); ++i)
            CountRow(mask, i, image.left * nBlock - left, nBlock, counts);
        BYTE* pRow = image.bytes.data() + static_cast<std::size_t>(row) * image.pitch;
        std::transform(counts.begin(), counts.end(), pRow, [&](std::uint16_t count) { return averages[count]; });
    }
    return image;
}

} // namespace vellumcaster
