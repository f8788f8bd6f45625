#pragma once

#include "platform/kernel/critical_section.h"
#include "platform/media/filter_graph.h"
#include "platform/media/reference_clock.h"

#include <vellumcaster/counted_ptr.h>

#include <array>
#include <atomic>

namespace vellumcaster {

/// What the framework keeps of a filter: its place in a graph, its state, its clock, and the lock that guards them.
class CBaseFilter {
public:
    CBaseFilter() = default;
    CBaseFilter(const CBaseFilter&) = delete;
    CBaseFilter& operator=(const CBaseFilter&) = delete;

    /// Read without a lock.
    [[nodiscard]] FILTER_STATE State() const { return m_State; }
    [[nodiscard]] bool IsStopped() const { return m_State == State_Stopped; }
    [[nodiscard]] CCriticalSection& FilterLock() { return m_csFilter; }

    /// Has one of the own pins connected anew where its type is not the given one. An input pin is always connected
    /// anew: that is how upstream is given the chance to take over the output's allocator.
    /// \param pmt  null: any type. \param pPin  may be null.
    /// \return S_OK, also for a pin without a connection; VFW_E_NOT_IN_GRAPH; VFW_E_NOT_STOPPED; what the pin or the
    ///         graph answers.
    HRESULT MakeReconnect(const AM_MEDIA_TYPE* pmt, IPin* pPin);

    /// Has the graph connect one of the own pins anew, in a type where the graph can be told one.
    /// \return VFW_E_NOT_IN_GRAPH; what the graph answers.
    HRESULT ReconnectPin(IPin* pPin, const AM_MEDIA_TYPE* pmt);

    [[nodiscard]] virtual const char* DisplayName() const = 0;

protected:
    ~CBaseFilter() = default;

    /// Forgets graph, sink and name.
    void LeaveGraph();
    /// Takes a graph, not counted, and the name in it. \param pszName  may be null.
    void EnterGraph(IFilterGraph* pGraph, const OLECHAR* pszName);
    /// The graph with a reference, or none.
    [[nodiscard]] CComPtr<IFilterGraph> Graph();
    /// The name in the graph: UTF-8, ends in a zero; empty out of one.
    [[nodiscard]] std::array<char, 128> Name();

    IMediaEventSink* m_pEventSink = nullptr;
    CComPtr<IReferenceClock> m_spClock;
    std::atomic<FILTER_STATE> m_State = State_Stopped;
    REFERENCE_TIME m_tStart = 0; ///< of the last `Run`
    CCriticalSection m_csFilter;

private:
    CCriticalSection m_csGraph;       ///< guards what follows, which is read with pin locks held
    IFilterGraph* m_pGraph = nullptr; ///< owns the filter
    std::array<char, 128> m_szName{}; ///< UTF-8, ends in a zero
};

} // namespace vellumcaster
