#pragma once

#include <vellumcaster/persist.h>

namespace vellumcaster {

struct IReferenceClock;

enum FILTER_STATE : std::int32_t {
    State_Stopped = 0,
    State_Paused = 1,
    State_Running = 2,
};

/// The states of a filter, and the clock that it runs by.
struct IMediaFilter : IPersist {
    using Parent = IPersist;
    static constexpr GUID IID{0x56A86899, 0x0AD4, 0x11CE, {0xB0, 0x3A, 0x00, 0x20, 0xAF, 0x0B, 0xA7, 0x70}};

    virtual HRESULT Stop() = 0;
    virtual HRESULT Pause() = 0;
    /// \param tStart  the clock's time at which stream time is 0.
    virtual HRESULT Run(REFERENCE_TIME tStart) = 0;
    /// Waits up to `dwMilliseconds` for a change of state to end.
    virtual HRESULT GetState(DWORD dwMilliseconds, FILTER_STATE* pState) = 0;
    /// Null: no clock.
    virtual HRESULT SetSyncSource(IReferenceClock* pClock) = 0;
    /// The clock with a reference, or null.
    virtual HRESULT GetSyncSource(IReferenceClock** ppClock) = 0;

protected:
    ~IMediaFilter() = default;
};

} // namespace vellumcaster
