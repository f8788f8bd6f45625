#pragma once

#include "platform/media/pin.h"

namespace vellumcaster {

/// Walks over a filter's pins.
struct IEnumPins : IUnknown {
    static constexpr GUID IID{0x56A86892, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};

    /// Hands out the next pins, each with a reference that the caller releases.
    /// \param pcFetched  how many there were; may be null where one is asked for.
    /// \return S_OK; S_FALSE for fewer than asked for; VFW_E_ENUM_OUT_OF_SYNC.
    virtual HRESULT Next(ULONG cPins, IPin** ppPins, ULONG* pcFetched) = 0;
    /// \return S_FALSE when the end came first.
    virtual HRESULT Skip(ULONG cPins) = 0;
    /// Starts over, in step with the filter again.
    virtual HRESULT Reset() = 0;
    /// Another enumerator at the same place.
    virtual HRESULT Clone(IEnumPins** ppEnum) = 0;

protected:
    ~IEnumPins() = default;
};

} // namespace vellumcaster
