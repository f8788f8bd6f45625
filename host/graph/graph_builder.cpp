#include "host/graph/graph_builder.h"

namespace vellumcaster {

HRESULT BuildGraph(CGraph& graph, CFrameSource& source, CCoVellumcaster& filter, CFrameSink& sink) {
    HRESULT hr = graph.AddFilter(&source, u"Source");
    if (SUCCEEDED(hr)) hr = graph.AddFilter(&filter, u"Overlay");
    if (SUCCEEDED(hr)) hr = graph.AddFilter(&sink, u"Sink");
    if (SUCCEEDED(hr)) hr = graph.Connect(source.OwnPin().Get(), filter.m_spIn.Get());
    if (SUCCEEDED(hr)) hr = graph.Connect(filter.m_spOut.Get(), sink.OwnPin().Get());
    return hr;
}

} // namespace vellumcaster
