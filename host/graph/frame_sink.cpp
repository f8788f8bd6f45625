#include "host/graph/frame_sink.h"

#include "graph/allocator_needs.h"
#include "graph/media_type_match.h"
#include "graph/picture_geometry.h"
#include "graph/seh_calls.h"
#include "image/plane_layout.h"

#include <utility>

namespace vellumcaster {

class CFrameSink::CPin final : public CNeighbourPin<IPin, IMemInputPin> {
public:
    explicit CPin(CFrameSink& sink) : CNeighbourPin(sink, sink.m_Manners, PINDIR_INPUT, u"Frames"), m_Sink(sink) {}

    HRESULT ReceiveConnection(IPin* pConnector, const AM_MEDIA_TYPE* pmt) override {
        if (!pConnector || !pmt) return E_POINTER;
        if (const auto hr = AnswerInstead(PinCall::ReceiveConnection)) return *hr;
        if (m_spPeer) return VFW_E_ALREADY_CONNECTED;
        if (QueryAccept(pmt) != S_OK) return VFW_E_TYPE_NOT_ACCEPTED;
        const HRESULT hr = TakeType(pmt);
        if (SUCCEEDED(hr)) m_spPeer = pConnector;
        return hr;
    }

    HRESULT Disconnect() override {
        if (!m_spPeer) return S_FALSE;
        if (m_Filter.State() != State_Stopped) return VFW_E_NOT_STOPPED;
        m_spPeer.Reset();
        m_spAllocator.Reset();
        return AnswerInstead(PinCall::Disconnect).value_or(S_OK);
    }

    HRESULT QueryAccept(const AM_MEDIA_TYPE* pmt) override {
        if (const auto hr = AnswerInstead(PinCall::QueryAccept)) return *hr;
        PictureFormat pf;
        if (MT_GetPictureFormat(pmt, &pf) < 0 || CPictureFormats::GetBufferSize(pf) == 0) return S_FALSE;
        const auto& formats = m_Sink.m_Manners.formats;
        const bool bTaken = formats.empty() || std::find(formats.begin(), formats.end(), pf.dwFormat) != formats.end();
        return bTaken ? S_OK : S_FALSE;
    }

    HRESULT EnumMediaTypes(IEnumMediaTypes** ppEnum) override {
        if (!ppEnum) return E_POINTER;
        if (const auto hr = AnswerInstead(PinCall::EnumMediaTypes)) return *hr;
        *ppEnum = MakeCounted<COfferedTypes>(std::vector<const AM_MEDIA_TYPE*>()).Detach();
        return S_OK;
    }

    HRESULT EndOfStream() override {
        if (const auto hr = AnswerInstead(PinCall::EndOfStream)) return *hr;
        m_Sink.SetEnded(true);
        return S_OK;
    }
    HRESULT BeginFlush() override {
        if (const auto hr = AnswerInstead(PinCall::BeginFlush)) return *hr;
        m_bFlushing = true;
        return S_OK;
    }
    HRESULT EndFlush() override {
        if (const auto hr = AnswerInstead(PinCall::EndFlush)) return *hr;
        m_bFlushing = false;
        m_Sink.SetEnded(false);
        return S_OK;
    }
    HRESULT NewSegment(REFERENCE_TIME, REFERENCE_TIME, double) override {
        return AnswerInstead(PinCall::NewSegment).value_or(S_OK);
    }

    HRESULT GetAllocator(IMemAllocator** ppAllocator) override {
        if (!ppAllocator) return E_POINTER;
        *ppAllocator = nullptr;
        if (const auto hr = AnswerInstead(PinCall::GetAllocator)) return *hr;
        if (!m_Sink.m_Manners.bOffersMemory) return VFW_E_NO_ALLOCATOR;
        if (!m_spOffered) {
            const HRESULT hr = MakeAllocator(m_spOffered);
            if (FAILED(hr)) return hr;
        }
        *ppAllocator = CComPtr<IMemAllocator>(m_spOffered).Detach();
        return S_OK;
    }

