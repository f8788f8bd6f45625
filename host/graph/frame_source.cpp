#include "host/graph/frame_source.h"

#include "graph/allocator_needs.h"
#include "graph/media_type_match.h"
#include "graph/picture_geometry.h"
#include "graph/seh_calls.h"
#include "host/graph/video_type.h"

#include <utility>

namespace vellumcaster {

class CFrameSource::CPin final : public CNeighbourPin<IPin> {
public:
    explicit CPin(CFrameSource& source)
        : CNeighbourPin(source, source.m_Manners, PINDIR_OUTPUT, u"Frames"), m_Source(source) {
        for (const OfferedStream& stream : source.m_Manners.streams) {
            auto spType = std::make_unique<CMediaTypeHolder>();
            if (SUCCEEDED(MakeVideoType(stream.pf, stream.avgTimePerFrame, *spType->Put())))
                m_Offered.push_back(std::move(spType));
        }
    }

    HRESULT Connect(IPin* pReceivePin, const AM_MEDIA_TYPE* pmt) override {
        if (!pReceivePin) return E_POINTER;
        if (m_spPeer) return VFW_E_ALREADY_CONNECTED;
        HRESULT hr = VFW_E_NO_ACCEPTABLE_TYPES;
        for (const auto& spType : m_Offered) {
            if (MT_IsSet(pmt) && !MT_IsEqual(pmt, spType->Get())) continue;
            hr = ConnectWith(pReceivePin, *spType->Get());
            if (hr == S_OK) return S_OK;
        }
        return FailureOf(hr, VFW_E_NO_ACCEPTABLE_TYPES);
    }

    HRESULT Disconnect() override {
        if (!m_spPeer) return S_FALSE;
        if (m_Filter.State() != State_Stopped) return VFW_E_NOT_STOPPED;
        m_spPeer.Reset();
        m_spMemInput.Reset();
        m_spAllocator.Reset();
        return S_OK;
    }

    HRESULT QueryAccept(const AM_MEDIA_TYPE* pmt) override {
        if (const auto hr = AnswerInstead(PinCall::QueryAccept)) return *hr;
        const bool bOffered = std::any_of(m_Offered.begin(), m_Offered.end(),
                                          [pmt](const auto& spType) { return MT_IsEqual(pmt, spType->Get()); });
        return bOffered ? S_OK : S_FALSE;
    }

    HRESULT EnumMediaTypes(IEnumMediaTypes** ppEnum) override {
        if (!ppEnum) return E_POINTER;
        if (const auto hr = AnswerInstead(PinCall::EnumMediaTypes)) return *hr;
        std::vector<const AM_MEDIA_TYPE*> types;
        for (const auto& spType : m_Offered)
            types.push_back(spType->Get());
        *ppEnum = MakeCounted<COfferedTypes>(types).Detach();
        return S_OK;
    }

    HRESULT Commit(bool bCommit) {
        if (!m_spAllocator) return VFW_E_NOT_CONNECTED;
        return bCommit ? SEH_IMemAllocator::Commit(m_spAllocator.Get())
                       : SEH_IMemAllocator::Decommit(m_spAllocator.Get());
    }

    /// One frame. \return S_OK to go on.
    HRESULT DeliverFrame() {
        CComPtr<IMediaSample> spSample;
        IMediaSample* pSample = nullptr;
        HRESULT hr = SEH_IMemAllocator::GetBuffer(m_spAllocator.Get(), &pSample, nullptr, nullptr, 0);
        if (hr == S_OK) spSample.Attach(pSample);
        if (!spSample) return FailureOf(hr, E_FAIL);
        PictureFormat pf;
        if (MT_GetPictureFormat(m_Type.Get(), &pf) < 0) return E_UNEXPECTED;
        hr = m_Source.m_Manners.fill(*spSample, pf);
        return hr == S_OK ? m_spMemInput->Receive(spSample.Get()) : hr;
    }

    [[nodiscard]] CComPtr<IPin> Peer() const { return m_spPeer; }

private:
    HRESULT ConnectWith(IPin* pReceivePin, const AM_MEDIA_TYPE& mt) {
        HRESULT hr = m_Type.Assign(&mt);
        if (FAILED(hr)) return hr;
        m_spPeer = pReceivePin;
        hr = pReceivePin->ReceiveConnection(this, &mt);
        if (hr != S_OK) {
            m_spPeer.Reset();
            return FailureOf(hr, VFW_E_TYPE_NOT_ACCEPTED);
        }
        hr = Settle(pReceivePin);
        if (hr == S_OK) return S_OK;
        static_cast<void>(pReceivePin->Disconnect());
        m_spPeer.Reset();
        m_spMemInput.Reset();
        return FailureOf(hr, VFW_E_NO_ALLOCATOR);
    }

