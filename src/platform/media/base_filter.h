#pragma once

#include "platform/media/enum_pins.h"
#include "platform/media/media_filter.h"

namespace vellumcaster {

struct IFilterGraph;

/// What a filter says of itself.
struct FILTER_INFO {
    OLECHAR achName[128] = {};      ///< ends in a zero
    IFilterGraph* pGraph = nullptr; ///< with a reference that the caller releases, or null
};

/// A filter: its pins and its place in a graph.
struct IBaseFilter : IMediaFilter {
    using Parent = IMediaFilter;
    static constexpr GUID IID{0x56A86895, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};

    virtual HRESULT EnumPins(IEnumPins** ppEnum) = 0;
    /// The pin of that name, with a reference.
    virtual HRESULT FindPin(const OLECHAR* pszId, IPin** ppPin) = 0;
    virtual HRESULT QueryFilterInfo(FILTER_INFO* pInfo) = 0;
    /// Null for both: the filter leaves its graph. The filter holds no reference on the graph.
    virtual HRESULT JoinFilterGraph(IFilterGraph* pGraph, const OLECHAR* pszName) = 0;
    /// Words of the maker's, in task memory that the caller frees. \return E_NOTIMPL: there are none.
    virtual HRESULT QueryVendorInfo(OLECHAR** ppszVendorInfo) = 0;

protected:
    ~IBaseFilter() = default;
};

} // namespace vellumcaster
