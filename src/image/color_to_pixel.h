#pragma once

#include <vellumcaster/types.h>

#include <array>

namespace vellumcaster {

struct YuvColor {
    std::uint8_t y;
    std::uint8_t u;
    std::uint8_t v;
};

/// A colour in studio-swing YUV, by the matrix of ITU-R BT.601 to three decimals, computed in
/// double precision, halves rounded away from zero.
[[nodiscard]] YuvColor RgbToYuvFloat(std::uint8_t r, std::uint8_t g, std::uint8_t b);

namespace CPictureFormats {

/// The bytes of one pixel (or pixel pair) of a solid colour, in memory order.
/// \param color  red in the low byte, then green, then blue; the top byte is not looked at.
/// \param bytes  receives one pixel; four bytes of a pair for packed YUV; Y, U, V for the planar formats.
/// \param pnBytes  receives 2, 3 or 4.
/// \return false for a format that cannot be processed.
[[nodiscard]] bool ColorToPixel(std::uint32_t code, std::uint32_t color, std::array<BYTE, 4>& bytes,
                                std::uint32_t* pnBytes);

} // namespace CPictureFormats
} // namespace vellumcaster
