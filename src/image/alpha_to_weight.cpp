#include "image/alpha_to_weight.h"

#include "image/picture_format.h"
#include "image/primitives/pixel_math.h"

namespace vellumcaster::CImageHelp {

namespace {

constexpr std::uint32_t CoverageOf(std::uint32_t pixel) { return pixel >> 24; }

bool IsSize(const SIZE& size) { return size.cx >= 1 && size.cy >= 1; }

bool IsEvenSize(const SIZE& size) { return IsSize(size) && size.cx % 2 == 0 && size.cy % 2 == 0; }

template <bool bChromaFirst>
void PairsToWeights(const std::uint32_t* src, BYTE* dst, std::size_t nPairs) {
    for (std::size_t i = 0; i < nPairs; ++i) {
        const std::uint32_t a = CoverageOf(src[2 * i]);
        const std::uint32_t b = CoverageOf(src[2 * i + 1]);
        const std::uint32_t luma = a | b << 16;
        const std::uint32_t chroma = ((a + b) >> 1) * 0x00010001;
        StoreWord(dst + 4 * i, bChromaFirst ? luma << 8 | chroma : luma | chroma << 8);
    }
}

void RowToLuma(const std::uint32_t* src, BYTE* dst, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x)
        dst[x] = static_cast<BYTE>(CoverageOf(src[x]));
}

void RowsToChroma(const std::uint32_t* pUpper, const std::uint32_t* pLower, BYTE* dst, std::size_t width) {
    const std::size_t nGrouped = (width & ~std::size_t{7}) / 2;
    for (std::size_t i = 0; i < nGrouped; ++i) {
        const std::uint32_t sum = CoverageOf(pUpper[2 * i]) + CoverageOf(pUpper[2 * i + 1]) +
                                  CoverageOf(pLower[2 * i]) + CoverageOf(pLower[2 * i + 1]);
        dst[i] = static_cast<BYTE>(sum >> 2);
    }
    for (std::size_t i = nGrouped; i < width / 2; ++i)
        dst[i] = static_cast<BYTE>(CoverageOf(pLower[2 * i + 1]));
}

} // namespace

HRESULT AlphaToRGB32(const std::uint32_t* src, BYTE* dst, const SIZE* size) {
    if (!src || !dst || !size || !IsEvenSize(*size)) return E_INVALIDARG;
    const auto nPixels = static_cast<std::size_t>(size->cx) * static_cast<std::size_t>(size->cy);
    for (std::size_t i = 0; i < nPixels; ++i)
        StoreWord(dst + 4 * i, CoverageOf(src[i]) * 0x01010101);
    return S_OK;
}

HRESULT AlphaToRGB24(const std::uint32_t* src, BYTE* dst, const SIZE* size) {
    if (!src || !dst || !size || !IsSize(*size)) return E_INVALIDARG;
    const auto width = static_cast<std::size_t>(size->cx);
    const std::size_t cbPitch = (3 * width + 3) & ~std::size_t{3};
    for (LONG y = 0; y < size->cy; ++y, src += width, dst += cbPitch)
        for (std::size_t x = 0; x < width; ++x)
            dst[3 * x] = dst[3 * x + 1] = dst[3 * x + 2] = static_cast<BYTE>(CoverageOf(src[x]));
    return S_OK;
}

HRESULT AlphaToYUY2(const std::uint32_t* src, BYTE* dst, const SIZE* size, bool bChromaFirst) {
    if (!src || !dst || !size || !IsEvenSize(*size)) return E_INVALIDARG;
    const auto nPairs = static_cast<std::size_t>(size->cx) * static_cast<std::size_t>(size->cy) / 2;
    if (bChromaFirst)
        PairsToWeights<true>(src, dst, nPairs);
    else
        PairsToWeights<false>(src, dst, nPairs);
    return S_OK;
}

HRESULT AlphaToYV12(const std::uint32_t* src, BYTE* dst, const SIZE* size) {
    if (!src || !dst || !size || !IsEvenSize(*size)) return E_INVALIDARG;
    const auto width = static_cast<std::size_t>(size->cx);
    const std::size_t nPixels = width * static_cast<std::size_t>(size->cy);
    BYTE* pChroma = dst + nPixels;
    for (LONG y = 0; y < size->cy; y += 2, src += 2 * width, dst += 2 * width, pChroma += width / 2) {
        RowToLuma(src, dst, 2 * width);
        RowsToChroma(src, src + width, pChroma, width);
        std::memcpy(pChroma + nPixels / 4, pChroma, width / 2);
    }
    return S_OK;
}

HRESULT AlphaToWeight(std::uint32_t dwFormat, const std::uint32_t* src, BYTE* dst, const SIZE* size) {
    switch (dwFormat) {
    case format_code::I420:
    case format_code::YV12: return AlphaToYV12(src, dst, size);
    case format_code::YUY2:
    case format_code::YVYU: return AlphaToYUY2(src, dst, size, false);
    case format_code::UYVY: return AlphaToYUY2(src, dst, size, true);
    case format_code::RGB24: return AlphaToRGB24(src, dst, size);
    case format_code::RGB32: return AlphaToRGB32(src, dst, size);
    default: return E_NOTIMPL;
    }
}

} // namespace vellumcaster::CImageHelp
