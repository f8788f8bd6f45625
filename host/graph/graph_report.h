#pragma once

#include "host/graph/graph_builder.h"

#include <string>

namespace vellumcaster {

/// What a graph of source, filter and sink looks like once it is connected: the connections with their types, whose memory
/// the frames are in, and whether they pass through or are copied. Lines with ends. The kind of the memory is known where
/// a stream has had to measure it.
[[nodiscard]] std::string DescribeGraph(const CCoVellumcaster& filter);

} // namespace vellumcaster
