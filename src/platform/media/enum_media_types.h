#pragma once

#include "platform/media/graph_results.h"
#include "platform/media/media_type.h"

namespace vellumcaster {

/// Walks over the media types that a pin prefers.
struct IEnumMediaTypes : IUnknown {
    static constexpr GUID IID{0x89C31040, 0x846B, 0x11CE, {0x97, 0xD3, 0x00, 0xAA, 0x00, 0x55, 0x59, 0x5A}};

    /// Hands out the next types, each a block of task memory that the caller frees with its format block.
    /// \param pcFetched  how many there were; may be null where one is asked for.
    /// \return S_OK; S_FALSE for fewer than asked for; VFW_E_ENUM_OUT_OF_SYNC.
    virtual HRESULT Next(ULONG cMediaTypes, AM_MEDIA_TYPE** ppMediaTypes, ULONG* pcFetched) = 0;
    /// \return S_FALSE when the end came first.
    virtual HRESULT Skip(ULONG cMediaTypes) = 0;
    /// Starts over, in step with the pin again.
    virtual HRESULT Reset() = 0;
    /// Another enumerator at the same place.
    virtual HRESULT Clone(IEnumMediaTypes** ppEnum) = 0;

protected:
    ~IEnumMediaTypes() = default;
};

} // namespace vellumcaster
