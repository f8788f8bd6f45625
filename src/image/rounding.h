#pragma once

#include <cstdint>
#include <limits>

namespace vellumcaster {

/// The nearest integer, halves away from zero; beyond 64 bits the last value, for a NaN 0.
constexpr std::int64_t RoundToInt64(double value) {
    constexpr double limit = 9.2e18;
    if (value != value) return 0;
    if (value >= limit) return std::numeric_limits<std::int64_t>::max();
    if (value <= -limit) return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(value < 0 ? value - 0.5 : value + 0.5);
}

/// The nearest 32-bit value.
constexpr std::int32_t SaturateToInt32(std::int64_t value) {
    constexpr std::int64_t lowest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t highest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(value < lowest ? lowest : value > highest ? highest : value);
}

} // namespace vellumcaster
