#pragma once

#include <vellumcaster/item.h>
#include <vellumcaster/unknown.h>

namespace vellumcaster {

/// What an application implements to hear of each frame before an item is drawn on it.
struct IVellumcasterCallback : IUnknown {
    static constexpr GUID IID{0x0BF3D0F5, 0xE212, 0x4872, {0xA0, 0x9B, 0x7C, 0x71, 0xA4, 0xD5, 0xBF, 0x81}};

    /// Called for the item on every frame, shown or hidden, on the thread that delivers the frame and with the
    /// item list locked. It may call the control interfaces on this thread; it must not wait for another thread
    /// that does.
    ///
    /// \param _pProps  the item's properties, to be read and changed. The string in it is a copy; whatever
    ///                 stands in its place afterwards is freed by the caller.
    /// \param _pllStart, _pllEnd  the frame's media times, both or neither null.
    /// \param _prtStart, _prtEnd  the frame's start and stop in units of 100 ns, null where it has none.
    /// \return S_OK: the changed properties apply from this frame on. Another success: they are dropped.
    ///         A failure, a fault or an exception: the callback is released and never called again.
    virtual HRESULT OnFrameOverlay(OVERLAY_PROPS* _pProps, LONGLONG* _pllStart, LONGLONG* _pllEnd,
                                   REFERENCE_TIME* _prtStart, REFERENCE_TIME* _prtEnd) = 0;

protected:
    ~IVellumcasterCallback() = default;
};

} // namespace vellumcaster
