#pragma once

#include <vellumcaster/types.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

/// The arithmetic that primitives and pixel kernels share.
namespace vellumcaster {

/// Three samples of a pixel by their place in it, 0 to 255.
struct PixelBytes {
    int byte0;
    int byte1;
    int byte2;
};

constexpr int Clamp255(int value) { return value < 0 ? 0 : value > 255 ? 255 : value; }

/// Byte 0 of a pixel in the lowest bits.
constexpr std::uint16_t Pack565(const PixelBytes& p) {
    return static_cast<std::uint16_t>(p.byte0 >> 3 | p.byte1 >> 2 << 5 | p.byte2 >> 3 << 11);
}
/// The same; the top bit is 0.
constexpr std::uint16_t Pack555(const PixelBytes& p) {
    return static_cast<std::uint16_t>(p.byte0 >> 3 | p.byte1 >> 3 << 5 | p.byte2 >> 3 << 10);
}

/// Loops over pixels of four bytes are written on 32-bit words, which compilers turn into vectors where they would
/// pick single bytes apart.
static_assert(std::endian::native == std::endian::little, "words hold their first byte in the lowest bits");

inline std::uint32_t LoadWord(const BYTE* p) {
    std::uint32_t word;
    std::memcpy(&word, p, sizeof word);
    return word;
}
inline void StoreWord(BYTE* p, std::uint32_t word) { std::memcpy(p, &word, sizeof word); }

/// The first three bytes of a pixel of four.
constexpr PixelBytes SplitWord(std::uint32_t word) {
    return {static_cast<int>(word & 0xFF), static_cast<int>(word >> 8 & 0xFF), static_cast<int>(word >> 16 & 0xFF)};
}

constexpr PixelBytes operator+(const PixelBytes& s, const PixelBytes& t) {
    return {s.byte0 + t.byte0, s.byte1 + t.byte1, s.byte2 + t.byte2};
}

/// Row `y` of a buffer whose rows are `step` bytes apart.
template <class Element>
Element* RowAt(Element* pFirst, std::int32_t step, std::int64_t y) {
    using Byte = std::conditional_t<std::is_const_v<Element>, const BYTE, BYTE>;
    return reinterpret_cast<Element*>(reinterpret_cast<Byte*>(pFirst) + y * step);
}

} // namespace vellumcaster
