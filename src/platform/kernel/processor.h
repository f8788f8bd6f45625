#pragma once

#include <cstdint>
#include <functional>

namespace vellumcaster {

/// What CPUID answers for one leaf.
struct CpuidWords {
    std::uint32_t eax = 0;
    std::uint32_t ebx = 0;
    std::uint32_t ecx = 0;
    std::uint32_t edx = 0;
};

/// Asks a processor for a leaf; empty where it has no CPUID.
using CpuidSource = std::function<CpuidWords(std::uint32_t leaf)>;

/// The processor that this runs on; empty on architectures without CPUID.
[[nodiscard]] CpuidSource ProcessorCpuid();

} // namespace vellumcaster
