#include "image/mix_kernel.h"

#include <cstring>

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
#else
constexpr std::size_t cbWidest = 16;
#endif

} // namespace

void MixMemory(BYTE* pDst, const BYTE* pSrc, const BYTE* pWeight, std::size_t cb) {
    std::size_t i = 0;
    for (; i + cbWidest <= cb; i += cbWidest)
        MixVector<cbWidest>(pDst + i, pSrc + i, pWeight + i);
    for (; i + 8 <= cb; i += 8)
        MixVector<8>(pDst + i, pSrc + i, pWeight + i);
    for (; i < cb; ++i)
        pDst[i] = MixByte(pDst[i], pSrc[i], pWeight[i]);
}

void MixScaleWeights(const BYTE* pSrc, BYTE* pDst, std::uint32_t alpha, std::uint32_t shift, std::size_t cb) {
    const auto scale = static_cast<std::uint16_t>(alpha);
    const auto half = static_cast<std::uint16_t>(1u << (shift - 1));
    const std::size_t cbRounded = cb & ~std::size_t{7};
    for (std::size_t i = 0; i < cbRounded; ++i)
        pDst[i] = static_cast<BYTE>(static_cast<std::uint16_t>(pSrc[i] * scale + half) >> shift);
    for (std::size_t i = cbRounded; i < cb; ++i)
        pDst[i] = static_cast<BYTE>(pSrc[i] * scale >> shift);
}

} // namespace vellumcaster
