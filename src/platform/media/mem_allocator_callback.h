#pragma once

#include "platform/media/mem_allocator.h"

namespace vellumcaster {

/// Hears of each buffer that comes home to an allocator.
struct IMemAllocatorNotifyCallbackTemp : IUnknown {
    static constexpr GUID IID{0x92980B30, 0xC1DE, 0x11D2, {0xAB, 0xF5, 0x00, 0xA0, 0xC9, 0x05, 0xF3, 0x75}};

    virtual HRESULT NotifyRelease() = 0;

protected:
    ~IMemAllocatorNotifyCallbackTemp() = default;
};

/// An allocator that can be watched.
struct IMemAllocatorCallbackTemp : IMemAllocator {
    using Parent = IMemAllocator;
    static constexpr GUID IID{0x379A0CF0, 0xC1DE, 0x11D2, {0xAB, 0xF5, 0x00, 0xA0, 0xC9, 0x05, 0xF3, 0x75}};

    /// Replaces the watcher; null for none.
    virtual HRESULT SetNotify(IMemAllocatorNotifyCallbackTemp* pNotify) = 0;
    /// How many buffers are at home.
    virtual HRESULT GetFreeCount(LONG* plBuffersFree) = 0;

protected:
    ~IMemAllocatorCallbackTemp() = default;
};

/// `GetBuffer` answers VFW_E_TIMEOUT at once instead of waiting.
inline constexpr DWORD AM_GBF_NOWAIT = 4;

} // namespace vellumcaster
