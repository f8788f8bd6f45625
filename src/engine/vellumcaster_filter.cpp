#include "engine/vellumcaster_filter.h"

#include <utility>

namespace vellumcaster {

CCoVellumcaster::CCoVellumcaster(IItemPainter& painter, CComPtr<CPlainInputPin> spIn, CComPtr<CPlainOutputPin> spOut)
    : m_Engine(painter), m_spIn(std::move(spIn)), m_spOut(std::move(spOut)) {}

HRESULT CCoVellumcaster::Filter_CompleteConnect(int nPinIndex) {
    switch (nPinIndex) {
    case 0: m_Engine.PrepareItems(); return S_OK;
    case 1: m_nMemoryType = MemoryType::Unknown; return S_OK;
    default: return E_ABORT;
    }
}

} // namespace vellumcaster
