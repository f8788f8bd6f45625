#include "image/primitives/bgr_row.h"
#include "image/primitives/bt601.h"
#include "image/primitives/pixel_math.h"
#include "image/primitives/prim_status.h"
#include "image/primitives/primitives.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>

namespace vellumcaster {

namespace {

// ---- checks

constexpr PrimSize onePixel{1, 1};
constexpr PrimSize onePair{2, 1};
constexpr PrimSize oneBlock{2, 2};

using Planes = const BYTE* const*;
using PlanesOut = BYTE* const*;
using Steps = const std::int32_t*;

template <class Pointers>
bool AnyPlaneIsNull(Pointers ppPlanes, Steps pSteps) {
    return !ppPlanes || !pSteps || !ppPlanes[0] || !ppPlanes[1] || !ppPlanes[2];
}

/// The checks in their order; `smallest` is the least width and height, `steps` those that have to be positive.
PrimStatus Check(bool bAnyNull, PrimSize size, PrimSize smallest, std::initializer_list<std::int32_t> steps = {}) {
    if (bAnyNull) return prim_status::nullPointer;
    if (size.width < smallest.width || size.height < smallest.height) return prim_status::badSize;
    if (std::any_of(steps.begin(), steps.end(), [](std::int32_t step) { return step < 1; }))
        return prim_status::badStep;
    return prim_status::ok;
}

/// For the members that want every step positive.
template <class Pointers>
PrimStatus CheckPlanes(Pointers ppPlanes, Steps pSteps, const void* pPacked, std::int32_t packedStep, PrimSize size) {
    if (AnyPlaneIsNull(ppPlanes, pSteps) || !pPacked) return prim_status::nullPointer;
    return Check(false, size, onePixel, {pSteps[0], pSteps[1], pSteps[2], packedStep});
}

/// The two members between packed and planar 4:2:2 look at their steps before they look at the size.
PrimStatus Check422(bool bAnyNull, Steps pPlaneSteps, std::int32_t packedStep, PrimSize size) {
    if (bAnyNull) return prim_status::nullPointer;
    if (std::min({pPlaneSteps[0], pPlaneSteps[1], pPlaneSteps[2], packedStep}) < 1) return prim_status::badStep;
    const std::int64_t width = size.width;
    if (width > pPlaneSteps[0] || width / 2 > std::min(pPlaneSteps[1], pPlaneSteps[2]) || width * 2 > packedStep)
        return prim_status::badStride;
    return Check(false, size, onePair);
}

// ---- samples to pixels

/// Full range; only whole blocks of 2 x 2 are rounded.
template <bool bRounded>
struct FullRange {
    static PixelBytes ToPixel(int y, int p1, int p2) {
        const int luma = (y << 16) + (bRounded ? 32768 : 0);
        const int du = p1 - 128;
        const int dv = p2 - 128;
        return {Clamp255((luma + dv * 74711) >> 16), Clamp255((luma - dv * 38076 - du * 25821) >> 16),
                Clamp255((luma + du * 133169) >> 16)};
    }
};

struct VideoRangePlanar {
    static PixelBytes ToPixel(int y, int p1, int p2) {
        const int luma = y * 76284 - 1220544;
        const int du = p1 - 128;
        const int dv = p2 - 128;
        return {Clamp255((luma + dv * 104595) >> 16), Clamp255((luma - du * 25690 - dv * 53281) >> 16),
                Clamp255((luma + du * 132186) >> 16)};
    }
};

/// At sixteen steps a value.
struct VideoRangeSixteenths {
    static PixelBytes ToPixel(int y, int p1, int p2) {
        const int a = (p1 - 128) * 128;
        const int b = (p2 - 128) * 128;
        const int luma = ((y - 16) * 1220480) >> 16;
        return {Clamp255((luma + ((b * 13074) >> 16)) >> 4),
                Clamp255((luma - ((a * 3211) >> 16) - ((b * 6660) >> 16)) >> 4),
                Clamp255((luma + ((a * 16523) >> 16)) >> 4)};
    }
};

struct VideoRangePacked {
    static PixelBytes ToPixel(int y, int u, int v) {
        const int luma = y * 76284;
        return {Clamp255((luma + v * 104595 - 14608761) >> 16),
                Clamp255((luma - u * 25690 - v * 53281 + 8887730) >> 16),
                Clamp255((luma + u * 132186 - 18140365) >> 16)};
    }
};

struct VideoRangeRounded {
    static PixelBytes ToPixel(int y, int u, int v) {
        const int luma = (y - 16) * 76282 + 32768;
        const int du = u - 128;
        const int dv = v - 128;
        return {Clamp255((luma + du * 132184) >> 16), Clamp255((luma - du * 25689 - dv * 53279) >> 16),
                Clamp255((luma + dv * 104593) >> 16)};
    }
};

struct StoreThreeBytes {
    static void Store(BYTE* pRow, std::ptrdiff_t x, const PixelBytes& pixel) {
        pRow[3 * x] = static_cast<BYTE>(pixel.byte0);
        pRow[3 * x + 1] = static_cast<BYTE>(pixel.byte1);
        pRow[3 * x + 2] = static_cast<BYTE>(pixel.byte2);
    }
};

struct StoreFourBytes {
    std::uint32_t fourth = 0; ///< in the top byte of the pixel's word

