#pragma once

#include "graph/media_type_enumerator.h"
#include "graph/memory_allocator.h"
#include "graph/narrow_text.h"
#include "graph/pin_enumerator.h"
#include "host/graph/manners.h"
#include "platform/com/no_exceptions.h"
#include "platform/com/task_memory.h"
#include "platform/media/base_filter.h"
#include "platform/media/reference_clock.h"

#include <algorithm>
#include <atomic>
#include <string_view>
#include <vector>

namespace vellumcaster {

/// A filter with one pin, as stands at either end of a graph. The pin holds no reference on it.
class CNeighbour : public CUnknownImpl<IBaseFilter> {
public:
    HRESULT GetClassID(GUID*) override { return E_NOTIMPL; }
    HRESULT Stop() override { return Change(State_Stopped); }
    HRESULT Pause() override { return Change(State_Paused); }
    HRESULT Run(REFERENCE_TIME) override { return Change(State_Running); }
    HRESULT GetState(DWORD, FILTER_STATE* pState) override {
        if (!pState) return E_POINTER;
        *pState = m_State;
        return S_OK;
    }
    HRESULT SetSyncSource(IReferenceClock*) override { return S_OK; }
    HRESULT GetSyncSource(IReferenceClock** ppClock) override {
        if (!ppClock) return E_POINTER;
        *ppClock = nullptr;
        return S_OK;
    }
    HRESULT EnumPins(IEnumPins** ppEnum) override {
        if (!ppEnum) return E_POINTER;
        return WithoutExceptions([&] {
            *ppEnum = MakeCounted<CPinEnumerator>(this, OwnPin(), CComPtr<IPin>()).Detach();
            return S_OK;
        });
    }
    HRESULT FindPin(const OLECHAR*, IPin**) override { return E_NOTIMPL; }
    HRESULT QueryFilterInfo(FILTER_INFO* pInfo) override {
        if (!pInfo) return E_POINTER;
        *pInfo = {};
        std::copy_n(m_achName, std::size(m_achName), pInfo->achName);
        return S_OK;
    }
    HRESULT JoinFilterGraph(IFilterGraph*, const OLECHAR* pszName) override {
        const std::u16string_view name = pszName ? pszName : u"";
        std::fill(std::begin(m_achName), std::end(m_achName), u'\0');
        name.copy(m_achName, std::size(m_achName) - 1);
        return S_OK;
    }
    HRESULT QueryVendorInfo(OLECHAR**) override { return E_NOTIMPL; }

    [[nodiscard]] FILTER_STATE State() const { return m_State; }
    [[nodiscard]] virtual CComPtr<IPin> OwnPin() = 0;

protected:
    /// The filter leaves Stopped, or goes back to it.
    virtual HRESULT Start() { return S_OK; }
    virtual HRESULT End() { return S_OK; }

private:
    HRESULT Change(FILTER_STATE state) {
        const bool bWasStopped = m_State == State_Stopped;
        const bool bStops = state == State_Stopped;
        const HRESULT hr = bWasStopped && !bStops ? Start() : !bWasStopped && bStops ? End() : S_OK;
        if (SUCCEEDED(hr)) m_State = state;
        return hr;
    }

    std::atomic<FILTER_STATE> m_State = State_Stopped;
    OLECHAR m_achName[128] = {};
};

/// Walks over the types that a neighbour's pin offers.
class COfferedTypes final : public CListWalk<COfferedTypes, IEnumMediaTypes, AM_MEDIA_TYPE> {
public:
    explicit COfferedTypes(const std::vector<const AM_MEDIA_TYPE*>& types) {
        for (const AM_MEDIA_TYPE* pmt : types)
            m_Types.emplace_back(MT_Clone(pmt));
    }
    COfferedTypes(const COfferedTypes& other) : CListWalk(other) {
        for (const CMediaTypePtr& spmt : other.m_Types)
            m_Types.emplace_back(MT_Clone(spmt.get()));
    }

