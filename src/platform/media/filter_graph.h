#pragma once

#include "platform/media/base_filter.h"

namespace vellumcaster {

struct IEnumFilters;

/// The graph that filters are joined to.
struct IFilterGraph : IUnknown {
    static constexpr GUID IID{0x56A8689F, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};

    virtual HRESULT AddFilter(IBaseFilter* pFilter, const OLECHAR* pszName) = 0;
    virtual HRESULT RemoveFilter(IBaseFilter* pFilter) = 0;
    virtual HRESULT EnumFilters(IEnumFilters** ppEnum) = 0;
    virtual HRESULT FindFilterByName(const OLECHAR* pszName, IBaseFilter** ppFilter) = 0;
    /// Connects two pins, with no filter in between. \param pmt  may be null or partial.
    virtual HRESULT ConnectDirect(IPin* ppinOut, IPin* ppinIn, const AM_MEDIA_TYPE* pmt) = 0;
    /// Breaks a pin's connection and makes it anew, in whichever type the two sides then agree on.
    virtual HRESULT Reconnect(IPin* ppin) = 0;
    virtual HRESULT Disconnect(IPin* ppin) = 0;
    virtual HRESULT SetDefaultSyncSource() = 0;

protected:
    ~IFilterGraph() = default;
};

/// A graph that finds the way between two pins by itself.
struct IGraphBuilder : IFilterGraph {
    using Parent = IFilterGraph;
    static constexpr GUID IID{0x56A868A9, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};

    virtual HRESULT Connect(IPin* ppinOut, IPin* ppinIn) = 0;
    virtual HRESULT Render(IPin* ppinOut) = 0;
    virtual HRESULT RenderFile(const OLECHAR* pszFile, const OLECHAR* pszPlayList) = 0;
    virtual HRESULT AddSourceFilter(const OLECHAR* pszFile, const OLECHAR* pszFilterName, IBaseFilter** ppFilter) = 0;
    virtual HRESULT SetLogFile(std::uintptr_t hFile) = 0;
    virtual HRESULT Abort() = 0;
    virtual HRESULT ShouldOperationContinue() = 0;

protected:
    ~IGraphBuilder() = default;
};

/// A graph that can reconnect in a given type.
struct IFilterGraph2 : IGraphBuilder {
    using Parent = IGraphBuilder;
    static constexpr GUID IID{0x36B73882, 0xC2C8, 0x11CF, {0x8B, 0x46, 0x00, 0x80, 0x5F, 0x6C, 0xEF, 0x60}};

    virtual HRESULT AddSourceFilterForMoniker(IUnknown* pMoniker, IUnknown* pContext, const OLECHAR* pszFilterName,
                                              IBaseFilter** ppFilter) = 0;
    /// `Reconnect` in a type; null for any. It has finished when it returns.
    virtual HRESULT ReconnectEx(IPin* ppin, const AM_MEDIA_TYPE* pmt) = 0;
    virtual HRESULT RenderEx(IPin* ppinOut, DWORD dwFlags, DWORD* pdwContext) = 0;

protected:
    ~IFilterGraph2() = default;
};

/// Where filters tell a graph of what happens.
struct IMediaEventSink : IUnknown {
    static constexpr GUID IID{0x56A868A2, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};

    virtual HRESULT Notify(LONG nEventCode, std::intptr_t nParam1, std::intptr_t nParam2) = 0;

protected:
    ~IMediaEventSink() = default;
};

} // namespace vellumcaster
