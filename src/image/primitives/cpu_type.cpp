#include "image/primitives/cpu_type.h"

#include <algorithm>
#include <array>

namespace vellumcaster {

namespace {

/// What the classification looks at.
struct CpuFeatures {
    std::uint32_t family; ///< without its extension
    bool bMmx;
    bool bSse;
    bool bSse2;
    bool bSse3;
    bool bHyperThreading;
    bool b64Bit;
};

constexpr bool HasBit(std::uint32_t word, int bit) { return (word >> bit & 1) != 0; }

bool IsKnownVendor(const CpuidSource& cpuid) {
    const CpuidWords vendor = cpuid(0);
    return vendor.ebx == 0x756E6547 && vendor.edx == 0x49656E69 && vendor.ecx == 0x6C65746E;
}

bool Has64BitExtension(const CpuidSource& cpuid) {
    constexpr std::uint32_t lastLeaf = 0x80000000;
    constexpr std::uint32_t extendedFeatures = 0x80000001;
    return cpuid(lastLeaf).eax >= extendedFeatures && HasBit(cpuid(extendedFeatures).edx, 29);
}

CpuFeatures ReadFeatures(const CpuidSource& cpuid) {
    const CpuidWords words = cpuid(1);
    const std::uint32_t nLogicalProcessors = words.ebx >> 16 & 0xFF;
    return {
        .family = words.eax >> 8 & 0xF,
        .bMmx = HasBit(words.edx, 23),
        .bSse = HasBit(words.edx, 25),
        .bSse2 = HasBit(words.edx, 26),
        .bSse3 = HasBit(words.ecx, 0),
        .bHyperThreading = HasBit(words.edx, 28) && nLogicalProcessors > 1,
        .b64Bit = Has64BitExtension(cpuid),
    };
}

int ClassifyFamily6(const CpuFeatures& cpu) {
    if (cpu.bSse2) return 9;
    if (cpu.bSse) return 5;
    return cpu.bMmx ? 4 : 3;
}

int ClassifyFamily15(const CpuFeatures& cpu) {
    if (!cpu.bSse2) return 17;
    if (cpu.bSse3) return cpu.b64Bit ? 32 : 8;
    return cpu.bHyperThreading ? 7 : 6;
}

struct PreferredVariant {
    int cpuType;
    PrimVariant variant;
};

constexpr std::array<PreferredVariant, 8> preferredVariants{{
    {5, variantA6},
    {16, variantA6},
    {17, variantA6},
    {6, variantW7},
    {7, variantW7},
    {9, variantW7},
    {8, variantT7},
    {32, variantT7},
}};

} // namespace

int ClassifyCpu(const CpuidSource& cpuid) {
    if (!cpuid || !IsKnownVendor(cpuid)) return 0;
    const CpuFeatures cpu = ReadFeatures(cpuid);
    switch (cpu.family) {
    case 5: return cpu.bMmx ? 2 : 1;
    case 6: return ClassifyFamily6(cpu);
    case 7: return 16;
    case 15: return ClassifyFamily15(cpu);
    default: return 0;
    }
}

PrimVariant VariantForCpuType(int cpuType) {
    const auto found = std::find_if(preferredVariants.begin(), preferredVariants.end(),
                                    [cpuType](const PreferredVariant& entry) { return entry.cpuType == cpuType; });
    return found != preferredVariants.end() ? found->variant : variantPx;
}

} // namespace vellumcaster
