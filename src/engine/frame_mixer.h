#pragma once

#include "engine/control_calls.h"
#include "engine/item_access_calls.h"
#include "engine/overlay_engine.h"
#include "engine/persist_calls.h"
#include "engine/stream_demands.h"
#include "engine/stream_painter.h"
#include "platform/com/unknown_impl.h"

#include <vellumcaster/frame_mixer.h>

namespace vellumcaster {

class CCoFrameMixer;

/// What a frame mixer answers to.
using FrameMixerInterfaces = CUnknownImpl<IFrameMixer, IVellumcaster2Impl<CCoFrameMixer>,
                                          IPersistStreamImpl<CCoFrameMixer>, IVellumcasterItemImpl<CCoFrameMixer>>;

/// An engine for frames of the caller's own. The item lock guards format and state too, so that calls from different
/// threads wait for each other.
class CCoFrameMixer final : public FrameMixerInterfaces, private CStreamDemands {
public:
    HRESULT SetFormat(const FrameFormat* pFormat) override;
    HRESULT Start() override;
    HRESULT Stop() override;
    HRESULT MixFrame(BYTE* pFrame, std::uint64_t cbFrame, const LONGLONG* pllStart, const LONGLONG* pllEnd,
                     const REFERENCE_TIME* prtStart, const REFERENCE_TIME* prtEnd) override;

    /// What was loaded is prepared once more: a picture's alpha was not known yet when it was made.
    HRESULT Load(IStream* pStm) override;

    [[nodiscard]] COverlayEngine& Engine() { return m_Engine; }
    [[nodiscard]] CStreamDemands& Demands() { return *this; }

private:
    [[nodiscard]] bool HasFormat() const { return m_desc.dwFormat != 0; }

    bool IsStopped() const override { return !m_bRunning; }
    std::optional<HRESULT> ReconnectInFormat(std::uint32_t dwFormat) override;
    HRESULT Reconnect() override;
    void MarkUnsaved() override { m_Engine.MarkDirty(); }

    CStreamPainter m_Painter;
    COverlayEngine m_Engine{m_Painter};
    PictureFormat m_desc; ///< all zero until a format was set
    std::atomic<bool> m_bRunning = false;
};

/// A new mixer. Throws `std::bad_alloc`.
[[nodiscard]] inline CComPtr<IFrameMixer> MakeFrameMixer() { return MakeCounted<CCoFrameMixer>().Get(); }

} // namespace vellumcaster
