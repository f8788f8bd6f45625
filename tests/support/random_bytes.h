#pragma once

#include <vellumcaster/types.h>

#include <random>
#include <span>

namespace vellumcaster::testing_support {

/// A seed for one run. Whoever draws from it prints it, so that a failure can be called up again.
inline std::uint64_t FreshSeed() { return std::random_device{}(); }

inline void FillRandom(std::span<BYTE> bytes, std::uint64_t seed) {
    std::mt19937_64 words(seed);
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i, word >>= 8) {
        if (i % sizeof word == 0) word = words();
        bytes[i] = static_cast<BYTE>(word);
    }
}

} // namespace vellumcaster::testing_support
