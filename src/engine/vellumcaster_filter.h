#pragma once

#include "engine/overlay_engine.h"
#include "graph/plain/plain_pins.h"
#include "platform/kernel/critical_section.h"

namespace vellumcaster {

/// What kind of memory the output's buffers are in.
enum class MemoryType : LONG {
    Unknown = -1,
    System = 0,
    Video = 1, ///< too slow to mix in
};

/// Finds out the kind of a buffer's memory. \param cb  bytes of the buffer.
using MemoryProbe = MemoryType (*)(const BYTE* p, LONG cb);

/// The overlay filter: an engine between an input pin and an output pin.
class CCoVellumcaster {
public:
    /// \param painter  as the engine has it.
    /// \param spIn, spOut  the pins; not null, and each with its geometry set before the first frame.
    CCoVellumcaster(IItemPainter& painter, CComPtr<CPlainInputPin> spIn, CComPtr<CPlainOutputPin> spOut);

    [[nodiscard]] COverlayEngine& Engine() { return m_Engine; }

    /// The engine's share of a pin's new connection: for the input pin (0) all items are prepared in its format,
    /// for the output pin (1) the kind of the output's memory has to be found out anew.
    /// \return S_OK; E_ABORT for any other index.
    HRESULT Filter_CompleteConnect(int nPinIndex);

    /// Takes one frame through the filter: chooses the buffer to mix in, draws the items, copies where that is
    /// needed and delivers. Called by the input pin, one frame at a time, on upstream's thread. The item lock is
    /// held while the frame is mixed and copied, and free before it is delivered.
    ///
    ///     allocators     input       output memory   mixed in       copies
    ///     through-pass                               input          none: the same sample goes on
    ///     separated      writable    any             input          one, after the mixing
    ///     separated      read-only   system          output         one, before the mixing
    ///     separated      read-only   video           extra buffer   two
    ///
    /// \return the delivery's answer, or the first failure by which the frame was dropped; E_INVALIDARG for a null
    ///         sample.
    HRESULT Filter_SendSample(int nPinIndex, IMediaSample* pSample);

    /// Input and output run on separate allocators. Set while no frame flows.
    bool m_bSeparated = false;
    /// Measured once a connection, on the first frame that needs to know.
    MemoryType m_nMemoryType = MemoryType::Unknown;
    /// Null: the kind of the output's memory stays unknown.
    MemoryProbe m_pfnDetectMemoryType = nullptr;

private:
    struct FramePass;

    /// The result with which the frame is dropped, or none to go on.
    using Dropped = std::optional<HRESULT>;

    Dropped TakeInput(FramePass& pass, IMediaSample& sample) const;
    Dropped TakeSeparateOutput(FramePass& pass, IMediaSample& sample);
    void LeaveReadOnlyInput(FramePass& pass);
    void PassInputThrough(FramePass& pass, IMediaSample& sample);
    void ReadOutputType(IMediaSample* pSample);
    void MixAndCopy(const FramePass& pass, const FrameTimes& times);

    COverlayEngine m_Engine;
    CComPtr<CPlainInputPin> m_spIn;
    CComPtr<CPlainOutputPin> m_spOut;
    CCriticalSection m_csFilter;
};

} // namespace vellumcaster