    HRESULT NotifyAllocator(IMemAllocator* pAllocator, BOOL bReadOnly) override {
        if (!pAllocator) return E_POINTER;
        if (const auto hr = AnswerInstead(PinCall::NotifyAllocator)) return *hr;
        if (m_Sink.m_Manners.bInsistsOnItsMemory && !IsSameObject(pAllocator, m_spOffered.Get())) return E_FAIL;
        m_spAllocator = pAllocator;
        m_bReadOnly = bReadOnly != 0;
        return S_OK;
    }

    HRESULT GetAllocatorRequirements(ALLOCATOR_PROPERTIES* pProps) override {
        if (!pProps) return E_POINTER;
        if (const auto hr = AnswerInstead(PinCall::GetAllocatorRequirements)) return *hr;
        if (!m_Sink.m_Manners.bTellsItsNeeds) return E_NOTIMPL;
        *pProps = m_Sink.m_Manners.needs;
        return S_OK;
    }

    HRESULT Receive(IMediaSample* pSample) override {
        if (!pSample) return E_POINTER;
        if (const auto hr = AnswerInstead(PinCall::Receive)) return *hr;
        if (m_bFlushing) return S_FALSE;
        if (m_Filter.State() == State_Stopped) return VFW_E_WRONG_STATE;
        AM_MEDIA_TYPE* pmt = nullptr;
        if (SEH_IMediaSample::GetMediaType(pSample, &pmt) == S_OK && pmt) {
            const CMediaTypePtr spmt(pmt);
            if (QueryAccept(pmt) != S_OK) return VFW_E_INVALIDMEDIATYPE;
            const HRESULT hr = TakeType(pmt);
            if (FAILED(hr)) return hr;
        }
        return m_Sink.m_Manners.take ? m_Sink.m_Manners.take(*pSample, m_pf) : S_OK;
    }

    HRESULT ReceiveMultiple(IMediaSample** ppSamples, LONG nSamples, LONG* pnProcessed) override {
        if (!ppSamples || !pnProcessed) return E_POINTER;
        HRESULT hr = S_OK;
        for (*pnProcessed = 0; *pnProcessed < nSamples && hr == S_OK; ++*pnProcessed)
            hr = Receive(ppSamples[*pnProcessed]);
        return hr;
    }

    HRESULT ReceiveCanBlock() override { return S_FALSE; }

    [[nodiscard]] CComPtr<IMemAllocator> Allocator() const { return m_spAllocator; }
    [[nodiscard]] bool IsReadOnly() const { return m_bReadOnly; }

private:
    HRESULT TakeType(const AM_MEDIA_TYPE* pmt) {
        const HRESULT hr = m_Type.Assign(pmt);
        if (SUCCEEDED(hr)) MT_GetPictureFormat(pmt, &m_pf);
        return hr;
    }

    CFrameSink& m_Sink;
    PictureFormat m_pf;
    std::atomic<bool> m_bFlushing = false;
    CComPtr<IMemAllocator> m_spOffered;
    CComPtr<IMemAllocator> m_spAllocator;
    bool m_bReadOnly = false;
};

CFrameSink::CFrameSink(SinkManners manners) : m_Manners(std::move(manners)), m_spPin(MakeCounted<CPin>(*this)) {}

CFrameSink::~CFrameSink() = default;

CComPtr<IPin> CFrameSink::OwnPin() { return m_spPin.Get(); }

CComPtr<IMemAllocator> CFrameSink::Allocator() const { return m_spPin->Allocator(); }

bool CFrameSink::IsReadOnly() const { return m_spPin->IsReadOnly(); }

HRESULT CFrameSink::Start() {
    SetEnded(false);
    return S_OK;
}

HRESULT CFrameSink::End() {
    SetEnded(true);
    return S_OK;
}

void CFrameSink::WaitForEnd() {
    std::unique_lock lock(m_Mutex);
    m_Changed.wait(lock, [this] { return m_bEnded.load(); });
}

void CFrameSink::SetEnded(bool bEnded) {
    const std::lock_guard lock(m_Mutex);
    m_bEnded = bEnded;
    m_Changed.notify_all();
}

} // namespace vellumcaster
