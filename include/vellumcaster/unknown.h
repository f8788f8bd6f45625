#pragma once

#include <vellumcaster/types.h>

namespace vellumcaster {

/// The root of every interface: identity and a reference count. An interface carries its name as `IID`.
///
/// All three calls may come from any thread.
struct IUnknown {
    static constexpr GUID IID{0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

    /// Asks for another interface of the same object.
    /// \param ppv receives the interface with a reference that the caller releases, or null.
    /// \return S_OK; E_NOINTERFACE when the object lacks it; E_POINTER for a null `ppv`.
    virtual HRESULT QueryInterface(const GUID& iid, void** ppv) = 0;
    /// Takes a reference. \return the new count, for diagnosis only.
    virtual ULONG AddRef() = 0;
    /// Gives a reference back; the last one destroys the object. \return the new count, for diagnosis only.
    virtual ULONG Release() = 0;

protected:
    ~IUnknown() = default;
};

} // namespace vellumcaster
