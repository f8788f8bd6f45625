#pragma once

#include <vellumcaster/types.h>
#include <vellumcaster/unknown.h>

namespace vellumcaster {

/// The clock that a graph runs by; units of 100 ns.
struct IReferenceClock : IUnknown {
    static constexpr GUID IID{0x56A86897, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};

    virtual HRESULT GetTime(REFERENCE_TIME* pTime) = 0;
    /// Signals an event once, at `tBase` + `tStream`.
    virtual HRESULT AdviseTime(REFERENCE_TIME tBase, REFERENCE_TIME tStream, std::uintptr_t hEvent,
                               std::uintptr_t* pdwCookie) = 0;
    /// Releases a semaphore again and again.
    virtual HRESULT AdvisePeriodic(REFERENCE_TIME tStart, REFERENCE_TIME tPeriod, std::uintptr_t hSemaphore,
                                   std::uintptr_t* pdwCookie) = 0;
    virtual HRESULT Unadvise(std::uintptr_t dwCookie) = 0;

protected:
    ~IReferenceClock() = default;
};

} // namespace vellumcaster
