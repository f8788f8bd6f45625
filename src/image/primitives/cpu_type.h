#pragma once

#include "platform/kernel/processor.h"

namespace vellumcaster {

/// The code variants of the primitives, by rising instruction set.
enum PrimVariant : std::int32_t {
    variantPx = 0, ///< portable
    variantA6 = 1, ///< SSE
    variantW7 = 2, ///< SSE2
    variantT7 = 3, ///< SSE3
    variantCount = 4
};

/// The type code of a processor: 0 for one without CPUID or of an unknown vendor or family, else 1 to 9, 16, 17 or
/// 32 as the table in the source tells them apart.
[[nodiscard]] int ClassifyCpu(const CpuidSource& cpuid);

/// The preferred variant for a type code; the portable one for any code that is not known.
[[nodiscard]] PrimVariant VariantForCpuType(int cpuType);

} // namespace vellumcaster
