#pragma once

#include <vellumcaster/types.h>
#include <vellumcaster/unknown.h>

namespace vellumcaster {

/// Places in a stream and the rate at which it runs. Times are in the format that was set, units of 100 ns at first.
struct IMediaSeeking : IUnknown {
    static constexpr GUID IID{0x36B73880, 0xC2C8, 0x11CF, {0x8B, 0x46, 0x00, 0x80, 0x5F, 0x6C, 0xEF, 0x60}};

    virtual HRESULT GetCapabilities(DWORD* pCapabilities) = 0;
    virtual HRESULT CheckCapabilities(DWORD* pCapabilities) = 0;
    virtual HRESULT IsFormatSupported(const GUID* pFormat) = 0;
    virtual HRESULT QueryPreferredFormat(GUID* pFormat) = 0;
    virtual HRESULT GetTimeFormat(GUID* pFormat) = 0;
    virtual HRESULT IsUsingTimeFormat(const GUID* pFormat) = 0;
    virtual HRESULT SetTimeFormat(const GUID* pFormat) = 0;
    virtual HRESULT GetDuration(LONGLONG* pDuration) = 0;
    virtual HRESULT GetStopPosition(LONGLONG* pStop) = 0;
    virtual HRESULT GetCurrentPosition(LONGLONG* pCurrent) = 0;
    virtual HRESULT ConvertTimeFormat(LONGLONG* pTarget, const GUID* pTargetFormat, LONGLONG Source,
                                      const GUID* pSourceFormat) = 0;
    virtual HRESULT SetPositions(LONGLONG* pCurrent, DWORD dwCurrentFlags, LONGLONG* pStop, DWORD dwStopFlags) = 0;
    virtual HRESULT GetPositions(LONGLONG* pCurrent, LONGLONG* pStop) = 0;
    virtual HRESULT GetAvailable(LONGLONG* pEarliest, LONGLONG* pLatest) = 0;
    virtual HRESULT SetRate(double dRate) = 0;
    virtual HRESULT GetRate(double* pdRate) = 0;
    virtual HRESULT GetPreroll(LONGLONG* pllPreroll) = 0;

protected:
    ~IMediaSeeking() = default;
};

} // namespace vellumcaster
