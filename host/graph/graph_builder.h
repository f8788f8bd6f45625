#pragma once

#include "engine/vellumcaster_filter.h"
#include "host/graph/frame_sink.h"
#include "host/graph/frame_source.h"
#include "host/graph/graph_manager.h"

namespace vellumcaster {

/// A graph of one's own, which is taken apart at its end.
class COwnGraph {
public:
    COwnGraph() = default;
    COwnGraph(const COwnGraph&) = delete;
    COwnGraph& operator=(const COwnGraph&) = delete;
    ~COwnGraph() { m_sp->Clear(); }

    CGraph& operator*() const { return *m_sp; }
    CGraph* operator->() const { return m_sp.Get(); }

private:
    CComPtr<CGraph> m_sp = MakeCounted<CGraph>();
};

/// Joins source, filter and sink to a graph and connects them, the filter's input first.
/// \return S_OK; the first failure, with what was joined left in the graph.
HRESULT BuildGraph(CGraph& graph, CFrameSource& source, CCoVellumcaster& filter, CFrameSink& sink);

} // namespace vellumcaster
