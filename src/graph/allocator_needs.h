#pragma once

#include "platform/media/mem_input_pin.h"

#include <vellumcaster/counted_ptr.h>

namespace vellumcaster {

/// The two are one object; two null pointers count as one.
[[nodiscard]] bool IsSameObject(IUnknown* pA, IUnknown* pB);

/// Makes each need of `a` the larger of the two. \return whether `b` alone falls short of any of them.
bool MergeRequirements(ALLOCATOR_PROPERTIES& a, const ALLOCATOR_PROPERTIES& b);

/// What downstream needs of the buffers that it is given: at least one buffer, of one byte.
void GetRequirements(IMemInputPin* pMemInput, ALLOCATOR_PROPERTIES& props);

/// \return S_OK; E_FAIL for an allocator that gives less than is required, or whose alignment is no power of two.
[[nodiscard]] HRESULT CheckProperties(const ALLOCATOR_PROPERTIES& required, const ALLOCATOR_PROPERTIES& actual);

/// Offers downstream an allocator. A writable one is first set to what is required.
/// \return S_OK: downstream takes it; else the first refusal, which may be a success code.
[[nodiscard]] HRESULT TryAllocator(IMemInputPin* pMemInput, IMemAllocator* pAllocator,
                                   const ALLOCATOR_PROPERTIES& required, bool bReadOnly);

} // namespace vellumcaster
