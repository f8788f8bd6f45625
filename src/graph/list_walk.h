#pragma once

#include "platform/com/unknown_impl.h"
#include "platform/media/graph_results.h"

#include <limits>
#include <new>

namespace vellumcaster {

/// The walk of an enumerator. What it walks over answers for a place with an element, S_FALSE for the end, or a failure;
/// VFW_E_ENUM_OUT_OF_SYNC sticks until the walk is reset. One thread at a time.
/// \tparam Enumerator  derives from this. `HRESULT ElementAt(ULONG nPlace, Element** ppElement)` makes an element, or
///         only tests the place where `ppElement` is null; `static void Discard(Element*)` ends one.
template <class Enumerator, class Interface, class Element>
class CListWalk : public CUnknownImpl<Interface> {
public:
    /// \return S_OK; S_FALSE for fewer than asked for; E_POINTER for no array; E_INVALIDARG for more than one with
    ///         nowhere to say how many there were; a failure, and then nothing was handed out.
    HRESULT Next(ULONG c, Element** ppElements, ULONG* pcFetched) override {
        if (!ppElements) return E_POINTER;
        if (!pcFetched && c > 1) return E_INVALIDARG;
        if (pcFetched) *pcFetched = 0;
        if (m_bOutOfSync) return VFW_E_ENUM_OUT_OF_SYNC;
        ULONG cFetched = 0;
        while (cFetched < c) {
            const HRESULT hr = This().ElementAt(m_nPlace + cFetched, &ppElements[cFetched]);
            if (FAILED(hr)) return TakeBack(hr, ppElements, cFetched);
            if (hr != S_OK) break;
            ++cFetched;
        }
        m_nPlace += cFetched;
        if (pcFetched) *pcFetched = cFetched;
        return cFetched == c ? S_OK : S_FALSE;
    }

    /// \return S_OK; S_FALSE when the end comes first, and then the walk stays where it is; a failure.
    HRESULT Skip(ULONG c) override {
        if (m_bOutOfSync) return VFW_E_ENUM_OUT_OF_SYNC;
        const std::uint64_t nLast = c == 0 ? m_nPlace : std::uint64_t{m_nPlace} + c - 1;
        if (nLast > std::numeric_limits<ULONG>::max()) return S_FALSE;
        const HRESULT hr = This().ElementAt(static_cast<ULONG>(nLast), nullptr);
        if (hr == S_OK) m_nPlace += c;
        return hr;
    }

    HRESULT Reset() override {
        m_nPlace = 0;
        m_bOutOfSync = false;
        return S_OK;
    }

    HRESULT Clone(Interface** ppEnum) override {
        if (!ppEnum) return E_POINTER;
        *ppEnum = nullptr;
        const HRESULT hr = This().ElementAt(m_nPlace, nullptr);
        if (FAILED(hr)) return hr;
        *ppEnum = new (std::nothrow) Enumerator(This());
        return *ppEnum ? S_OK : E_OUTOFMEMORY;
    }

protected:
    CListWalk() = default;
    /// A walk at the same place.
    CListWalk(const CListWalk& other) : CUnknownImpl<Interface>(), m_nPlace(other.m_nPlace) {}

private:
    Enumerator& This() { return static_cast<Enumerator&>(*this); }

    HRESULT TakeBack(HRESULT hr, Element** ppElements, ULONG cFetched) {
        m_bOutOfSync = hr == VFW_E_ENUM_OUT_OF_SYNC;
        for (ULONG i = 0; i < cFetched; ++i) {
            Enumerator::Discard(ppElements[i]);
            ppElements[i] = nullptr;
        }
        return hr;
    }

    ULONG m_nPlace = 0;
    bool m_bOutOfSync = false;
};

} // namespace vellumcaster
