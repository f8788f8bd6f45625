#pragma once

#include "platform/text/text_face.h"

#include <cstddef>
#include <vector>

namespace vellumcaster {

/// A picture of one byte a pixel, which begins at a place.
struct ByteImage {
    LONG left = 0;
    LONG top = 0;
    LONG width = 0;
    LONG height = 0;
    std::size_t pitch = 0; ///< bytes from row to row
    std::vector<BYTE> bytes = {};

    [[nodiscard]] const BYTE* Row(LONG y) const { return bytes.data() + static_cast<std::size_t>(y) * pitch; }
};

/// A picture of one bit a pixel, from the low bit up, which begins at a place.
struct BitMask {
    LONG left = 0;
    LONG top = 0;
    LONG width = 0;
    LONG height = 0;
    std::size_t pitch = 0; ///< words from row to row: one more than the row needs, of zeros
    std::vector<std::uint64_t> words = {};

    /// \param y  a row from the top. \param x  from the left, above -64 and below the width. \param count  to 16.
    /// \return `count` bits from there on; those outside of the picture are 0.
    [[nodiscard]] std::uint64_t Bits(LONG y, LONG x, LONG count) const {
        const std::uint64_t* pRow = words.data() + static_cast<std::size_t>(y) * pitch;
        const std::uint64_t wanted = (std::uint64_t{1} << count) - 1;
        if (x < 0) return pRow[0] << -x & wanted;
        const auto word = static_cast<std::size_t>(x / 64);
        const int shift = x % 64;
        const std::uint64_t upper = shift == 0 ? 0 : pRow[word + 1] << (64 - shift);
        return (pRow[word] >> shift | upper) & wanted;
    }
};

/// How a shape is painted.
struct ShapeStyle {
    LONG nPen = 0;        ///< width of its stroke in pixels; 0: it is filled
    bool bSmooth = false; ///< for a fill

    friend bool operator==(const ShapeStyle&, const ShapeStyle&) = default;
};

/// An empty picture that covers a box and `beyond` pixels round it; of no pixels where the box is empty. One beyond any
/// canvas is `std::bad_alloc`.
[[nodiscard]] ByteImage MakeImage(double left, double top, double right, double bottom, double beyond);

/// Paints a shape as it is at the place 0, 0; the picture's place says where it begins from there. Called under the
/// lock.
/// \return 0 to 255 a pixel. One beyond any canvas is `std::bad_alloc`.
[[nodiscard]] ByteImage PaintShape(const TextFace& face, const TextShape& shape, const ShapeStyle& style);

/// The top bits of all pixels. \param image  of `PaintShape`, whose rows are padded to whole words of bits.
[[nodiscard]] BitMask PackBits(const ByteImage& image);

/// What an area average of squares of `nBlock` x `nBlock` bits is, by the number of bits that are set in one.
[[nodiscard]] std::vector<BYTE> AverageOfCounts(LONG nBlock);

/// The average of each block that a mask touches. \param nBlock  2 to 16.
/// \param x, y  where the mask's place 0, 0 lies in the block that is the picture's place 0, 0.
[[nodiscard]] ByteImage AverageBlocks(const BitMask& mask, LONG nBlock, LONG x, LONG y);

/// The quotient, towards minus infinity. \param b  above 0.
constexpr LONG FloorDivide(LONG a, LONG b) { return a >= 0 ? a / b : -((b - 1 - a) / b); }

} // namespace vellumcaster
