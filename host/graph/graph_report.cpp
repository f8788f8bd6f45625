#include "host/graph/graph_report.h"

#include "image/format_names.h"
#include "image/plane_layout.h"
#include "platform/com/utf8.h"

#include <array>
#include <cstdio>

namespace vellumcaster {

namespace {

template <class... Values>
std::string Format(const char* pszFormat, Values... values) {
    std::array<char, 200> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), pszFormat, values...));
    return text.data();
}

/// "Filter.Pin"
std::string NameOf(IPin& pin) {
    PIN_INFO info;
    if (FAILED(pin.QueryPinInfo(&info))) return "?";
    CComPtr<IBaseFilter> spFilter;
    spFilter.Attach(info.pFilter);
    FILTER_INFO filter;
    if (!spFilter || FAILED(spFilter->QueryFilterInfo(&filter))) return ToUtf8(info.achName);
    CComPtr<IFilterGraph> spGraph;
    spGraph.Attach(filter.pGraph);
    return ToUtf8(filter.achName) + "." + ToUtf8(info.achName);
}

template <class Pin>
std::string TypeOf(const Pin& pin) {
    const PictureFormat pf = pin.Picture();
    std::string type = std::string(CPictureFormats::NameFromFormat(pf.dwFormat)) +
                       Format(" %dx%d", pf.nWidth, static_cast<LONG>(RowCount(pf)));
    if (const REFERENCE_TIME t = pin.AvgTimePerFrame(); t > 0) type += Format(", %.3f frames/s", 1e7 / double(t));
    return type;
}

template <class Pin>
std::string ConnectionLine(Pin& pin) {
    const CComPtr<IPin> spPeer = pin.Peer();
    if (!spPeer) return NameOf(pin) + " is not connected\n";
    const bool bInput = pin.m_Direction == PINDIR_INPUT;
    IPin& from = bInput ? *spPeer : static_cast<IPin&>(pin);
    IPin& to = bInput ? static_cast<IPin&>(pin) : *spPeer;
    return NameOf(from) + " -> " + NameOf(to) + "  " + TypeOf(pin) + "\n";
}

const char* OwnerOf(CTransInPlaceAllocator::Mode mode) {
    switch (mode) {
    case CTransInPlaceAllocator::Mode::Upstream: return "upstream's";
    case CTransInPlaceAllocator::Mode::Own: return "the filter's own";
    case CTransInPlaceAllocator::Mode::Downstream: return "downstream's";
    default: return "none";
    }
}

const char* KindOf(MemoryType type) {
    switch (type) {
    case MemoryType::System: return "system memory";
    case MemoryType::Video: return "video memory";
    default: return "memory not measured";
    }
}

} // namespace

std::string DescribeGraph(const CCoVellumcaster& filter) {
    const CTransInPlaceAllocator& allocator = filter.m_spOut->m_Allocator;
    const ALLOCATOR_PROPERTIES& props = allocator.Properties();
    return ConnectionLine(*filter.m_spIn) + ConnectionLine(*filter.m_spOut) +
           Format("output buffers: %s, %d of %d bytes, alignment %d, prefix %d, %s\n", OwnerOf(allocator.GetMode()),
                  props.cBuffers, props.cbBuffer, props.cbAlign, props.cbPrefix, KindOf(filter.m_nMemoryType)) +
           (filter.m_bSeparated ? "separated allocators: each frame is copied to the output\n"
                                : "through-pass allocator: the same sample goes on\n");
}

} // namespace vellumcaster
