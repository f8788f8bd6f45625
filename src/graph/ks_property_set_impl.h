#pragma once

#include "graph/redirection.h"
#include "platform/media/ks_property_set.h"

namespace vellumcaster {

/// Properties are downstream's: every call goes through to it.
/// \tparam Pin  the input pin, which derives from this.
template <class Pin>
class IKsPropertySetImpl : public IKsPropertySet {
public:
    HRESULT Set(const GUID& guidPropSet, DWORD dwPropId, void* pInstanceData, DWORD cbInstanceData, void* pPropData,
                DWORD cbPropData) override {
        return RedirectCall(This(),
                            "IKsPropertySet::Set(guidPropSet,dwPropID,pInstanceData,cbInstanceData,pPropData,"
                            "cbPropData)",
                            &IKsPropertySet::Set, guidPropSet, dwPropId, pInstanceData, cbInstanceData, pPropData,
                            cbPropData);
    }
    HRESULT Get(const GUID& guidPropSet, DWORD dwPropId, void* pInstanceData, DWORD cbInstanceData, void* pPropData,
                DWORD cbPropData, DWORD* pcbReturned) override {
        return RedirectCall(This(),
                            "IKsPropertySet::Get(guidPropSet,dwPropID, pInstanceData,cbInstanceData,pPropData,"
                            "cbPropData, pcbReturned)",
                            &IKsPropertySet::Get, guidPropSet, dwPropId, pInstanceData, cbInstanceData, pPropData,
                            cbPropData, pcbReturned);
    }
    HRESULT QuerySupported(const GUID& guidPropSet, DWORD dwPropId, DWORD* pTypeSupport) override {
        return RedirectCall(This(), "IKsPropertySet::QuerySupported(guidPropSet,dwPropID,pTypeSupport)",
                            &IKsPropertySet::QuerySupported, guidPropSet, dwPropId, pTypeSupport);
    }

protected:
    ~IKsPropertySetImpl() = default;

private:
    Pin& This() { return static_cast<Pin&>(*this); }
};

} // namespace vellumcaster
