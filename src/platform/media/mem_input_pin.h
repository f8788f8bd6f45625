#pragma once

#include "platform/media/mem_allocator.h"

namespace vellumcaster {

/// Where samples enter a filter.
struct IMemInputPin : IUnknown {
    static constexpr GUID IID{0x56A8689D, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};

    virtual HRESULT GetAllocator(IMemAllocator** ppAllocator) = 0;
    virtual HRESULT NotifyAllocator(IMemAllocator* pAllocator, BOOL bReadOnly) = 0;
    virtual HRESULT GetAllocatorRequirements(ALLOCATOR_PROPERTIES* pProps) = 0;
    /// Takes one sample, on the thread that delivers.
    /// \return S_OK to go on; S_FALSE to stop the stream; a failure.
    virtual HRESULT Receive(IMediaSample* pSample) = 0;
    virtual HRESULT ReceiveMultiple(IMediaSample** ppSamples, LONG nSamples, LONG* pnProcessed) = 0;
    virtual HRESULT ReceiveCanBlock() = 0;

protected:
    ~IMemInputPin() = default;
};

} // namespace vellumcaster