    /// Finds memory that both sides can live with.
    HRESULT Settle(IPin* pReceivePin) {
        HRESULT hr = pReceivePin->QueryInterface(IMemInputPin::IID, reinterpret_cast<void**>(m_spMemInput.Put()));
        if (FAILED(hr)) return hr;
        ALLOCATOR_PROPERTIES needs;
        GetRequirements(m_spMemInput.Get(), needs);
        MergeRequirements(needs, m_Source.m_Manners.needs);
        needs.cbBuffer = std::max(needs.cbBuffer, static_cast<LONG>(m_Type.Get()->lSampleSize));

        if (m_Source.m_Manners.memory == SourceManners::Memory::Offered) {
            CComPtr<IMemAllocator> spOffered;
            if (m_spMemInput->GetAllocator(spOffered.Put()) == S_OK && spOffered &&
                Set(spOffered, needs, false) == S_OK)
                return S_OK;
        }
        CComPtr<IMemAllocator> spOwn;
        hr = MakeAllocator(spOwn);
        return FAILED(hr) ? hr : Set(spOwn, needs, m_Source.m_Manners.memory == SourceManners::Memory::OwnReadOnly);
    }

    HRESULT Set(CComPtr<IMemAllocator> spAllocator, ALLOCATOR_PROPERTIES needs, bool bReadOnly) {
        ALLOCATOR_PROPERTIES actual;
        HRESULT hr = SEH_IMemAllocator::SetProperties(spAllocator.Get(), &needs, &actual);
        if (hr == S_OK) hr = CheckProperties(needs, actual);
        if (hr == S_OK) hr = m_spMemInput->NotifyAllocator(spAllocator.Get(), bReadOnly ? 1 : 0);
        if (hr == S_OK) m_spAllocator = std::move(spAllocator);
        return hr;
    }

    CFrameSource& m_Source;
    std::vector<std::unique_ptr<CMediaTypeHolder>> m_Offered;
    CComPtr<IMemInputPin> m_spMemInput;
    CComPtr<IMemAllocator> m_spAllocator;
};

CFrameSource::CFrameSource(SourceManners manners) : m_Manners(std::move(manners)), m_spPin(MakeCounted<CPin>(*this)) {}

CFrameSource::~CFrameSource() = default;

CComPtr<IPin> CFrameSource::OwnPin() { return m_spPin.Get(); }

HRESULT CFrameSource::Start() {
    const HRESULT hr = m_spPin->Commit(true);
    if (FAILED(hr)) return hr;
    m_bEnding = false;
    m_hrOutcome = S_OK;
    m_bDelivering = true;
    m_Thread = std::thread([this] { Deliver(); });
    return S_OK;
}

HRESULT CFrameSource::End() {
    m_bEnding = true;
    static_cast<void>(m_spPin->Commit(false));
    if (m_Thread.joinable()) m_Thread.join();
    return S_OK;
}

void CFrameSource::Deliver() {
    HRESULT hr = S_OK;
    while (hr == S_OK && !m_bEnding)
        hr = DeliverFrame();
    if (!m_bEnding) {
        if (FAILED(hr)) m_hrOutcome = hr;
        if (const CComPtr<IPin> spPeer = m_spPin->Peer()) static_cast<void>(spPeer->EndOfStream());
    }
    m_bDelivering = false;
    m_bDelivering.notify_all();
}

HRESULT CFrameSource::DeliverFrame() {
    CAutoLock lock(m_csFrame);
    const HRESULT hr = m_spPin->DeliverFrame();
    if (hr == S_OK) ++m_nAccepted;
    // What a flush has emptied out is no end.
    return m_bFlushing ? S_OK : hr;
}

HRESULT CFrameSource::Flush() {
    const CComPtr<IPin> spPeer = m_spPin->Peer();
    if (!spPeer) return VFW_E_NOT_CONNECTED;
    m_bFlushing = true;
    static_cast<void>(spPeer->BeginFlush());
    CAutoLock lock(m_csFrame);
    m_bFlushing = false;
    static_cast<void>(spPeer->EndFlush());
    return spPeer->NewSegment(0, 0, 1.0);
}

} // namespace vellumcaster
