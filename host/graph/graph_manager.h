#pragma once

#include "platform/com/unknown_impl.h"
#include "platform/media/filter_graph.h"
#include "platform/media/graph_results.h"

#include <string>
#include <vector>

namespace vellumcaster {

/// A graph of filters: joins them, connects their pins, takes them through their states. It finds no way by itself and
/// has no clock.
///
/// Its own calls come from one thread, the control thread; what it is told by filters may come from any.
class CGraph final : public CUnknownImpl<IFilterGraph2> {
public:
    /// \param bReconnectsInTypes  whether it offers `IFilterGraph2`; without, it is an older graph.
    explicit CGraph(bool bReconnectsInTypes = true) : m_bReconnectsInTypes(bReconnectsInTypes) {}

    HRESULT QueryInterface(const GUID& iid, void** ppv) override;

    HRESULT AddFilter(IBaseFilter* pFilter, const OLECHAR* pszName) override;
    HRESULT RemoveFilter(IBaseFilter* pFilter) override;
    HRESULT EnumFilters(IEnumFilters**) override { return E_NOTIMPL; }
    HRESULT FindFilterByName(const OLECHAR* pszName, IBaseFilter** ppFilter) override;
    HRESULT ConnectDirect(IPin* ppinOut, IPin* ppinIn, const AM_MEDIA_TYPE* pmt) override;
    HRESULT Reconnect(IPin* ppin) override { return ReconnectEx(ppin, nullptr); }
    HRESULT Disconnect(IPin* ppin) override { return ppin ? ppin->Disconnect() : E_POINTER; }
    HRESULT SetDefaultSyncSource() override { return E_NOTIMPL; }

    HRESULT Connect(IPin* ppinOut, IPin* ppinIn) override { return ConnectDirect(ppinOut, ppinIn, nullptr); }
    HRESULT Render(IPin*) override { return E_NOTIMPL; }
    HRESULT RenderFile(const OLECHAR*, const OLECHAR*) override { return E_NOTIMPL; }
    HRESULT AddSourceFilter(const OLECHAR*, const OLECHAR*, IBaseFilter**) override { return E_NOTIMPL; }
    HRESULT SetLogFile(std::uintptr_t) override { return E_NOTIMPL; }
    HRESULT Abort() override { return E_NOTIMPL; }
    HRESULT ShouldOperationContinue() override { return S_OK; }

    HRESULT AddSourceFilterForMoniker(IUnknown*, IUnknown*, const OLECHAR*, IBaseFilter**) override {
        return E_NOTIMPL;
    }
    /// Breaks a connection and makes it anew before it returns. Where that fails, the former connection is made again,
    /// if that can be.
    HRESULT ReconnectEx(IPin* ppin, const AM_MEDIA_TYPE* pmt) override;
    HRESULT RenderEx(IPin*, DWORD, DWORD*) override { return E_NOTIMPL; }

    /// Takes all filters to a state, those downstream first, so that each can take what comes when the one before it
    /// starts, and none waits for one that has stopped.
    /// \return S_OK; the first failure, and then all are stopped.
    HRESULT Pause();
    HRESULT Run();
    HRESULT Stop();

    /// How often a connection was made anew.
    [[nodiscard]] int ReconnectionCount() const { return m_nReconnections; }

    /// Removes all filters, which ends their connections. A graph is taken apart before it is released.
    void Clear();

private:
    struct Entry {
        CComPtr<IBaseFilter> spFilter;
        std::u16string name;
    };

    template <class Change>
    HRESULT ForEachFromDownstream(const Change& change);

    std::vector<Entry> m_Filters; ///< in the order in which they were added: upstream first
    bool m_bReconnectsInTypes;
    int m_nReconnections = 0;
};

/// A filter's pin by its direction, the first that there is; null where there is none.
[[nodiscard]] CComPtr<IPin> PinOf(IBaseFilter& filter, PIN_DIRECTION direction);

} // namespace vellumcaster
