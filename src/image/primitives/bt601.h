#pragma once

#include "image/primitives/pixel_math.h"

/// From RGB to studio-range YUV by ITU-R BT.601, in 16-bit fixed point.
namespace vellumcaster::bt601 {

/// Weights of the three bytes of a pixel; where red and blue stand decides over them.
struct RedFirst {
    static constexpr int luma[3]{16843, 33030, 6423};
    static constexpr int c1[3]{-9699, -19071, 28770};
    static constexpr int c2[3]{28770, -24117, -4653};
};
struct BlueFirst {
    static constexpr int luma[3]{6423, 33030, 16843};
    static constexpr int c1[3]{28770, -19071, -9699};
    static constexpr int c2[3]{-4653, -24117, 28770};
};

constexpr int Weigh(const int (&weights)[3], const PixelBytes& pixel) {
    return weights[0] * pixel.byte0 + weights[1] * pixel.byte1 + weights[2] * pixel.byte2;
}

inline constexpr int lumaOffset = 0x108000;        ///< 16.5, for a shift of 16
inline constexpr int chromaOffset = 0x808000;      ///< 128.5, for a shift of 16
inline constexpr int pairChromaOffset = 0x1010000; ///< the same for the sum of two pixels and a shift of 17

} // namespace vellumcaster::bt601
