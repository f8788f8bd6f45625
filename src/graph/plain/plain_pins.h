#pragma once

#include "image/blob_holder.h"
#include "image/picture_format.h"
#include "platform/com/unknown_impl.h"
#include "platform/media/mem_input_pin.h"

#include <vellumcaster/counted_ptr.h>

namespace vellumcaster {

/// The least that the mixing pass asks of an input pin: the geometry of what comes in, and whether upstream's
/// buffers may be written. Set up before frames flow, read by the thread that delivers them.
class CPlainInputPin final : public CUnknownImpl<IUnknown> {
public:
    PictureFormat m_pfConnected;
    bool m_bReadOnly = false; ///< upstream's allocator was declared read-only
};

/// The least that the mixing pass asks of an output pin.
class CPlainOutputPin final : public CUnknownImpl<IUnknown> {
public:
    /// Hands a sample to downstream's pin. \return its answer; E_UNEXPECTED when it faulted.
    HRESULT SendSample(IMediaSample* pSample);

    /// Takes in the media type that travels with a sample. A plain sample carries none.
    /// \return S_FALSE, with nothing changed.
    HRESULT SetMediaTypeFromSample(IMediaSample* pSample);

    PictureFormat m_pfConnected;
    CComPtr<IMemAllocator> m_spAllocOut;
    CComPtr<IMemInputPin> m_spMemInput; ///< downstream's pin
    /// Where a frame is mixed that must not be mixed in the output sample; empty: there is no such place.
    CVirtualBlob m_blobExtra;
};

} // namespace vellumcaster