    HRESULT ElementAt(ULONG nPlace, AM_MEDIA_TYPE** ppmt) const {
        if (nPlace >= m_Types.size()) return S_FALSE;
        if (!ppmt) return S_OK;
        *ppmt = MT_Clone(m_Types[nPlace].get());
        return *ppmt ? S_OK : E_OUTOFMEMORY;
    }
    static void Discard(AM_MEDIA_TYPE* pmt) { MT_Delete(pmt); }

private:
    std::vector<CMediaTypePtr> m_Types;
};

/// What the pins of neighbours answer alike.
/// \tparam Interfaces  the first is `IPin`.
template <class... Interfaces>
class CNeighbourPin : public CUnknownImpl<Interfaces...> {
public:
    /// The three outlive the pin.
    CNeighbourPin(CNeighbour& filter, const Manners& manners, PIN_DIRECTION direction, const OLECHAR* pszName)
        : m_Filter(filter), m_Manners(manners), m_Direction(direction), m_pszName(pszName) {}

    HRESULT QueryInterface(const GUID& iid, void** ppv) override {
        if (const auto hr = AnswerInstead(PinCall::QueryInterface)) return *hr;
        return CUnknownImpl<Interfaces...>::QueryInterface(iid, ppv);
    }
    HRESULT Connect(IPin*, const AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    HRESULT ReceiveConnection(IPin*, const AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    HRESULT ConnectedTo(IPin** ppPin) override {
        if (!ppPin) return E_POINTER;
        *ppPin = CComPtr<IPin>(m_spPeer).Detach();
        return *ppPin ? S_OK : VFW_E_NOT_CONNECTED;
    }
    HRESULT ConnectionMediaType(AM_MEDIA_TYPE* pmt) override {
        if (!pmt) return E_POINTER;
        return m_spPeer ? MT_Copy(pmt, m_Type.Get()) : VFW_E_NOT_CONNECTED;
    }
    HRESULT QueryPinInfo(PIN_INFO* pInfo) override {
        if (!pInfo) return E_POINTER;
        *pInfo = {};
        pInfo->pFilter = CComPtr<IBaseFilter>(&m_Filter).Detach();
        pInfo->dir = m_Direction;
        std::u16string_view(m_pszName).copy(pInfo->achName, std::size(pInfo->achName) - 1);
        return S_OK;
    }
    HRESULT QueryDirection(PIN_DIRECTION* pPinDir) override {
        if (!pPinDir) return E_POINTER;
        if (const auto hr = AnswerInstead(PinCall::QueryDirection)) return *hr;
        *pPinDir = m_Direction;
        return S_OK;
    }
    HRESULT QueryId(OLECHAR**) override { return E_NOTIMPL; }
    HRESULT QueryInternalConnections(IPin**, ULONG*) override { return E_NOTIMPL; }
    HRESULT EndOfStream() override { return E_NOTIMPL; }
    HRESULT BeginFlush() override { return E_NOTIMPL; }
    HRESULT EndFlush() override { return E_NOTIMPL; }
    HRESULT NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) override { return E_NOTIMPL; }

protected:
    [[nodiscard]] std::optional<HRESULT> AnswerInstead(PinCall call) const {
        return m_Manners.answer ? m_Manners.answer(call) : std::nullopt;
    }

    [[nodiscard]] HRESULT MakeAllocator(CComPtr<IMemAllocator>& sp) const {
        if (m_Manners.makeAllocator) return m_Manners.makeAllocator(sp);
        CComPtr<CMemoryAllocator> spOwn;
        const HRESULT hr = CMemoryAllocator::Make(spOwn);
        sp = spOwn.Get();
        return hr;
    }

    CNeighbour& m_Filter;
    const Manners& m_Manners;
    const PIN_DIRECTION m_Direction;
    const OLECHAR* m_pszName;
    CComPtr<IPin> m_spPeer;
    CMediaTypeHolder m_Type;
};

} // namespace vellumcaster
