#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

namespace vellumcaster {

/// A 3 x 3 kernel whose sum is its divisor, so that flat parts of a picture stay as they are.
struct SharpenKernel {
    std::array<std::int32_t, 9> weights;
    std::int32_t divisor;
};

inline constexpr std::int32_t nLargestSharpen = 50;

/// \param nSharpen  1 to 50 sharpens, -1 to -50 softens; taken to the nearest of these bounds when beyond.
constexpr SharpenKernel MakeSharpenKernel(std::int32_t nSharpen) {
    nSharpen = std::clamp(nSharpen, -nLargestSharpen, nLargestSharpen);
    if (nSharpen > 0) {
        const std::int32_t center = 60 - nSharpen;
        return {{-1, -1, -1, -1, center, -1, -1, -1, -1}, center - 8};
    }
    const std::int32_t center = nSharpen + 52;
    return {{1, 2, 1, 2, center, 2, 1, 2, 1}, center + 12};
}

} // namespace vellumcaster