    void Store(BYTE* pRow, std::ptrdiff_t x, const PixelBytes& pixel) const {
        StoreWord(pRow + 4 * x,
                  static_cast<std::uint32_t>(pixel.byte0 | pixel.byte1 << 8 | pixel.byte2 << 16) | fourth);
    }
};

struct Store565 {
    static void Store(std::uint16_t* pRow, std::ptrdiff_t x, const PixelBytes& pixel) { pRow[x] = Pack565(pixel); }
};

struct Store555 {
    static void Store(std::uint16_t* pRow, std::ptrdiff_t x, const PixelBytes& pixel) { pRow[x] = Pack555(pixel); }
};

/// One row of luma with its row of chroma.
struct SampleRow {
    const BYTE* pLuma;
    const BYTE* pP1;
    const BYTE* pP2;
};

SampleRow RowOf420(Planes ppSrc, Steps pSteps, std::int32_t y) {
    return {RowAt(ppSrc[0], pSteps[0], y), RowAt(ppSrc[1], pSteps[1], y >> 1), RowAt(ppSrc[2], pSteps[2], y >> 1)};
}

template <class Color, class Storage, class Element>
void ConvertSamplePairs(const SampleRow& row, std::ptrdiff_t nPairs, Element* pDst, const Storage& storage) {
    for (std::ptrdiff_t i = 0; i < nPairs; ++i) {
        storage.Store(pDst, 2 * i, Color::ToPixel(row.pLuma[2 * i], row.pP1[i], row.pP2[i]));
        storage.Store(pDst, 2 * i + 1, Color::ToPixel(row.pLuma[2 * i + 1], row.pP1[i], row.pP2[i]));
    }
}

/// \tparam Edge  the colour of pixels outside of whole blocks, where it differs.
template <class Color, class Storage, class Edge = Color, class Element>
void ConvertPlanes(Planes ppSrc, Steps pSteps, Element* pDst, std::int32_t dstStep, PrimSize size,
                   const Storage& storage = {}) {
    const std::ptrdiff_t nPairs = size.width / 2;
    for (std::int32_t y = 0; y < size.height; ++y) {
        const SampleRow row = RowOf420(ppSrc, pSteps, y);
        Element* pDstRow = RowAt(pDst, dstStep, y);
        if (y + 1 < size.height || y % 2 != 0)
            ConvertSamplePairs<Color>(row, nPairs, pDstRow, storage);
        else
            ConvertSamplePairs<Edge>(row, nPairs, pDstRow, storage);
        if (size.width % 2 != 0)
            storage.Store(pDstRow, size.width - 1,
                          Edge::ToPixel(row.pLuma[size.width - 1], row.pP1[nPairs], row.pP2[nPairs]));
    }
}

/// Places of the samples in the group of four bytes that two pixels take.
struct LumaFirst {
    enum { y0 = 0, c1 = 1, y1 = 2, c2 = 3 };
};
struct ChromaFirst {
    enum { c1 = 0, y0 = 1, c2 = 2, y1 = 3 };
};

template <class Order, class Color, class Storage, class Element>
void ConvertPacked(const BYTE* pSrc, std::int32_t srcStep, Element* pDst, std::int32_t dstStep, PrimSize size,
                   const Storage& storage = {}) {
    const std::ptrdiff_t nPairs = size.width / 2;
    for (std::int32_t row = 0; row < size.height; ++row) {
        const BYTE* pGroups = RowAt(pSrc, srcStep, row);
        Element* pDstRow = RowAt(pDst, dstStep, row);
        for (std::ptrdiff_t i = 0; i < nPairs; ++i) {
            const BYTE* pGroup = pGroups + 4 * i;
            const int u = pGroup[Order::c1];
            const int v = pGroup[Order::c2];
            storage.Store(pDstRow, 2 * i, Color::ToPixel(pGroup[Order::y0], u, v));
            storage.Store(pDstRow, 2 * i + 1, Color::ToPixel(pGroup[Order::y1], u, v));
        }
        if (size.width % 2 == 0) continue;
        const BYTE* pHalfGroup = pGroups + 4 * nPairs; // holds no second chroma sample: the pair before lends its own
        const BYTE* pSecondChroma = nPairs > 0 ? pHalfGroup - 4 + Order::c2 : pHalfGroup + Order::c1;
        storage.Store(pDstRow, size.width - 1,
                      Color::ToPixel(pHalfGroup[Order::y0], pHalfGroup[Order::c1], *pSecondChroma));
    }
}

// ---- pixels to samples

using bt601::RedFirst;
using bt601::Weigh;

PixelBytes LoadThreeBytes(const BYTE* pPixel) { return {pPixel[0], pPixel[1], pPixel[2]}; }

constexpr int ChromaOfOne(int weighed) { return (weighed + bt601::chromaOffset) >> 16; }
constexpr int ChromaOfTwo(int weighed) { return (weighed + bt601::pairChromaOffset) >> 17; }

constexpr BYTE LowByte(int value) { return static_cast<BYTE>(value); }

void RowToYCbCr422(const BYTE* pSrc, BYTE* pDst, std::ptrdiff_t width) {
    // The second luma sample of a pair has always been a half lower here than the first.
    constexpr int secondLumaOffset = 0x100000;
    const std::ptrdiff_t nPairs = width / 2;
    for (std::ptrdiff_t i = 0; i < nPairs; ++i) {
        const PixelBytes s = LoadThreeBytes(pSrc + 6 * i);
        const PixelBytes t = LoadThreeBytes(pSrc + 6 * i + 3);
        const PixelBytes sum = s + t;
        pDst[4 * i] = LowByte((Weigh(RedFirst::luma, s) + bt601::lumaOffset) >> 16);
        pDst[4 * i + 1] = LowByte(ChromaOfTwo(Weigh(RedFirst::c1, sum)));
        pDst[4 * i + 2] = LowByte((Weigh(RedFirst::luma, t) + secondLumaOffset) >> 16);
        pDst[4 * i + 3] = LowByte(ChromaOfTwo(Weigh(RedFirst::c2, sum)));
    }
    if (width % 2 == 0) return;
    const PixelBytes last = LoadThreeBytes(pSrc + 6 * nPairs);
    pDst[4 * nPairs] = LowByte((Weigh(RedFirst::luma, last) + bt601::lumaOffset) >> 16);
    pDst[4 * nPairs + 1] = LowByte(ChromaOfOne(Weigh(RedFirst::c1, last)));
}

/// Chroma of the mean of a block, by the sum of its pixels: four in a whole one, fewer at the right and lower edge.
template <int nPixels>
BYTE ChromaOfBlock(const int (&weights)[3], const PixelBytes& sum) {
    static_assert(nPixels == 1 || nPixels == 2 || nPixels == 4);
    const int weighed = Weigh(weights, sum);
    if constexpr (nPixels == 4) return LowByte((weighed + 33587200) >> 18);
    if constexpr (nPixels == 2) return LowByte((weighed + 16793600) >> 17);
    return LowByte(ChromaOfOne(weighed));
}

/// One row of chroma from one or two rows of pixels.
template <int nRows>
void RowToMeanChroma(const BYTE* pUpper, const BYTE* pLower, BYTE* pP1, BYTE* pP2, std::ptrdiff_t width) {
    const auto sumOfColumn = [=](std::ptrdiff_t x) {
        const PixelBytes upper = LoadThreeBytes(pUpper + 3 * x);
        return nRows == 2 ? upper + LoadThreeBytes(pLower + 3 * x) : upper;
    };
    const std::ptrdiff_t nPairs = width / 2;
    for (std::ptrdiff_t i = 0; i < nPairs; ++i) {
        const PixelBytes sum = sumOfColumn(2 * i) + sumOfColumn(2 * i + 1);
        pP1[i] = ChromaOfBlock<2 * nRows>(RedFirst::c1, sum);
        pP2[i] = ChromaOfBlock<2 * nRows>(RedFirst::c2, sum);
    }
    if (width % 2 == 0) return;
    const PixelBytes sum = sumOfColumn(width - 1);
    pP1[nPairs] = ChromaOfBlock<nRows>(RedFirst::c1, sum);
    pP2[nPairs] = ChromaOfBlock<nRows>(RedFirst::c2, sum);
}

// ---- samples to samples

template <class Order>
void PackRow(const SampleRow& row, BYTE* pDst, std::ptrdiff_t nPairs) {
    for (std::ptrdiff_t i = 0; i < nPairs; ++i) {
        pDst[4 * i + Order::y0] = row.pLuma[2 * i];
        pDst[4 * i + Order::c1] = row.pP1[i];
        pDst[4 * i + Order::y1] = row.pLuma[2 * i + 1];
        pDst[4 * i + Order::c2] = row.pP2[i];
    }
}

/// Packs whole blocks; the two rows of a pair share their chroma. P2 is the first chroma sample of a group.
template <class Order>
PrimStatus Pack420(Planes ppSrc, Steps pSteps, BYTE* pDst, std::int32_t dstStep, PrimSize size) {
    const bool bAnyNull = AnyPlaneIsNull(ppSrc, pSteps) || !pDst;
    if (const PrimStatus status = Check(bAnyNull, size, oneBlock)) return status;
    for (std::int32_t y = 0; y < (size.height & ~1); ++y) {
        const SampleRow row = RowOf420(ppSrc, pSteps, y);
        PackRow<Order>({row.pLuma, row.pP2, row.pP1}, RowAt(pDst, dstStep, y), size.width / 2);
    }
    return prim_status::ok;
}

template <int first>
void TakeEverySecond(const BYTE* pPacked, BYTE* pDst, std::ptrdiff_t count) {
    for (std::ptrdiff_t i = 0; i < count; ++i)
        pDst[i] = pPacked[2 * i + first];
}

template <int first>
void TakeEveryFourth(const BYTE* pPacked, BYTE* pDst, std::ptrdiff_t count) {
    for (std::ptrdiff_t i = 0; i < count; ++i)
        pDst[i] = pPacked[4 * i + first];
}

template <class Order>
void UnpackChroma(const BYTE* pPacked, BYTE* pP1, BYTE* pP2, std::ptrdiff_t nPairs) {
    TakeEveryFourth<Order::c1>(pPacked, pP1, nPairs);
    TakeEveryFourth<Order::c2>(pPacked, pP2, nPairs);
}

/// Unpacks whole blocks; the chroma of the odd rows is dropped.
template <class Order>
PrimStatus Unpack420(const BYTE* pSrc, std::int32_t srcStep, PlanesOut ppDst, Steps pSteps, PrimSize size) {
    const bool bAnyNull = !pSrc || AnyPlaneIsNull(ppDst, pSteps);
    if (const PrimStatus status = Check(bAnyNull, size, oneBlock)) return status;
    for (std::int32_t y = 0; y < (size.height & ~1); ++y) {
        const BYTE* pPacked = RowAt(pSrc, srcStep, y);
        TakeEverySecond<Order::y0>(pPacked, RowAt(ppDst[0], pSteps[0], y), size.width & ~1);
        if (y % 2 == 0)
            UnpackChroma<Order>(pPacked, RowAt(ppDst[1], pSteps[1], y / 2), RowAt(ppDst[2], pSteps[2], y / 2),
                                size.width / 2);
    }
    return prim_status::ok;
}

} // namespace

namespace px {

PrimStatus ippiYUV420ToRGB_8u_P3AC4R(Planes ppSrc, Steps pSrcSteps, BYTE* pDst, std::int32_t dstStep, PrimSize size) {
    if (const PrimStatus status = CheckPlanes(ppSrc, pSrcSteps, pDst, dstStep, size)) return status;
    ConvertPlanes<FullRange<true>, StoreFourBytes, FullRange<false>>(ppSrc, pSrcSteps, pDst, dstStep, size);
    return prim_status::ok;
}

PrimStatus ippiYCbCr420ToRGB_8u_P3C3R(Planes ppSrc, Steps pSrcSteps, BYTE* pDst, std::int32_t dstStep, PrimSize size) {
    if (const PrimStatus status = CheckPlanes(ppSrc, pSrcSteps, pDst, dstStep, size)) return status;
    ConvertPlanes<VideoRangePlanar, StoreThreeBytes>(ppSrc, pSrcSteps, pDst, dstStep, size);
    return prim_status::ok;
}

PrimStatus ippiYCbCr420ToRGB565_8u16u_P3C3R(Planes ppSrc, Steps pSrcSteps, std::uint16_t* pDst, std::int32_t dstStep,
                                            PrimSize size) {
    if (const PrimStatus status = Check(AnyPlaneIsNull(ppSrc, pSrcSteps) || !pDst, size, onePixel)) return status;
    ConvertPlanes<VideoRangeSixteenths, Store565>(ppSrc, pSrcSteps, pDst, dstStep, size);
    return prim_status::ok;
}

PrimStatus ippiYCbCr420ToRGB555_8u16u_P3C3R(Planes ppSrc, Steps pSrcSteps, std::uint16_t* pDst, std::int32_t dstStep,
                                            PrimSize size) {
    if (const PrimStatus status = Check(AnyPlaneIsNull(ppSrc, pSrcSteps) || !pDst, size, onePixel)) return status;
    ConvertPlanes<VideoRangeSixteenths, Store555>(ppSrc, pSrcSteps, pDst, dstStep, size);
    return prim_status::ok;
}

PrimStatus ippiYCrCb420ToCbYCr422_8u_P3C2R(Planes ppSrc, Steps pSrcSteps, BYTE* pDst, std::int32_t dstStep,
                                           PrimSize size) {
    return Pack420<ChromaFirst>(ppSrc, pSrcSteps, pDst, dstStep, size);
}

PrimStatus ippiYCrCb420ToYCbCr422_8u_P3C2R(Planes ppSrc, Steps pSrcSteps, BYTE* pDst, std::int32_t dstStep,
                                           PrimSize size) {
    return Pack420<LumaFirst>(ppSrc, pSrcSteps, pDst, dstStep, size);
}

PrimStatus ippiYCbCr422_8u_P3C2R(Planes ppSrc, Steps pSrcSteps, BYTE* pDst, std::int32_t dstStep, PrimSize size) {
    const bool bAnyNull = AnyPlaneIsNull(ppSrc, pSrcSteps) || !pDst;
    if (const PrimStatus status = Check422(bAnyNull, pSrcSteps, dstStep, size)) return status;
    for (std::int32_t y = 0; y < size.height; ++y)
        PackRow<LumaFirst>(
            {RowAt(ppSrc[0], pSrcSteps[0], y), RowAt(ppSrc[1], pSrcSteps[1], y), RowAt(ppSrc[2], pSrcSteps[2], y)},
            RowAt(pDst, dstStep, y), size.width / 2);
    return prim_status::ok;
}

PrimStatus ippiRGBToYCbCr422_8u_C3C2R(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep,
                                      PrimSize size) {
    if (const PrimStatus status = Check(!pSrc || !pDst, size, onePixel, {srcStep, dstStep})) return status;
    for (std::int32_t y = 0; y < size.height; ++y)
        RowToYCbCr422(RowAt(pSrc, srcStep, y), RowAt(pDst, dstStep, y), size.width);
    return prim_status::ok;
}

PrimStatus ippiRGBToYCbCr420_8u_C3P3R(const BYTE* pSrc, std::int32_t srcStep, PlanesOut ppDst, Steps pDstSteps,
                                      PrimSize size) {
    if (const PrimStatus status = CheckPlanes(ppDst, pDstSteps, pSrc, srcStep, size)) return status;
    for (std::int32_t y = 0; y < size.height; ++y) {
        const BYTE* pPixels = RowAt(pSrc, srcStep, y);
        BYTE* pLuma = RowAt(ppDst[0], pDstSteps[0], y);
        for (std::ptrdiff_t x = 0; x < size.width; ++x)
            pLuma[x] = LowByte((Weigh(RedFirst::luma, LoadThreeBytes(pPixels + 3 * x)) + bt601::lumaOffset) >> 16);
    }
    for (std::int32_t y = 0; y < size.height; y += 2) {
        const BYTE* pUpper = RowAt(pSrc, srcStep, y);
        BYTE* pP1 = RowAt(ppDst[1], pDstSteps[1], y / 2);
        BYTE* pP2 = RowAt(ppDst[2], pDstSteps[2], y / 2);
        if (y + 1 < size.height)
            RowToMeanChroma<2>(pUpper, pUpper + srcStep, pP1, pP2, size.width);
        else
            RowToMeanChroma<1>(pUpper, nullptr, pP1, pP2, size.width);
    }
    return prim_status::ok;
}

PrimStatus ippiBGRToCbYCr422_8u_AC4C2R(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep,
                                       PrimSize size) {
    if (const PrimStatus status = Check(!pSrc || !pDst, size, onePixel)) return status;
    for (std::int32_t y = 0; y < size.height; ++y)
        BgrRowToCbYCr422(RowAt(pSrc, srcStep, y), RowAt(pDst, dstStep, y), size.width);
    return prim_status::ok;
}

PrimStatus ippiYCbCr422To420_8u_C2P3R(const BYTE* pSrc, std::int32_t srcStep, PlanesOut ppDst, Steps pDstSteps,
                                      PrimSize size) {
    return Unpack420<LumaFirst>(pSrc, srcStep, ppDst, pDstSteps, size);
}

PrimStatus ippiCbYCr422To420_8u_C2P3R(const BYTE* pSrc, std::int32_t srcStep, PlanesOut ppDst, Steps pDstSteps,
                                      PrimSize size) {
    return Unpack420<ChromaFirst>(pSrc, srcStep, ppDst, pDstSteps, size);
}

PrimStatus ippiYCbCr422_8u_C2P3R(const BYTE* pSrc, std::int32_t srcStep, PlanesOut ppDst, Steps pDstSteps,
                                 PrimSize size) {
    const bool bAnyNull = !pSrc || AnyPlaneIsNull(ppDst, pDstSteps);
    if (const PrimStatus status = Check422(bAnyNull, pDstSteps, srcStep, size)) return status;
    for (std::int32_t y = 0; y < size.height; ++y) {
        const BYTE* pPacked = RowAt(pSrc, srcStep, y);
        TakeEverySecond<LumaFirst::y0>(pPacked, RowAt(ppDst[0], pDstSteps[0], y), size.width & ~1);
        UnpackChroma<LumaFirst>(pPacked, RowAt(ppDst[1], pDstSteps[1], y), RowAt(ppDst[2], pDstSteps[2], y),
                                size.width / 2);
    }
    return prim_status::ok;
}

PrimStatus ippiYCbCr422ToRGB555_8u16u_C2C3R(const BYTE* pSrc, std::int32_t srcStep, std::uint16_t* pDst,
                                            std::int32_t dstStep, PrimSize size) {
    if (const PrimStatus status = Check(!pSrc || !pDst, size, onePixel, {srcStep, dstStep})) return status;
    ConvertPacked<LumaFirst, VideoRangePacked, Store555>(pSrc, srcStep, pDst, dstStep, size);
    return prim_status::ok;
}

PrimStatus ippiYCbCr422ToRGB565_8u16u_C2C3R(const BYTE* pSrc, std::int32_t srcStep, std::uint16_t* pDst,
                                            std::int32_t dstStep, PrimSize size) {
    if (const PrimStatus status = Check(!pSrc || !pDst, size, onePixel, {srcStep, dstStep})) return status;
    ConvertPacked<LumaFirst, VideoRangePacked, Store565>(pSrc, srcStep, pDst, dstStep, size);
    return prim_status::ok;
}

PrimStatus ippiYCbCr422ToRGB_8u_C2C3R(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep,
                                      PrimSize size) {
    if (const PrimStatus status = Check(!pSrc || !pDst, size, onePixel, {srcStep, dstStep})) return status;
    ConvertPacked<LumaFirst, VideoRangePacked, StoreThreeBytes>(pSrc, srcStep, pDst, dstStep, size);
    return prim_status::ok;
}

PrimStatus ippiCbYCr422ToBGR_8u_C2C4R(const BYTE* pSrc, std::int32_t srcStep, BYTE* pDst, std::int32_t dstStep,
                                      PrimSize size, BYTE alpha) {
    if (const PrimStatus status = Check(!pSrc || !pDst, size, onePixel)) return status;
    ConvertPacked<ChromaFirst, VideoRangeRounded>(pSrc, srcStep, pDst, dstStep, size,
                                                  StoreFourBytes{std::uint32_t{alpha} << 24});
    return prim_status::ok;
}

} // namespace px
} // namespace vellumcaster
