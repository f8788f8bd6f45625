#pragma once

#include <vellumcaster/types.h>

#include <bit>
#include <cstddef>
#include <type_traits>

namespace vellumcaster {

namespace detail {

template <std::size_t cb>
struct UnsignedOf;
template <>
struct UnsignedOf<1> {
    using Type = std::uint8_t;
};
template <>
struct UnsignedOf<2> {
    using Type = std::uint16_t;
};
template <>
struct UnsignedOf<4> {
    using Type = std::uint32_t;
};
template <>
struct UnsignedOf<8> {
    using Type = std::uint64_t;
};

} // namespace detail

/// The unsigned integer that has the bits of a number.
template <class Number>
using BitsOf = typename detail::UnsignedOf<sizeof(Number)>::Type;

/// Stores a number, an IEEE 754 double among them, with its lowest byte first on every machine.
/// \param p  `sizeof(Number)` bytes.
template <class Number>
void StoreLittleEndian(BYTE* p, Number number) {
    const auto bits = std::bit_cast<BitsOf<Number>>(number);
    for (std::size_t i = 0; i < sizeof bits; ++i)
        p[i] = static_cast<BYTE>(bits >> (8 * i));
}

/// The inverse.
template <class Number>
[[nodiscard]] Number LoadLittleEndian(const BYTE* p) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i)
        bits |= std::uint64_t{p[i]} << (8 * i);
    return std::bit_cast<Number>(static_cast<BitsOf<Number>>(bits));
}

} // namespace vellumcaster
