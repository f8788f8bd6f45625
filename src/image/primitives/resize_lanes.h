#pragma once

#include <vellumcaster/types.h>

#include <algorithm>
#include <cstring>

#if defined(__AVX2__)
#include <immintrin.h>
#elif defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Several numbers in single precision at once, as many as the build has vectors for.
namespace vellumcaster::scaling {

#if defined(__AVX2__)
inline constexpr std::int32_t laneCount = 8;
#else
inline constexpr std::int32_t laneCount = 4;
#endif

using Floats [[gnu::vector_size(laneCount * sizeof(float))]] = float;
using Ints [[gnu::vector_size(laneCount * sizeof(float))]] = std::int32_t;

inline Floats LoadFloats(const float* p) {
    Floats floats;
    std::memcpy(&floats, p, sizeof floats);
    return floats;
}

#if defined(__AVX2__)
/// Half a vector from either place.
inline Floats LoadHalves(const float* pLow, const float* pHigh) { return _mm256_loadu2_m128(pHigh, pLow); }
#endif

/// a - 2 * b. Doubling is exact, so that one instruction for both rounds as two do.
inline float MinusTwice(float a, float b) { return a - 2 * b; }
inline Floats MinusTwice(Floats a, Floats b) {
#if defined(__AVX2__) && defined(__FMA__)
    return _mm256_fnmadd_ps(_mm256_set1_ps(2), b, a);
#else
    return a - 2 * b;
#endif
}

/// Stores four vectors as bytes, limited to 0..255. Of numbers within 16 bits only.
inline void StoreBytes(const Ints (&numbers)[4], BYTE* pDst) {
    // To saturate while packing has no like outside of the processor's own functions, and is half of the work.
#if defined(__AVX2__)
    const auto pack = [](Ints low, Ints high) {
        return _mm256_packs_epi32(reinterpret_cast<__m256i>(low), reinterpret_cast<__m256i>(high));
    };
    const __m256i packed = _mm256_packus_epi16(pack(numbers[0], numbers[1]), pack(numbers[2], numbers[3]));
    const __m256i inOrder = _mm256_permutevar8x32_epi32(packed, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(pDst), inOrder);
#elif defined(__SSE2__)
    const auto pack = [](Ints low, Ints high) {
        return _mm_packs_epi32(reinterpret_cast<__m128i>(low), reinterpret_cast<__m128i>(high));
    };
    const __m128i packed = _mm_packus_epi16(pack(numbers[0], numbers[1]), pack(numbers[2], numbers[3]));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(pDst), packed);
#else
    for (const Ints& four : numbers)
        for (std::int32_t i = 0; i < laneCount; ++i)
            *pDst++ = static_cast<BYTE>(std::clamp(four[i], 0, 255));
#endif
}

} // namespace vellumcaster::scaling
