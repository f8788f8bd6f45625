#pragma once

#include <vellumcaster/types.h>
#include <vellumcaster/unknown.h>

#include <limits>

namespace vellumcaster {

/// The unit behind a time, where one stands for a length that is not known; of the last one itself.
[[nodiscard]] constexpr REFERENCE_TIME NextUnit(REFERENCE_TIME t) {
    return t < std::numeric_limits<REFERENCE_TIME>::max() ? t + 1 : t;
}

struct AM_MEDIA_TYPE;

/// One buffer on its way through a graph, with what is said about it. Belongs to its allocator; the last
/// `Release` sends it home.
struct IMediaSample : IUnknown {
    static constexpr GUID IID{0x56A8689A, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};

    /// The buffer, owned by the sample.
    virtual HRESULT GetPointer(BYTE** ppBuffer) = 0;
    /// Bytes that the buffer holds.
    virtual LONG GetSize() = 0;
    /// \return S_OK, VFW_S_NO_STOP_TIME with the stop one unit behind the start, or VFW_E_SAMPLE_TIME_NOT_SET.
    virtual HRESULT GetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) = 0;
    /// Null for no time; `pTimeEnd` alone null for no stop time.
    virtual HRESULT SetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) = 0;
    virtual HRESULT IsSyncPoint() = 0;
    virtual HRESULT SetSyncPoint(BOOL bIsSyncPoint) = 0;
    virtual HRESULT IsPreroll() = 0;
    virtual HRESULT SetPreroll(BOOL bIsPreroll) = 0;
    /// Bytes of the buffer that hold data.
    virtual LONG GetActualDataLength() = 0;
    /// \return VFW_E_BUFFER_OVERFLOW when the buffer is smaller.
    virtual HRESULT SetActualDataLength(LONG cb) = 0;
    /// \return S_OK with a type that the caller frees; S_FALSE with null when the type is the connection's.
    virtual HRESULT GetMediaType(AM_MEDIA_TYPE** ppMediaType) = 0;
    virtual HRESULT SetMediaType(AM_MEDIA_TYPE* pMediaType) = 0;
    virtual HRESULT IsDiscontinuity() = 0;
    virtual HRESULT SetDiscontinuity(BOOL bDiscontinuity) = 0;
    /// \return S_OK or VFW_E_MEDIA_TIME_NOT_SET.
    virtual HRESULT GetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) = 0;
    /// Both null for no media times.
    virtual HRESULT SetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) = 0;

protected:
    ~IMediaSample() = default;
};

} // namespace vellumcaster
