#include "image/color_to_pixel.h"

#include "image/picture_format.h"
#include "image/rounding.h"

#include <algorithm>
#include <initializer_list>

namespace vellumcaster {

namespace {

std::uint8_t RoundToByte(double value) {
    return static_cast<std::uint8_t>(std::clamp<std::int64_t>(RoundToInt64(value), 0, 255));
}

} // namespace

YuvColor RgbToYuvFloat(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
    return {RoundToByte(0.257 * r + 0.504 * g + 0.098 * b + 16.0),
            RoundToByte(-0.148 * r - 0.291 * g + 0.439 * b + 128.0),
            RoundToByte(0.439 * r - 0.368 * g - 0.071 * b + 128.0)};
}

bool CPictureFormats::ColorToPixel(std::uint32_t code, std::uint32_t color, std::array<BYTE, 4>& bytes,
                                   std::uint32_t* pnBytes) {
    const auto r = static_cast<BYTE>(color);
    const auto g = static_cast<BYTE>(color >> 8);
    const auto b = static_cast<BYTE>(color >> 16);
    const auto [y, u, v] = RgbToYuvFloat(r, g, b);

    const auto give = [&](std::initializer_list<BYTE> pixel) {
        std::copy(pixel.begin(), pixel.end(), bytes.begin());
        *pnBytes = static_cast<std::uint32_t>(pixel.size());
        return true;
    };
    const auto giveWord = [&](int word) { return give({static_cast<BYTE>(word), static_cast<BYTE>(word >> 8)}); };

    switch (code) {
    case format_code::RGB565: return giveWord((r & 0xF8) << 8 | (g & 0xFC) << 3 | b >> 3);
    case format_code::RGB555: return giveWord((r & 0xF8) << 7 | (g & 0xF8) << 2 | b >> 3);
    case format_code::RGB24: return give({b, g, r});
    case format_code::RGB32:
    case format_code::ARGB32: return give({b, g, r, 0xFF});
    case format_code::YUY2: return give({y, u, y, v});
    case format_code::YVYU: return give({y, v, y, u});
    case format_code::UYVY: return give({u, y, v, y});
    case format_code::YV12:
    case format_code::I420: return give({y, u, v});
    default: return false;
    }
}

} // namespace vellumcaster
