#include "engine/vellumcaster_filter.h"

#include "graph/media_type_list.h"
#include "image/format_table.h"
#include "platform/com/free_threaded_marshaler.h"

#include <algorithm>
#include <new>
#include <utility>

namespace vellumcaster {

HRESULT CCoVellumcaster::Make(CComPtr<CCoVellumcaster>& sp) {
    return WithoutExceptions([&] {
        sp = MakeCounted<CCoVellumcaster>();
        return S_OK;
    });
}

CCoVellumcaster::CCoVellumcaster()
    : m_spIn(MakeCounted<CCoVellumcasterIn>()), m_spOut(MakeCounted<CCoVellumcasterOut>()) {
    if (FAILED(CoCreateFreeThreadedMarshaler(static_cast<IBaseFilter*>(this), m_spMarshaler.Put())))
        throw std::bad_alloc();
}

HRESULT CCoVellumcaster::QueryInterface(const GUID& iid, void** ppv) {
    if (ppv && iid == IMarshal::IID) return m_spMarshaler->QueryInterface(iid, ppv);
    return VellumcasterInterfaces::QueryInterface(iid, ppv);
}

HRESULT CCoVellumcaster::GetPages(CAUUID* pPages) {
    if (!pPages) return E_POINTER;
    *pPages = {};
    auto* pPage = static_cast<GUID*>(CoTaskMemAlloc(sizeof(GUID)));
    if (!pPage) return E_OUTOFMEMORY;
    *pPage = CLSID_MixerPage;
    *pPages = {1, pPage};
    return S_OK;
}

bool CCoVellumcaster::Filter_QueryAccept(int nPinIndex, const AM_MEDIA_TYPE* pmt) {
    if (!pmt || pmt->majortype != MEDIATYPE_Video || !MT_IsComplete(pmt)) return false;
    PictureFormat pf;
    if (MT_GetPictureFormat(pmt, &pf) < 0 || !Allows(pf.dwFormat)) return false;
    if (!CPictureFormats::GetFormatInfo(&pf, nullptr, nullptr, nullptr)) return false;
    if (pf.dwFormat == format_code::RGB565 || pf.dwFormat == format_code::RGB555) return false;
    return !IsStopped() || Filter_QueryAcceptMT(nPinIndex, pmt);
}

HRESULT CCoVellumcaster::Filter_CompleteConnect(int nPinIndex) {
    switch (nPinIndex) {
    case 0: return CompleteInput();
    case 1: {
        const HRESULT hr = MakeReconnect(nullptr, m_spIn.Get());
        m_nMemoryType = MemoryType::Unknown;
        return hr;
    }
    default: return E_ABORT;
    }
}

HRESULT CCoVellumcaster::CompleteInput() {
    m_Painter.SetAvgTimePerFrame(m_spIn->AvgTimePerFrame());
    {
        CAutoLock lock(m_Engine.ItemLock());
        FollowStream(m_spIn->Picture().dwFormat);
    }
    // The output's connection may have the input connected once more, and the type with it.
    CMediaTypeHolder type;
    HRESULT hr = m_spIn->CopyMediaType(type.Put());
    if (hr == S_OK)
        hr = m_spOut->IsConnected() ? MakeReconnect(type.Get(), m_spOut.Get()) : m_spOut->SetMediaType(type.Get());
    if (hr != S_OK) m_Painter.SetInputFormat(0); // the connection is broken
    return hr;
}

void CCoVellumcaster::Filter_BreakConnect(int nPinIndex) {
    CTransInPlaceHooks::Filter_BreakConnect(nPinIndex);
    m_Painter.SetInputFormat(m_spIn->Picture().dwFormat);
}

void CCoVellumcaster::Filter_OutputChanged(const PictureFormat& pf) { m_Painter.SetOutputFormat(pf.dwFormat); }

void CCoVellumcaster::FollowStream(std::uint32_t dwInput) {
    m_Painter.SetInputFormat(dwInput);
    m_Engine.PrepareItems();
}

std::optional<HRESULT> CCoVellumcaster::ReconnectInFormat(std::uint32_t dwFormat) {
    const CComPtr<IPin> spUpstream = m_spIn->Peer();
    if (!spUpstream) return {};
    CMediaTypeList types;
    static_cast<void>(types.LoadFromPin(spUpstream.Get()));
    const CComPtr<IPin> spDownstream = m_spOut->Peer();
    const auto suits = [&](const AM_MEDIA_TYPE& mt) {
        return mt.subtype.Data1 == dwFormat && SEH_IPin::QueryAccept(spUpstream.Get(), &mt) == S_OK &&
               (!spDownstream || SEH_IPin::QueryAccept(spDownstream.Get(), &mt) == S_OK);
    };
    const auto found = std::find_if(types.Types().begin(), types.Types().end(), suits);
    if (found == types.Types().end()) return VFW_E_TYPE_NOT_ACCEPTED;
    m_fccDesired = dwFormat;
    return ReconnectPin(m_spIn.Get(), &*found);
}

HRESULT CCoVellumcaster::Reconnect() {
    CMediaTypeHolder type;
    const HRESULT hr = m_spIn->CopyMediaType(type.Put());
    return FAILED(hr) ? hr : ReconnectPin(m_spIn.Get(), type.Get());
}

} // namespace vellumcaster
