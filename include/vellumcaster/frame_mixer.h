#pragma once

#include <vellumcaster/unknown.h>

namespace vellumcaster {

/// The pixel formats of frames. Planes of `YV12` are Y, V, U, of `I420` Y, U, V.
enum FRAME_FORMAT : std::uint32_t {
    eRGB32 = 0xE436EB7E,  ///< bytes B, G, R and one that is not used
    eRGB24 = 0xE436EB7D,  ///< bytes B, G, R
    eARGB32 = 0x773C9AC0, ///< bytes B, G, R, A; items cannot be drawn in it
    eYUY2 = 0x32595559,
    eYVYU = 0x55595659,
    eUYVY = 0x59565955,
    eYV12 = 0x32315659,
    eI420 = 0x30323449,
};

/// What the frames of a stream are like.
struct FrameFormat {
    DWORD dwFormat = 0; ///< `FRAME_FORMAT`
    LONG nWidth = 0;    ///< pixels
    LONG nHeight = 0;   ///< pixels; of an RGB frame positive: rows from the bottom up, negative: from the top down
    LONG nStride = 0;   ///< pixels from row to row; 0: the width
    REFERENCE_TIME avgTimePerFrame = 0; ///< units of 100 ns, by which timecodes count; 0: not known
};

/// Draws the stack of items on frames of the caller's own, with no graph around it. The same object has
/// `IVellumcaster2`, `IPersistStream` and `IVellumcasterItem`, which may be called on any thread while frames are mixed.
struct IFrameMixer : IUnknown {
    static constexpr GUID IID{0x2F2C8E51, 0x6D0B, 0x4E6A, {0x9C, 0x35, 0x1B, 0x7D, 0x58, 0x0E, 0xA4, 0x93}};

    /// Says what the frames are like; all items are prepared for it.
    /// \return S_OK; E_POINTER; VFW_E_NOT_STOPPED; VFW_E_TYPE_NOT_ACCEPTED for a format that is none of the above or not
    ///         the demanded one; E_INVALIDARG for a size that the format cannot have.
    virtual HRESULT SetFormat(const FrameFormat* pFormat) = 0;
    /// Begins a stream: counters go to their start, clocks are anchored.
    /// \return S_OK; S_FALSE: it is running; E_UNEXPECTED before a format was set.
    virtual HRESULT Start() = 0;
    /// Ends a stream. \return S_OK; S_FALSE: it is stopped.
    virtual HRESULT Stop() = 0;
    /// Draws the stack on one frame, in place. One frame at a time.
    /// \param cbFrame  bytes at `pFrame`.
    /// \param pllStart, pllEnd, prtStart, prtEnd  what callbacks are told of the frame, in units of 100 ns; may be null.
    /// \return S_OK; E_POINTER for a null frame; E_INVALIDARG for one that is smaller than the format says;
    ///         VFW_E_WRONG_STATE while stopped.
    virtual HRESULT MixFrame(BYTE* pFrame, std::uint64_t cbFrame, const LONGLONG* pllStart, const LONGLONG* pllEnd,
                             const REFERENCE_TIME* prtStart, const REFERENCE_TIME* prtEnd) = 0;

protected:
    ~IFrameMixer() = default;
};

} // namespace vellumcaster
