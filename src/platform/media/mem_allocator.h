#pragma once

#include "platform/media/media_sample.h"

namespace vellumcaster {

/// What an allocator has been told of its buffers; counts and bytes.
struct ALLOCATOR_PROPERTIES {
    LONG cBuffers = 0;
    LONG cbBuffer = 0;
    LONG cbAlign = 0;
    LONG cbPrefix = 0;
};

/// Owns a set of samples and hands them out.
struct IMemAllocator : IUnknown {
    static constexpr GUID IID{0x56A8689C, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};

    virtual HRESULT SetProperties(ALLOCATOR_PROPERTIES* pRequest, ALLOCATOR_PROPERTIES* pActual) = 0;
    virtual HRESULT GetProperties(ALLOCATOR_PROPERTIES* pProps) = 0;
    virtual HRESULT Commit() = 0;
    virtual HRESULT Decommit() = 0;
    /// A free sample, with a reference that the caller releases. May wait for one. The times may be null.
    /// \return VFW_E_NOT_COMMITTED outside of `Commit` and `Decommit`.
    virtual HRESULT GetBuffer(IMediaSample** ppBuffer, REFERENCE_TIME* pStartTime, REFERENCE_TIME* pEndTime,
                              DWORD dwFlags) = 0;
    /// Takes a sample back whose last reference has gone.
    virtual HRESULT ReleaseBuffer(IMediaSample* pBuffer) = 0;

protected:
    ~IMemAllocator() = default;
};

} // namespace vellumcaster
