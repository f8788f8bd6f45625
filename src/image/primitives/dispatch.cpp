#include "image/primitives/dispatch.h"

#include "image/primitives/ensure_primitives.h"
#include "platform/kernel/message_box.h"

namespace vellumcaster {

namespace {

int ReportFailure(const char* pszMessage) {
    MessageBeep(MB_ICONSTOP);
    MessageBoxA(pszMessage, "Set IPP library error", MB_ICONSTOP);
    return 0;
}

/// The portable code is what the compiler makes of it for the instruction set of this build, so no other column has
/// code of its own.
template <class Function>
PrimitiveRow PortableRow(PrimIndex index, Function* pFunction) {
    const auto entry = reinterpret_cast<PrimEntry>(pFunction);
    return {&g_PrimSlots[static_cast<std::size_t>(index)], {entry, entry, entry, entry}};
}

CPrimitiveDispatch& ProcessDispatch() {
    static const PrimitiveRow rows[] = {
#define VELLUM_ROW(name, Signature) PortableRow(PrimIndex::name, px::name),
        VELLUM_PRIMITIVES(VELLUM_ROW)
#undef VELLUM_ROW
    };
    static CPrimitiveDispatch dispatch(rows, ProcessorCpuid());
    return dispatch;
}

} // namespace

std::array<PrimEntry, static_cast<std::size_t>(PrimIndex::count)> g_PrimSlots{
#define VELLUM_SLOT(name, Signature) reinterpret_cast<PrimEntry>(px::name),
    VELLUM_PRIMITIVES(VELLUM_SLOT)
#undef VELLUM_SLOT
};

int CPrimitiveDispatch::Init() {
    if (Descend(VariantForCpu())) return 1;
    return ReportFailure(" No IPP matching to examined CPU was found during the Waterfall procedure");
}

int CPrimitiveDispatch::InitVariant(int variant) {
    if (Descend(variant)) return 1;
    return ReportFailure(" No IPP matching to CPU was found during the Waterfall");
}

bool CPrimitiveDispatch::Descend(int variant) {
    if (m_Rows.empty() || variant < 0 || variant >= variantCount) return false;
    for (const std::int32_t candidate : WaterfallOrder[static_cast<std::size_t>(variant)]) {
        if (candidate >= variantCount) return false;
        if (BindVariant(candidate) == 0) continue;
        m_nCurrent = candidate;
        return true;
    }
    return false;
}

int CPrimitiveDispatch::BindVariant(int variant) {
    if (variant < 0 || variant >= variantCount) return 0;
    for (const PrimitiveRow& row : m_Rows) {
        const PrimEntry entry = row.variant[static_cast<std::size_t>(variant)];
        if (!entry) return 0;
        *row.pSlot = entry;
    }
    return 1;
}

bool CPrimitiveDispatch::Ensure() {
    CAutoLock lock(m_csGate);
    if (!m_bReady) m_bReady = Init() == 1;
    return m_bReady;
}

int Prim_Init() { return ProcessDispatch().Init(); }
int Prim_InitVariant(int variant) { return ProcessDispatch().InitVariant(variant); }
int Prim_BindVariant(int variant) { return ProcessDispatch().BindVariant(variant); }
int Prim_DetectCpu() { return ProcessDispatch().DetectCpu(); }
int Prim_VariantForCpu() { return ProcessDispatch().VariantForCpu(); }
int Prim_CurrentVariant() { return ProcessDispatch().CurrentVariant(); }

bool Img_EnsurePrimitives() { return ProcessDispatch().Ensure(); }

} // namespace vellumcaster
