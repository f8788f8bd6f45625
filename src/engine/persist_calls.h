#pragma once

#include "engine/class_id.h"
#include "platform/com/no_exceptions.h"

#include <vellumcaster/persist.h>
#include <vellumcaster/results.h>

namespace vellumcaster {

/// `IPersistStream` of an object around an engine. No exception leaves a call.
/// \tparam Object  derives from this and has `Engine()`, a `COverlayEngine`.
template <class Object>
class IPersistStreamImpl : public IPersistStream {
public:
    HRESULT GetClassID(GUID* pClassId) override {
        if (!pClassId) return E_INVALIDARG;
        *pClassId = CLSID_CoVellumcaster;
        return S_OK;
    }
    HRESULT IsDirty() override { return This().Engine().IsDirty() ? S_OK : S_FALSE; }
    HRESULT Load(IStream* pStm) override {
        return WithoutExceptions([&] { return This().Engine().Load(pStm); });
    }
    HRESULT Save(IStream* pStm, BOOL fClearDirty) override {
        return WithoutExceptions([&] { return This().Engine().Save(pStm, fClearDirty != 0); });
    }
    HRESULT GetSizeMax(std::uint64_t* pcbSize) override {
        if (!pcbSize) return E_POINTER;
        *pcbSize = 1024;
        return S_OK;
    }

protected:
    ~IPersistStreamImpl() = default;

private:
    Object& This() { return static_cast<Object&>(*this); }
};

} // namespace vellumcaster
