#pragma once

#include <vellumcaster/types.h>
#include <vellumcaster/unknown.h>

namespace vellumcaster {

/// Properties by set and number, as the far side of a connection has them.
struct IKsPropertySet : IUnknown {
    static constexpr GUID IID{0x31EFAC30, 0x515C, 0x11D0, {0xA9, 0xAA, 0x00, 0xAA, 0x00, 0x61, 0xBE, 0x93}};

    virtual HRESULT Set(const GUID& guidPropSet, DWORD dwPropId, void* pInstanceData, DWORD cbInstanceData,
                        void* pPropData, DWORD cbPropData) = 0;
    virtual HRESULT Get(const GUID& guidPropSet, DWORD dwPropId, void* pInstanceData, DWORD cbInstanceData,
                        void* pPropData, DWORD cbPropData, DWORD* pcbReturned) = 0;
    virtual HRESULT QuerySupported(const GUID& guidPropSet, DWORD dwPropId, DWORD* pTypeSupport) = 0;

protected:
    ~IKsPropertySet() = default;
};

} // namespace vellumcaster
