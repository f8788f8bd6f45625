#pragma once

#include "platform/media/mem_allocator.h"

#include <vellumcaster/counted_ptr.h>

namespace vellumcaster {

/// Makes an allocator whose buffers, once committed, are read for the first time as slowly as video memory is: each
/// page is brought in by a thread that takes its time. What has been read or written once is as fast as other memory.
/// \return S_OK; E_OUTOFMEMORY; E_NOTIMPL where the system does not let a program serve its own pages.
HRESULT MakeSlowAllocator(CComPtr<IMemAllocator>& sp);

} // namespace vellumcaster
