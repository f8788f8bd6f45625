#pragma once

#include "graph/list_walk.h"
#include "graph/media_type.h"
#include "platform/media/pin.h"

#include <utility>

namespace vellumcaster {

/// Walks over the one type of a pin; over none where the pin has no type. It keeps the pin.
/// \tparam Pin  `HRESULT CloneMediaType(AM_MEDIA_TYPE** ppmt)` copies its type, or tests for one where `ppmt` is null.
template <class Pin>
class CMediaTypeEnumerator final : public CListWalk<CMediaTypeEnumerator<Pin>, IEnumMediaTypes, AM_MEDIA_TYPE> {
public:
    explicit CMediaTypeEnumerator(CComPtr<Pin> spPin) : m_spPin(std::move(spPin)) {}
    CMediaTypeEnumerator(const CMediaTypeEnumerator& other) = default;

    HRESULT ElementAt(ULONG nPlace, AM_MEDIA_TYPE** ppmt) const {
        return nPlace == 0 ? m_spPin->CloneMediaType(ppmt) : S_FALSE;
    }
    static void Discard(AM_MEDIA_TYPE* pmt) { MT_Delete(pmt); }

private:
    CComPtr<Pin> m_spPin;
};

} // namespace vellumcaster
