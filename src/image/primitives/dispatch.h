#pragma once

#include "image/primitives/cpu_type.h"
#include "image/primitives/primitives.h"
#include "platform/kernel/critical_section.h"

#include <atomic>
#include <span>

namespace vellumcaster {

/// One primitive: where its callers jump, and its entry in each variant; null where a variant lacks it.
struct PrimitiveRow {
    PrimEntry* pSlot;
    std::array<PrimEntry, variantCount> variant;
};

/// The variants to try, by the preferred one, each row ending in `variantCount`.
inline constexpr std::array<std::array<std::int32_t, 5>, variantCount> WaterfallOrder{{
    {variantPx, variantCount},
    {variantA6, variantPx, variantCount},
    {variantW7, variantA6, variantPx, variantCount},
    {variantT7, variantW7, variantA6, variantPx, variantCount},
}};

/// Binds the slots of a table to one variant, chosen by the processor: the preferred one, or the next below it
/// whose column is complete. The process has one for its primitives; the operations named `Prim_` below are its.
///
/// Binding goes through `Ensure`, from any thread; the other operations are for one thread at a time.
class CPrimitiveDispatch {
public:
    /// \param rows  alive as long as the dispatch; may be empty, and nothing can then be bound.
    CPrimitiveDispatch(std::span<const PrimitiveRow> rows, CpuidSource cpuid)
        : m_Rows(rows), m_Cpuid(std::move(cpuid)) {}

    [[nodiscard]] int DetectCpu() const { return ClassifyCpu(m_Cpuid); }
    [[nodiscard]] int VariantForCpu() const { return VariantForCpuType(DetectCpu()); }

    /// Binds by the processor. \return 1; 0 when no variant is complete, which is reported to the person at the
    /// machine and blocks until they have seen it.
    int Init();
    /// Binds from a variant that the caller names. \return as `Init`; 0 also for a variant that does not exist.
    int InitVariant(int variant);
    /// Puts a variant's entries into the slots, row by row up to the first that lacks one.
    /// \return 1 when every row had an entry, else 0.
    int BindVariant(int variant);

    /// The variant that was bound last; the portable one before anything was.
    [[nodiscard]] int CurrentVariant() const { return m_nCurrent; }

    /// Binds on the first call; a second thread waits until the slots are complete. After a failure the next call
    /// tries, and reports, again. \return whether the slots are bound.
    bool Ensure();

private:
    bool Descend(int variant);

    std::span<const PrimitiveRow> m_Rows;
    CpuidSource m_Cpuid;
    std::atomic<int> m_nCurrent = variantPx;
    CCriticalSection m_csGate;
    bool m_bReady = false;
};

int Prim_Init();
int Prim_InitVariant(int variant);
int Prim_BindVariant(int variant);
[[nodiscard]] int Prim_DetectCpu();
[[nodiscard]] int Prim_VariantForCpu();
[[nodiscard]] int Prim_CurrentVariant();

} // namespace vellumcaster
