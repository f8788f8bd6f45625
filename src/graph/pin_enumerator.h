#pragma once

#include "graph/list_walk.h"
#include "platform/media/base_filter.h"

#include <array>
#include <utility>

namespace vellumcaster {

/// Walks over the two pins of a filter, the input pin first. It keeps the filter.
class CPinEnumerator final : public CListWalk<CPinEnumerator, IEnumPins, IPin> {
public:
    CPinEnumerator(IBaseFilter* pFilter, CComPtr<IPin> spIn, CComPtr<IPin> spOut)
        : m_spFilter(pFilter), m_Pins{std::move(spIn), std::move(spOut)} {}
    CPinEnumerator(const CPinEnumerator& other) = default;

    HRESULT ElementAt(ULONG nPlace, IPin** ppPin) const {
        if (nPlace >= m_Pins.size() || !m_Pins[nPlace]) return S_FALSE;
        if (ppPin) *ppPin = CComPtr<IPin>(m_Pins[nPlace]).Detach();
        return S_OK;
    }
    static void Discard(IPin* pPin) { pPin->Release(); }

private:
    CComPtr<IBaseFilter> m_spFilter;
    std::array<CComPtr<IPin>, 2> m_Pins;
};

} // namespace vellumcaster
