#pragma once

#include <vellumcaster/stream.h>

namespace vellumcaster {

/// An object of a named class.
struct IPersist : IUnknown {
    static constexpr GUID IID{0x0000010C, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

    virtual HRESULT GetClassID(GUID* pClassId) = 0;

protected:
    ~IPersist() = default;
};

/// Keeps a stack of items in a stream: of an image its file's name and not its pixels, of a text its font and its
/// string. Cookies, callbacks and the settings of the filter stay out. Calls may come from any thread.
struct IPersistStream : IPersist {
    using Parent = IPersist;
    static constexpr GUID IID{0x00000109, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

    /// \return S_OK: there are changes that no stream holds; S_FALSE: none.
    virtual HRESULT IsDirty() = 0;
    /// Puts the items of a stream on top of the stack. An item that cannot be made, as an image whose file is gone, is
    /// passed over. A stream of a later version counts as an empty one.
    /// \return S_OK; E_INVALIDARG for null, and for a stream that is none of ours; E_FAIL for one that ends too soon or
    ///         holds what no writer wrote; E_OUTOFMEMORY; what reading failed with. The items read before stay.
    virtual HRESULT Load(IStream* pStm) = 0;
    /// Writes the stack. No item changes meanwhile, and frames wait.
    /// \param fClearDirty  whether the stack counts as saved afterwards.
    /// \return S_OK; E_INVALIDARG for null; what writing failed with, and the stack still counts as changed.
    virtual HRESULT Save(IStream* pStm, BOOL fClearDirty) = 0;
    /// 1024, whatever the list holds: no bound. \return S_OK; E_POINTER for null.
    virtual HRESULT GetSizeMax(std::uint64_t* pcbSize) = 0;

protected:
    ~IPersistStream() = default;
};

} // namespace vellumcaster
