#include "image/color_key.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace vellumcaster {

namespace {

constexpr std::uint32_t colorMask = 0x00FFFFFF;
constexpr int alphaShift = 24;

constexpr int ByteOf(std::uint32_t word, int k) { return static_cast<int>(word >> (8 * k) & 0xFF); }

/// A cube of colours, and how the alpha of a pixel in it follows from where it lies.
struct ColorCube {
    std::array<int, 3> low;
    std::array<int, 3> high;
    int lowAlpha;
    int highAlpha;

    ColorCube(std::uint32_t min, std::uint32_t max)
        : low{ByteOf(min, 0), ByteOf(min, 1), ByteOf(min, 2)},
          high{ByteOf(max, 0), ByteOf(max, 1), ByteOf(max, 2)},
          lowAlpha(ByteOf(min, 3)),
          highAlpha(ByteOf(max, 3)) {}

    [[nodiscard]] bool IsKey() const {
        const bool bEmpty = low[0] > high[0] || low[1] > high[1] || low[2] > high[2];
        return !bEmpty && !(lowAlpha == 255 && highAlpha == 255);
    }
    [[nodiscard]] int Extent() const { return high[0] + high[1] + high[2] - low[0] - low[1] - low[2]; }
};

/// Alpha from `lowAlpha` at the lower corner to `highAlpha` at the upper one, by the sum of the distances from the
/// lower corner, rounded. It is a fraction over twice the extent, taken half a part higher so that it is never whole:
/// a product in single precision is off by far less and is cut off at the right place.
class CAlphaRamp {
public:
    explicit CAlphaRamp(const ColorCube& cube)
        : m_Start(static_cast<float>((2 * cube.lowAlpha + 1) * cube.Extent()) + 0.5F),
          m_Rise(static_cast<float>(2 * (cube.highAlpha - cube.lowAlpha))),
          m_Part(1.0F / static_cast<float>(2 * cube.Extent())) {}

    [[nodiscard]] int At(int distance) const {
        return static_cast<int>((m_Start + static_cast<float>(distance) * m_Rise) * m_Part);
    }

private:
    float m_Start;
    float m_Rise;
    float m_Part;
};

/// 1 or 0, without a branch, so that compilers make vectors of the loop round it.
constexpr std::uint32_t Within(int value, int low, int high) {
    return static_cast<std::uint32_t>(value >= low) & static_cast<std::uint32_t>(value <= high);
}

/// \param alphaAt  what the alpha becomes at a distance from the lower corner.
template <class AlphaAt>
void KeyPixels(const std::uint32_t* src, std::uint32_t* dst, std::size_t nPixels, const ColorCube& cube,
               AlphaAt alphaAt) {
    const std::array<int, 3> low = cube.low;
    const std::array<int, 3> high = cube.high;
    const int lowSum = low[0] + low[1] + low[2];
    for (std::size_t i = 0; i < nPixels; ++i) {
        const std::uint32_t pixel = src[i];
        const int b = ByteOf(pixel, 0);
        const int g = ByteOf(pixel, 1);
        const int r = ByteOf(pixel, 2);
        const std::uint32_t inside =
            Within(b, low[0], high[0]) & Within(g, low[1], high[1]) & Within(r, low[2], high[2]);
        const auto alpha = static_cast<std::uint32_t>(alphaAt(b + g + r - lowSum));
        const std::uint32_t keyed = (pixel & colorMask) | alpha << alphaShift;
        dst[i] = pixel ^ ((pixel ^ keyed) & (0 - inside));
    }
}

void KeyCube(const std::uint32_t* src, std::uint32_t* dst, std::size_t nPixels, const ColorCube& cube) {
    if (cube.lowAlpha == cube.highAlpha)
        KeyPixels(src, dst, nPixels, cube, [alpha = cube.lowAlpha](int) { return alpha; });
    else if (cube.Extent() == 0)
        KeyPixels(src, dst, nPixels, cube, [](int) { return 0; });
    else
        KeyPixels(src, dst, nPixels, cube, [ramp = CAlphaRamp(cube)](int distance) { return ramp.At(distance); });
}

} // namespace

HRESULT ApplyColorKey(const std::uint32_t* src, std::uint32_t* dst, LONG cx, LONG cy, LONG nColorKeyMin,
                      LONG nColorKeyMax) {
    if (!src || !dst || cx < 1 || cy < 1) return E_INVALIDARG;
    const auto nPixels = static_cast<std::size_t>(cx) * static_cast<std::size_t>(cy);
    const ColorCube cube(static_cast<std::uint32_t>(nColorKeyMin), static_cast<std::uint32_t>(nColorKeyMax));
    if (cube.IsKey()) {
        KeyCube(src, dst, nPixels, cube);
    } else if (nColorKeyMax == nTopLeftKeyMax) {
        const std::uint32_t key = src[0] & colorMask;
        std::transform(src, src + nPixels, dst,
                       [key](std::uint32_t pixel) { return (pixel & colorMask) == key ? key : pixel; });
    } else if (src != dst) {
        std::memcpy(dst, src, nPixels * sizeof *src);
    }
    return S_OK;
}

} // namespace vellumcaster
