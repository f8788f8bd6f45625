#include "image/primitives/bgr_row.h"

#include "image/primitives/bt601.h"

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace vellumcaster {

namespace {

using bt601::BlueFirst;

/// The second chroma sample of a pair is rounded from a hair lower than the first.
constexpr int secondChromaOffset = 0x100FFFE;

std::uint32_t Luma(const PixelBytes& pixel) {
    return static_cast<std::uint32_t>(bt601::Weigh(BlueFirst::luma, pixel) + bt601::lumaOffset) >> 16;
}

std::uint32_t PairToWord(const PixelBytes& s, const PixelBytes& t) {
    const PixelBytes sum = s + t;
    const auto c1 = static_cast<std::uint32_t>(bt601::Weigh(BlueFirst::c1, sum) + bt601::pairChromaOffset) >> 17;
    const auto c2 = static_cast<std::uint32_t>(bt601::Weigh(BlueFirst::c2, sum) + secondChromaOffset) >> 17;
    return c1 | Luma(s) << 8 | c2 << 16 | Luma(t) << 24;
}

#if defined(__SSE2__)

#if defined(__AVX2__)
constexpr int cbVector = 32;
#else
constexpr int cbVector = 16;
#endif

using Words [[gnu::vector_size(cbVector)]] = std::uint16_t;
using Dwords [[gnu::vector_size(cbVector)]] = std::uint32_t;

/// The sum of the products of two neighbouring words, signed.
Dwords MultiplyAndAdd(Words a, Dwords weights) {
#if defined(__AVX2__)
    return (Dwords)_mm256_madd_epi16((__m256i)a, (__m256i)weights);
#else
    return (Dwords)_mm_madd_epi16((__m128i)a, (__m128i)weights);
#endif
}

/// Each word added to its like in the other pixel of the pair.
Words AddNeighbour(Words pixels) {
#if defined(__AVX2__)
    return pixels + (Words)_mm256_shuffle_epi32((__m256i)pixels, 0xB1);
#else
    return pixels + (Words)_mm_shuffle_epi32((__m128i)pixels, 0xB1);
#endif
}

/// The lower words of `a`, then those of `b`; none is above 255.
Words PackLowWords(Dwords a, Dwords b) {
#if defined(__AVX2__)
    return (Words)_mm256_permute4x64_epi64(_mm256_packs_epi32((__m256i)a, (__m256i)b), 0xD8);
#else
    return (Words)_mm_packs_epi32((__m128i)a, (__m128i)b);
#endif
}

/// Weights for neighbouring words, the first in the lower one.
constexpr std::uint32_t WeightPair(int first, int second) {
    return (static_cast<std::uint32_t>(first) & 0xFFFF) | static_cast<std::uint32_t>(second) << 16;
}

/// As many pixels as a vector has dwords; their samples in dwords.
struct Samples {
    Dwords luma;
    Dwords chroma; ///< first and second sample of a pair in turn
};

/// One dword for the first pixel of each pair, another for the second.
Dwords InTurn(std::uint32_t first, std::uint32_t second) {
    Dwords dwords = Dwords{} + first;
    for (int i = 1; i < cbVector / 4; i += 2)
        dwords[i] = second;
    return dwords;
}

[[gnu::always_inline]] inline Samples ToSamples(const BYTE* pSrc) {
    Words pixels;
    std::memcpy(&pixels, pSrc, sizeof pixels);
    const Words blueRed = pixels & 0xFF;
    const Words green = pixels >> 8; // and the fourth byte, whose weight is 0
    // A weight above 15 bits does not go into a signed word: green's is taken by halves.
    const Dwords halfGreen = MultiplyAndAdd(green, Dwords{} + WeightPair(BlueFirst::luma[1] / 2, 0));
    const Dwords luma = MultiplyAndAdd(blueRed, Dwords{} + WeightPair(BlueFirst::luma[0], BlueFirst::luma[2])) +
                        halfGreen + halfGreen + bt601::lumaOffset;
    const Dwords chroma =
        MultiplyAndAdd(AddNeighbour(blueRed), InTurn(WeightPair(BlueFirst::c1[0], BlueFirst::c1[2]),
                                                     WeightPair(BlueFirst::c2[0], BlueFirst::c2[2]))) +
        MultiplyAndAdd(AddNeighbour(green), InTurn(WeightPair(BlueFirst::c1[1], 0), WeightPair(BlueFirst::c2[1], 0))) +
        InTurn(bt601::pairChromaOffset, secondChromaOffset);
    return {luma >> 16, chroma >> 17};
}

/// As many pixels as fill whole vectors. \return their number.
std::ptrdiff_t ConvertVectors(const BYTE* pSrc, BYTE* pDst, std::ptrdiff_t width) {
    constexpr std::ptrdiff_t nPixels = 2 * cbVector / 4;
    std::ptrdiff_t x = 0;
    for (; x + nPixels <= width; x += nPixels) {
        const Samples a = ToSamples(pSrc + 4 * x);
        const Samples b = ToSamples(pSrc + 4 * x + cbVector);
        const Words packed = PackLowWords(a.chroma, b.chroma) | PackLowWords(a.luma, b.luma) << 8;
        std::memcpy(pDst + 2 * x, &packed, sizeof packed);
    }
    return x;
}

#else

std::ptrdiff_t ConvertVectors(const BYTE*, BYTE*, std::ptrdiff_t) { return 0; }

#endif

} // namespace

void BgrRowToCbYCr422(const BYTE* pSrc, BYTE* pDst, std::ptrdiff_t width) {
    std::ptrdiff_t x = ConvertVectors(pSrc, pDst, width);
    for (; x + 2 <= width; x += 2)
        StoreWord(pDst + 2 * x, PairToWord(SplitWord(LoadWord(pSrc + 4 * x)), SplitWord(LoadWord(pSrc + 4 * x + 4))));
    if (x == width) return;
    const PixelBytes last = SplitWord(LoadWord(pSrc + 4 * x));
    pDst[2 * x] = static_cast<BYTE>((bt601::Weigh(BlueFirst::c1, last) + bt601::chromaOffset) >> 16);
    pDst[2 * x + 1] = static_cast<BYTE>(Luma(last));
}

} // namespace vellumcaster
