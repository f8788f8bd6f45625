#pragma once

#include "platform/com/marshal.h"

namespace vellumcaster {

inline constexpr GUID CLSID_InProcFreeMarshaler{
    0x0000033A, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

/// Makes the marshaler of an object that any thread may call: within the process its pointers travel as they are.
/// Beyond the process there is no way.
/// \param punkOuter       the object that the marshaler becomes a part of, not counted: it owns the marshaler and
///                        answers for its identity. Null: the marshaler stands alone.
/// \param ppunkMarshaler  receives the marshaler's own `IUnknown`, by which alone it is owned.
/// \return S_OK; E_POINTER; E_OUTOFMEMORY.
HRESULT CoCreateFreeThreadedMarshaler(IUnknown* punkOuter, IUnknown** ppunkMarshaler);

} // namespace vellumcaster
