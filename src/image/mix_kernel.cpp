#include "image/mix_kernel.h"

#include <algorithm>
#include <cstring>

#if defined(__AVX2__)
#include <immintrin.h>
#endif

namespace vellumcaster {

namespace {

BYTE MixByte(BYTE dst, BYTE src, BYTE w) { return static_cast<BYTE>((dst * (255 - w) + src * w + 255) >> 8); }

/// A vector of `cb` bytes, seen as 16-bit lanes of two bytes each.
template <std::size_t cb>
struct Lanes {
    using Words [[gnu::vector_size(cb)]] = std::uint16_t;
    using Bytes [[gnu::vector_size(cb)]] = std::uint8_t;
};

// The formula, with X = w * (dst - src) + dst, is dst - floor(X / 256): the term 255 before the shift turns the
// ceiling of -X / 256 into a floor. Only the low byte of the quotient counts, so X may wrap in 16 bits, and
// nothing ever has to be widened: the even bytes are computed in the low half of their lanes, the odd ones with
// their lanes shifted down, and one subtraction of bytes ends both.
template <std::size_t cb>
void MixVector(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight) {
    using Words = typename Lanes<cb>::Words;
    using Bytes = typename Lanes<cb>::Bytes;
    Words dst;
    Words src;
    Words w;
    std::memcpy(&dst, pDst, cb);
    std::memcpy(&src, pSrc, cb);
    std::memcpy(&w, pWeight, cb);

    const Words dstEven = dst & 0x00FF;
    const Words dstOdd = dst >> 8;
    const Words xEven = (w & 0x00FF) * (dstEven - (src & 0x00FF)) + dstEven;
    const Words xOdd = (w >> 8) * (dstOdd - (src >> 8)) + dstOdd;
    const Words quotient = (xEven >> 8) | (xOdd & 0xFF00);

    const Bytes mixed = reinterpret_cast<Bytes>(dst) - reinterpret_cast<Bytes>(quotient);
    std::memcpy(pDst, &mixed, cb);
}

#if defined(__AVX2__)

constexpr std::size_t cbWidest = 32;

__m256i Load(const BYTE* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }

// Where there is an instruction that multiplies unsigned bytes by signed ones and adds each two products, it does
// a whole byte's mix at once: the frame byte beside the overlay byte, both moved down to -128..127, times the two
// weights. The weights add up to 255, so the sum keeps within 16 bits, and 128 * 255 moves it up again. Interleaving
// and packing both go by halves of the vector, so that the one undoes the other.
template <>
void MixVector<cbWidest>(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight) {
    const __m256i moveDown = _mm256_set1_epi8(-128);
    const __m256i moveUpAndRound = _mm256_set1_epi16(static_cast<short>(128 * 255 + 255));
    const __m256i dst = _mm256_xor_si256(Load(pDst), moveDown);
    const __m256i src = _mm256_xor_si256(Load(pSrc), moveDown);
    const __m256i w = Load(pWeight);
    const __m256i rest = _mm256_xor_si256(w, _mm256_set1_epi8(-1));

    __m256i low = _mm256_maddubs_epi16(_mm256_unpacklo_epi8(rest, w), _mm256_unpacklo_epi8(dst, src));
    __m256i high = _mm256_maddubs_epi16(_mm256_unpackhi_epi8(rest, w), _mm256_unpackhi_epi8(dst, src));
    low = _mm256_srli_epi16(_mm256_add_epi16(low, moveUpAndRound), 8);
    high = _mm256_srli_epi16(_mm256_add_epi16(high, moveUpAndRound), 8);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(pDst), _mm256_packus_epi16(low, high));
}

#else
constexpr std::size_t cbWidest = 16;
#endif

/// What the caches fetch at once.
constexpr std::size_t cbLine = 64;

/// How far ahead of the mixing memory is asked for. The machine's own look-ahead stops at the end of a row of the
/// frame, just where the mixing is about to jump. Any further, and three streams would have more lines on their way
/// than a core can wait for at once, which costs more than asking gains.
constexpr std::size_t cbAhead = 384;

/// The place in the three blocks that the mixing has come to, and the bytes left in the row.
struct Cursor {
    BYTE* pDst;
    const BYTE* pSrc;
    const BYTE* pWeight;
    std::size_t cbLeft;

    template <std::size_t cb>
    void Mix() {
        MixVector<cb>(pDst, pSrc, pWeight);
        pDst += cb;
        pSrc += cb;
        pWeight += cb;
        cbLeft -= cb;
    }
};

/// Mixes whole lines until no more than `cbEnd` bytes and the rest of a line are left, and asks for memory that
/// lies as far from each line as told.
void MixLines(Cursor& at, std::size_t cbEnd, std::ptrdiff_t dstAhead, std::ptrdiff_t srcAhead) {
    while (at.cbLeft >= cbEnd + cbLine) {
        __builtin_prefetch(at.pDst + dstAhead, 1);
        __builtin_prefetch(at.pSrc + srcAhead);
        __builtin_prefetch(at.pWeight + srcAhead);
        for (std::size_t i = 0; i < cbLine; i += cbWidest)
            at.Mix<cbWidest>();
    }
}

} // namespace

void MixRow(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight, std::size_t cb, std::ptrdiff_t framePitch,
            std::ptrdiff_t overlayPitch) {
    Cursor at{pDst, pSrc, pWeight, cb};
    const std::size_t cbEnd = std::min(cb, cbAhead);
    const auto toNextStart = static_cast<std::ptrdiff_t>(cbEnd) - static_cast<std::ptrdiff_t>(cb);
    MixLines(at, cbEnd, cbAhead, cbAhead);
    MixLines(at, 0, framePitch + toNextStart, overlayPitch + toNextStart);
    while (at.cbLeft >= cbWidest)
        at.Mix<cbWidest>();
    while (at.cbLeft >= 8)
        at.Mix<8>();
    for (std::size_t i = 0; i < at.cbLeft; ++i)
        at.pDst[i] = MixByte(at.pDst[i], at.pSrc[i], at.pWeight[i]);
}

void MixMemory(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight, std::size_t cb) {
    MixRow(pDst, pSrc, pWeight, cb, 0, 0);
}

namespace {

/// The shift as a function object, so that the one that is used has a loop in which it is a constant.
template <class Shift>
void ScaleWeights(const BYTE* pSrc, BYTE* pDst, std::uint32_t alpha, Shift shift, std::size_t cb) {
    const auto scale = static_cast<std::uint16_t>(alpha);
    const auto half = static_cast<std::uint16_t>(1u << (shift() - 1));
    const std::size_t cbRounded = cb & ~std::size_t{7};
    for (std::size_t i = 0; i < cbRounded; ++i)
        pDst[i] = static_cast<BYTE>(static_cast<std::uint16_t>(pSrc[i] * scale + half) >> shift());
    for (std::size_t i = cbRounded; i < cb; ++i)
        pDst[i] = static_cast<BYTE>(pSrc[i] * scale >> shift());
}

} // namespace

void MixScaleWeights(const BYTE* pSrc, BYTE* pDst, std::uint32_t alpha, std::uint32_t shift, std::size_t cb) {
    if (shift == 8)
        ScaleWeights(
            pSrc, pDst, alpha, [] { return 8u; }, cb);
    else
        ScaleWeights(
            pSrc, pDst, alpha, [shift] { return shift; }, cb);
}

} // namespace vellumcaster
