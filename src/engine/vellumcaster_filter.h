#pragma once

#include "engine/class_id.h"
#include "engine/control_calls.h"
#include "engine/item_access_calls.h"
#include "engine/memory_type.h"
#include "engine/overlay_engine.h"
#include "engine/persist_calls.h"
#include "engine/stream_demands.h"
#include "engine/stream_painter.h"
#include "graph/base_filter_impl.h"
#include "graph/input_pin.h"
#include "graph/output_pin.h"
#include "graph/trans_in_place_hooks.h"
#include "platform/media/property_pages.h"

#include <atomic>
#include <optional>

namespace vellumcaster {

class CCoVellumcaster;

class CCoVellumcasterIn final : public CInputPin<CCoVellumcaster, CCoVellumcasterIn> {
public:
    CCoVellumcasterIn() : CInputPin("In") {}
    [[nodiscard]] const char* DisplayName() const override { return pszDisplayName; }

private:
    static constexpr const char* pszDisplayName = "[CCoVellumcasterIn]";
};

class CCoVellumcasterOut final : public COutputPin<CCoVellumcaster, CCoVellumcasterOut> {
public:
    CCoVellumcasterOut() : COutputPin("Out", pszDisplayName) {}
    [[nodiscard]] const char* DisplayName() const override { return pszDisplayName; }

private:
    static constexpr const char* pszDisplayName = "[CCoVellumcasterOut]";
};

/// What the overlay filter answers to.
using VellumcasterInterfaces =
    CUnknownImpl<IBaseFilterImpl<CCoVellumcaster>, IVellumcaster2Impl<CCoVellumcaster>,
                 IVellumcasterItemImpl<CCoVellumcaster>, ISpecifyPropertyPages, IPersistStreamImpl<CCoVellumcaster>>;

/// The overlay filter: an engine between an input pin and an output pin.
class CCoVellumcaster final : public VellumcasterInterfaces,
                              public CTransInPlaceHooks<CCoVellumcaster>,
                              private CStreamDemands {
public:
    /// A new filter with its pins, in no graph. \return E_OUTOFMEMORY.
    static HRESULT Make(CComPtr<CCoVellumcaster>& sp);

    /// Throws `std::bad_alloc`.
    CCoVellumcaster();

    /// Beside the interfaces also `IMarshal`: any thread may call the filter, so its pointers travel as they are.
    HRESULT QueryInterface(const GUID& iid, void** ppv) override;

    [[nodiscard]] static const GUID& ClassId() { return CLSID_CoVellumcaster; }
    [[nodiscard]] const char* DisplayName() const override { return "CCoVellumcaster"; }
    [[nodiscard]] COverlayEngine& Engine() { return m_Engine; }
    [[nodiscard]] CStreamDemands& Demands() { return *this; }
    using CStreamDemands::UsesExtraBuffer;
    // Not the demands' own, which the interface calls.
    using IVellumcaster2Impl::GetColorSpace;
    using IVellumcaster2Impl::IsUseExtraBuffer2;
    using IVellumcaster2Impl::SetColorSpace;
    using IVellumcaster2Impl::UseExtraBuffer2;
    [[nodiscard]] bool IsStopped() const override { return CBaseFilter::IsStopped(); }

    HRESULT GetPages(CAUUID* pPages) override;

    /// Before the filter leaves Stopped.
    void ResetItemForRun() { m_Engine.ResetItemForRun(); }

    /// Whether a pin takes a type: video in one of the eight formats, in a geometry that it can have, as demanded; while
    /// stopped, also the neighbour of the other pin is asked.
    [[nodiscard]] bool Filter_QueryAccept(int nPinIndex, const AM_MEDIA_TYPE* pmt);

    /// A pin has a new connection. For the input pin (0) all items are prepared in its format, and the output side is
    /// brought to its type; for the output pin (1) the input is connected anew, and the kind of the output's memory has
    /// to be found out.
    /// \return S_OK; what breaks the connection; E_ABORT for any other index.
    HRESULT Filter_CompleteConnect(int nPinIndex);

    /// The output pin has taken another type, or none. With its lock held.
    void Filter_OutputChanged(const PictureFormat& pf);

    /// As the hooks have it; items added from then on are not prepared.
    void Filter_BreakConnect(int nPinIndex);

    /// Takes one frame through the filter: chooses the buffer to mix in, draws the items, copies where that is needed and
    /// delivers. Called by the input pin, one frame at a time, on upstream's thread. The item lock is held while the frame
    /// is mixed and copied, and free before it is delivered.
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

    const CComPtr<CCoVellumcasterIn> m_spIn;
    const CComPtr<CCoVellumcasterOut> m_spOut;

    /// Measured once a connection, on the first frame that needs to know; by the thread that delivers.
    std::atomic<MemoryType> m_nMemoryType = MemoryType::Unknown;
    /// How it is measured.
    MemoryType (*m_pfnDetectMemoryType)(BYTE* pBuffer, LONG cbBuffer) = &DetectMemoryType;

private:
    struct FramePass;

    /// The result with which the frame is dropped, or none to go on.
    using Dropped = std::optional<HRESULT>;

    Dropped TakeInput(FramePass& pass, IMediaSample& sample) const;
    Dropped TakeSeparateOutput(FramePass& pass, IMediaSample& sample);
    void LeaveReadOnlyInput(FramePass& pass);
    void PassInputThrough(FramePass& pass, IMediaSample& sample);
    HRESULT ReadOutputType(IMediaSample* pSample);
    void MixAndCopy(const FramePass& pass, IMediaSample& sample);
    void FollowStream(std::uint32_t dwInput);
    HRESULT CompleteInput();

    std::optional<HRESULT> ReconnectInFormat(std::uint32_t dwFormat) override;
    HRESULT Reconnect() override;
    void MarkUnsaved() override { m_Engine.MarkDirty(); }

    CComPtr<IUnknown> m_spMarshaler; ///< a part of this object
    CStreamPainter m_Painter;
    COverlayEngine m_Engine{m_Painter};
};

} // namespace vellumcaster
