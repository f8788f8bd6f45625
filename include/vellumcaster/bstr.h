#pragma once

#include <vellumcaster/export.h>
#include <vellumcaster/types.h>

/// The strings of the calls. Each function may be called on any thread.
namespace vellumcaster {

/// Copies `cch` code units into a new string; zeros inside are kept. A null `pch` leaves the content undefined.
/// \return null when there is no memory or the string would not fit its 32-bit byte length.
VELLUM_API [[nodiscard]] BSTR SysAllocStringLen(const OLECHAR* pch, DWORD cch);

/// Copies a zero-ended string. \return null for null and when there is no memory.
VELLUM_API [[nodiscard]] BSTR SysAllocString(const OLECHAR* psz);

/// Frees a string; null is allowed.
VELLUM_API void SysFreeString(BSTR bs);

/// Length in code units; 0 for null.
VELLUM_API [[nodiscard]] DWORD SysStringLen(BSTR bs);

} // namespace vellumcaster
