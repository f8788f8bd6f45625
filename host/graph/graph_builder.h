#pragma once

#include "engine/vellumcaster_filter.h"
#include "host/graph/frame_sink.h"
#include "host/graph/frame_source.h"
#include "host/graph/graph_manager.h"

namespace vellumcaster {

/// Joins source, filter and sink to a graph and connects them, the filter's input first.
/// \return S_OK; the first failure, with what was joined left in the graph.
HRESULT BuildGraph(CGraph& graph, CFrameSource& source, CCoVellumcaster& filter, CFrameSink& sink);

} // namespace vellumcaster
