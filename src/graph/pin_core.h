#pragma once

#include "graph/media_type.h"
#include "graph/media_type_match.h"
#include "graph/picture_geometry.h"
#include "graph/seh_calls.h"
#include "platform/com/shared_com_ptr.h"
#include "platform/kernel/critical_section.h"
#include "platform/kernel/trace.h"
#include "platform/media/graph_results.h"
#include "platform/media/media_sample.h"
#include "platform/media/pin.h"

#include <vellumcaster/counted_ptr.h>

#include <array>
#include <cstdio>
#include <string_view>
#include <utility>

namespace vellumcaster {

/// What both pins of a filter keep. The pin lock is held while a connection changes; what the stream reads, and changes by
/// types that come with samples, has small locks of its own, so that it never waits for a neighbour.
/// \tparam Filter  the concrete filter, whose hooks the pin calls.
template <class Filter>
class CPinCore {
public:
    /// \param name  cut to 127 bytes; also the pin's id. Empty: "In" or "Out" and the index.
    CPinCore(int nIndex, PIN_DIRECTION direction, std::string_view name) : m_nIndex(nIndex), m_Direction(direction) {
        if (name.empty())
            static_cast<void>(std::snprintf(m_szName.data(), m_szName.size(),
                                            direction == PINDIR_INPUT ? "In %u" : "Out %u",
                                            static_cast<unsigned>(nIndex)));
        else
            name.copy(m_szName.data(), m_szName.size() - 1);
    }
    CPinCore(const CPinCore&) = delete;
    CPinCore& operator=(const CPinCore&) = delete;

    [[nodiscard]] bool IsConnected() const { return bool(m_spConnected); }
    [[nodiscard]] CComPtr<IPin> Peer() const { return m_spConnected.Get(); }

    /// The geometry of the connection's type; all zero without one.
    [[nodiscard]] PictureFormat Picture() const {
        CAutoLock lock(m_csStream);
        return m_pf;
    }
    /// Time from frame to frame in units of 100 ns; 0 where the type does not say.
    [[nodiscard]] REFERENCE_TIME AvgTimePerFrame() const {
        CAutoLock lock(m_csStream);
        return m_AvgTimePerFrame;
    }
    /// A copy of the type. \param pmt  owns nothing yet. \return as `MT_Copy`.
    [[nodiscard]] HRESULT CopyMediaType(AM_MEDIA_TYPE* pmt) const {
        CAutoLock lock(m_csStream);
        return MT_Copy(pmt, m_mt.Get());
    }

    /// The pin's own test of a type.
    [[nodiscard]] bool QueryAcceptMT(const AM_MEDIA_TYPE* pmt) {
        const CComPtr<Filter> spFilter = m_apFilter.Get();
        if (spFilter) return spFilter->Filter_QueryAccept(m_nIndex, pmt);
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### %s: QueryAcceptMT(): filter not joined to graph\n", DisplayName());
        return false;
    }

    /// A copy of the pin's type; null for `ppmt` only asks for one.
    /// \return S_OK; S_FALSE: it has none; E_FAIL.
    [[nodiscard]] HRESULT CloneMediaType(AM_MEDIA_TYPE** ppmt) {
        CAutoLock lock(m_csStream);
        if (!MT_IsSet(m_mt.Get())) return S_FALSE;
        if (!ppmt) return S_OK;
        *ppmt = MT_Clone(m_mt.Get());
        return *ppmt ? S_OK : E_FAIL;
    }

    /// Takes a type and its geometry; null for none.
    /// \return S_OK; as `MT_Assign`, and nothing has changed.
    [[nodiscard]] HRESULT SetMediaType(const AM_MEDIA_TYPE* pmt) {
        CMediaTypeHolder type;
        const HRESULT hr = type.Assign(pmt);
        if (FAILED(hr)) return hr;
        PictureFormat pf;
        if (!pmt || MT_GetPictureFormat(pmt, &pf) < 0) pf = {};
        const bool bSet = MT_IsSet(type.Get());
        {
            CAutoLock lock(m_csStream);
            m_mt.Swap(type);
            m_pf = pf;
            m_AvgTimePerFrame = MT_AvgTimePerFrame(m_mt.Get());
        }
        OnPictureChanged(pf, bSet);
        return S_OK;
    }

    /// Takes in a type that travels with a sample.
    /// \return S_OK: there was one, and it is the pin's now; S_FALSE: there was none; E_POINTER for no sample;
    ///         VFW_E_INVALIDMEDIATYPE for one that is not accepted; what the sample answers.
    [[nodiscard]] HRESULT SetMediaTypeFromSample(IMediaSample* pSample) {
        if (!pSample) return E_POINTER;
        AM_MEDIA_TYPE* pmt = nullptr;
        const HRESULT hr = SEH_IMediaSample::GetMediaType(pSample, &pmt);
        if (hr != S_OK) return hr;
        const CMediaTypePtr spmt(pmt);
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                          "%s:  SetMediaTypeFromSample(): new mediatype is received\n", DisplayName());
        if (QueryAcceptMT(pmt)) return SetMediaType(pmt);
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### %s: SetMediaTypeFromSample(): new mediatype is not accepted\n", DisplayName());
        return VFW_E_INVALIDMEDIATYPE;
    }

    [[nodiscard]] virtual const char* DisplayName() const = 0;

    const int m_nIndex; ///< 0 input, 1 output
    const PIN_DIRECTION m_Direction;
    std::array<char, 128> m_szName{};  ///< UTF-8, ends in a zero
    CSharedComPtr<IPin> m_spConnected; ///< the far side; it changes while the filter is stopped
    CSharedComPtr<Filter> m_apFilter;  ///< from the filter's joining of a graph to its leaving
    mutable CCriticalSection m_csPin;

protected:
    ~CPinCore() = default;

    /// The geometry may have become another one. \param bSet  there is a type.
    virtual void OnPictureChanged(const PictureFormat& /*pf*/, bool /*bSet*/) {}

private:
    mutable CCriticalSection m_csStream; ///< guards what follows
    CMediaTypeHolder m_mt;
    PictureFormat m_pf;
    REFERENCE_TIME m_AvgTimePerFrame = 0;
};

} // namespace vellumcaster
