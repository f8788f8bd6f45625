#pragma once

#include <vellumcaster/types.h>
#include <vellumcaster/unknown.h>

namespace vellumcaster {

/// A counted array of ids, in task memory.
struct CAUUID {
    ULONG cElems = 0;
    GUID* pElems = nullptr;
};

/// Names the property pages of an object.
struct ISpecifyPropertyPages : IUnknown {
    static constexpr GUID IID{0xB196B28B, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};

    /// \param pPages  the caller frees the array with `CoTaskMemFree`.
    virtual HRESULT GetPages(CAUUID* pPages) = 0;

protected:
    ~ISpecifyPropertyPages() = default;
};

} // namespace vellumcaster
