#include "image/rgb_repack.h"

#include "image/primitives/pixel_math.h"

namespace vellumcaster {

namespace {

struct FourBytes {
    static constexpr std::ptrdiff_t cb = 4;
    static PixelBytes Load(const BYTE* p) { return SplitWord(LoadWord(p)); }
    static void Store(BYTE* p, const PixelBytes& pixel) {
        StoreWord(p, static_cast<std::uint32_t>(pixel.byte0 | pixel.byte1 << 8 | pixel.byte2 << 16) | 0xFF000000);
    }
};

struct ThreeBytes {
    static constexpr std::ptrdiff_t cb = 3;
    static PixelBytes Load(const BYTE* p) { return {p[0], p[1], p[2]}; }
    static void Store(BYTE* p, const PixelBytes& pixel) {
        p[0] = static_cast<BYTE>(pixel.byte0);
        p[1] = static_cast<BYTE>(pixel.byte1);
        p[2] = static_cast<BYTE>(pixel.byte2);
    }
};

template <std::uint16_t (&pack)(const PixelBytes&)>
struct Packed {
    static constexpr std::ptrdiff_t cb = 2;
    static void Store(BYTE* p, const PixelBytes& pixel) {
        const std::uint16_t word = pack(pixel);
        std::memcpy(p, &word, sizeof word);
    }
};

template <class From, class To>
void RepackRow(const BYTE* pSrc, BYTE* pDst, LONG width) {
    for (LONG x = 0; x < width; ++x)
        To::Store(pDst + To::cb * x, From::Load(pSrc + From::cb * x));
}

/// Four pixels at a time: three whole words instead of twelve single bytes.
template <>
void RepackRow<FourBytes, ThreeBytes>(const BYTE* pSrc, BYTE* pDst, LONG width) {
    constexpr std::uint32_t colorMask = 0x00FFFFFF;
    LONG x = 0;
    for (; x + 4 <= width; x += 4, pSrc += 16, pDst += 12) {
        const std::uint32_t p1 = LoadWord(pSrc + 4) & colorMask;
        const std::uint32_t p2 = LoadWord(pSrc + 8) & colorMask;
        StoreWord(pDst, (LoadWord(pSrc) & colorMask) | p1 << 24);
        StoreWord(pDst + 4, p1 >> 8 | p2 << 16);
        StoreWord(pDst + 8, p2 >> 16 | LoadWord(pSrc + 12) << 8);
    }
    for (; x < width; ++x, pSrc += FourBytes::cb, pDst += ThreeBytes::cb)
        ThreeBytes::Store(pDst, FourBytes::Load(pSrc));
}

template <class From, class To>
void Repack(const RowPair& rows, LONG width, LONG nRows) {
    for (LONG y = 0; y < nRows; ++y)
        RepackRow<From, To>(rows.pSrc + y * rows.srcPitch, rows.pDst + y * rows.dstPitch, width);
}

} // namespace

void Rgb24ToRgb32(const RowPair& rows, LONG width, LONG nRows) { Repack<ThreeBytes, FourBytes>(rows, width, nRows); }
void Rgb32ToRgb24(const RowPair& rows, LONG width, LONG nRows) { Repack<FourBytes, ThreeBytes>(rows, width, nRows); }
void Rgb32ToRgb565(const RowPair& rows, LONG width, LONG nRows) {
    Repack<FourBytes, Packed<Pack565>>(rows, width, nRows);
}
void Rgb24ToRgb565(const RowPair& rows, LONG width, LONG nRows) {
    Repack<ThreeBytes, Packed<Pack565>>(rows, width, nRows);
}
void Rgb32ToRgb555(const RowPair& rows, LONG width, LONG nRows) {
    Repack<FourBytes, Packed<Pack555>>(rows, width, nRows);
}
void Rgb24ToRgb555(const RowPair& rows, LONG width, LONG nRows) {
    Repack<ThreeBytes, Packed<Pack555>>(rows, width, nRows);
}

} // namespace vellumcaster
