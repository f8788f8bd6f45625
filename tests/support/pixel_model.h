#pragma once

#include "support/picture_pixels.h"

namespace vellumcaster::testing_support {

inline bool IsPlanar(std::uint32_t code) { return code == format_code::YV12 || code == format_code::I420; }

inline bool IsPackedYuv(std::uint32_t code) {
    return code == format_code::YUY2 || code == format_code::YVYU || code == format_code::UYVY;
}

inline bool IsRgb(std::uint32_t code) { return !IsPlanar(code) && !IsPackedYuv(code); }

/// The samples of one pixel, whichever of them its format has.
struct PixelSamples {
    int y = 0, u = 0, v = 0;
    int b = 0, g = 0, r = 0, a = 0;
};

/// A picture in memory, read and written pixel by pixel.
class CPictureModel {
public:
    CPictureModel(const PictureFormat& pf, BYTE* pBytes) : m_Pf(pf), m_Pixels(pf), m_pBytes(pBytes) {}

    [[nodiscard]] PixelSamples Read(LONG x, LONG y) {
        using namespace format_code;
        PixelSamples s;
        switch (m_Pf.dwFormat) {
        case ARGB32:
        case RGB32: s.a = *Bytes(x, y)[3]; [[fallthrough]];
        case RGB24: s.b = *Bytes(x, y)[0], s.g = *Bytes(x, y)[1], s.r = *Bytes(x, y)[2]; break;
        default: s.y = *Luma(x, y), s.u = *Chroma(x, y, false), s.v = *Chroma(x, y, true);
        }
        return s;
    }

    /// In 4:2:0 only the even rows write chroma.
    void Write(LONG x, LONG y, const PixelSamples& s) {
        using namespace format_code;
        switch (m_Pf.dwFormat) {
        case ARGB32:
        case RGB32: *Bytes(x, y)[3] = Byte(s.a); [[fallthrough]];
        case RGB24: *Bytes(x, y)[0] = Byte(s.b), *Bytes(x, y)[1] = Byte(s.g), *Bytes(x, y)[2] = Byte(s.r); break;
        case RGB565: WriteWord(x, y, s.b / 8 + s.g / 4 * 32 + s.r / 8 * 2048); break;
        case RGB555: WriteWord(x, y, s.b / 8 + s.g / 8 * 32 + s.r / 8 * 1024); break;
        default:
            *Luma(x, y) = Byte(s.y);
            if (y % 2 == 0 || !IsPlanar(m_Pf.dwFormat))
                *Chroma(x, y, false) = Byte(s.u), *Chroma(x, y, true) = Byte(s.v);
        }
    }

private:
    static BYTE Byte(int value) { return static_cast<BYTE>(value); }

    /// The pixel's own bytes in memory order.
    std::array<BYTE*, 4> Bytes(LONG x, LONG y) {
        std::array<BYTE*, 4> bytes{};
        std::size_t i = 0;
        for (const std::size_t at : m_Pixels.BytesOf(static_cast<std::size_t>(x), static_cast<std::size_t>(y)))
            bytes[i++] = m_pBytes + at;
        return bytes;
    }

    void WriteWord(LONG x, LONG y, int word) {
        *Bytes(x, y)[0] = Byte(word & 0xFF);
        *Bytes(x, y)[1] = Byte(word >> 8);
    }

    BYTE* Luma(LONG x, LONG y) { return Bytes(x, y)[m_Pf.dwFormat == format_code::UYVY ? 1 : 0]; }

    BYTE* Chroma(LONG x, LONG y, bool bV) {
        using namespace format_code;
        if (IsPlanar(m_Pf.dwFormat)) return Bytes(x & ~1, y & ~1)[(m_Pf.dwFormat == YV12) == bV ? 1 : 2];
        const bool bSecond = (m_Pf.dwFormat == YVYU) != bV;
        return Bytes((x & ~1) + bSecond, y)[m_Pf.dwFormat == UYVY ? 0 : 1];
    }

    PictureFormat m_Pf;
    CPicturePixels m_Pixels;
    BYTE* m_pBytes;
};

} // namespace vellumcaster::testing_support
