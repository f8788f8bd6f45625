#pragma once

#include "platform/media/mem_allocator.h"

#include <vellumcaster/counted_ptr.h>

#include <functional>
#include <optional>

namespace vellumcaster {

/// What the filter asks of the pin next to it.
enum class PinCall {
    QueryInterface,
    QueryDirection,
    QueryAccept,
    EnumMediaTypes,
    ReceiveConnection,
    Disconnect,
    GetAllocator,
    GetAllocatorRequirements,
    NotifyAllocator,
    Receive,
    EndOfStream,
    BeginFlush,
    EndFlush,
    NewSegment,
};

/// How a neighbour of the filter behaves, whichever side it stands on.
struct Manners {
    /// Answers a call in the pin's place, which then does nothing, gives nothing out and keeps what it has; but it is
    /// disconnected all the same. Nothing: the pin acts. Not set: it always does.
    std::function<std::optional<HRESULT>(PinCall)> answer;
    /// Makes the allocator that it offers or brings. Not set: the filter's own kind.
    std::function<HRESULT(CComPtr<IMemAllocator>& sp)> makeAllocator;
};

} // namespace vellumcaster
