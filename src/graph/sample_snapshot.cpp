#include "graph/sample_snapshot.h"

#include "graph/format_text.h"
#include "graph/sample_copier.h"
#include "platform/kernel/trace.h"
#include "platform/media/graph_results.h"
#include "platform/media/media_sample2.h"

#include <vellumcaster/counted_ptr.h>

#include <cstddef>

namespace vellumcaster {

namespace {

constexpr DWORD cbUpToTypeSpecificFlags =
    offsetof(AM_SAMPLE2_PROPERTIES, dwTypeSpecificFlags) + sizeof(AM_SAMPLE2_PROPERTIES::dwTypeSpecificFlags);

constexpr WORD streamTimes = sampleStart | sampleStop;

CComPtr<IMediaSample2> AskForSecond(IMediaSample& sample) {
    CComPtr<IMediaSample2> sp;
    if (FAILED(sample.QueryInterface(IMediaSample2::IID, reinterpret_cast<void**>(sp.Put())))) sp.Reset();
    return sp;
}

} // namespace

HRESULT CSampleT::Load(IMediaSample* pSample, WORD wanted) {
    if (!pSample || wanted == 0) return E_INVALIDARG;
    *this = CSampleT();
    for (const Reader reader : {&CSampleT::LoadTimes, &CSampleT::LoadMediaTimes, &CSampleT::LoadFlags,
                                &CSampleT::LoadTypeSpecificFlags, &CSampleT::LoadMediaType, &CSampleT::LoadPayload}) {
        const HRESULT hr = (this->*reader)(*pSample, wanted);
        if (FAILED(hr)) return hr;
    }
    if (m_wMask == 0) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CSampleT::Load(): Can't load wanted (0x%x) properties\n", wanted);
        return E_FAIL;
    }
    if (wanted == sampleEverything || wanted == m_wMask) return S_OK;
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                      "CSampleT::Load(): Not all wanted properties was loaded: wanted 0x%X, loaded 0x%X\n", wanted,
                      m_wMask);
    return S_FALSE;
}

HRESULT CSampleT::LoadTimes(IMediaSample& sample, WORD wanted) {
    if (!(wanted & streamTimes)) return S_OK;
    const HRESULT hr = sample.GetTime(&m_tS, &m_tE);
    if (hr == VFW_S_NO_STOP_TIME) {
        m_wMask |= wanted & sampleStart;
        return S_OK;
    }
    if (hr != S_OK) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning, "WARNING. CSampleT::Load(): GetTime()=0x%X\n",
                          hr);
        return S_OK;
    }
    m_wMask |= wanted & streamTimes;
    if (m_tE == m_tS)
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                          "WARNING. CSampleT::Load(): GetTime(): m_tE==m_tS=%s\n", FormatGrouped(m_tS));
    if (m_tS > m_tE)
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CSampleT::Load(): GetTime(): m_tS > m_tE,  m_tS=%s  m_tE=%s\n",
                          FormatGrouped(m_tS), FormatGrouped(m_tE));
    if (m_tE <= m_tS) m_tE = m_tS + 1;
    return S_OK;
}

HRESULT CSampleT::LoadMediaTimes(IMediaSample& sample, WORD wanted) {
    if (!(wanted & sampleMediaTimes)) return S_OK;
    const HRESULT hr = sample.GetMediaTime(&m_llMS, &m_llME);
    if (hr == S_OK)
        m_wMask |= sampleMediaTimes;
    else
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                          "WARNING. CSampleT::Load(): GetMediaTime()=0x%X\n", hr);
    return S_OK;
}

HRESULT CSampleT::LoadFlags(IMediaSample& sample, WORD wanted) {
    struct Flag {
        WORD property;
        HRESULT (IMediaSample::*ask)();
        BOOL CSampleT::*field;
    };
    constexpr Flag flags[] = {
        {sampleSyncPoint, &IMediaSample::IsSyncPoint, &CSampleT::m_bSyncPoint},
        {samplePreroll, &IMediaSample::IsPreroll, &CSampleT::m_bPreroll},
        {sampleDiscontinuity, &IMediaSample::IsDiscontinuity, &CSampleT::m_bDiscontinuity},
    };
    for (const Flag& flag : flags) {
        if (!(wanted & flag.property)) continue;
        const HRESULT hr = (sample.*flag.ask)();
        if (hr != S_OK && hr != S_FALSE) return FailureOf(hr, E_FAIL);
        this->*flag.field = hr == S_OK;
        m_wMask |= flag.property;
    }
    return S_OK;
}

HRESULT CSampleT::LoadTypeSpecificFlags(IMediaSample& sample, WORD wanted) {
    if (!(wanted & sampleTypeSpecificFlags)) return S_OK;
    const CComPtr<IMediaSample2> spSecond = AskForSecond(sample);
    if (!spSecond) return S_OK;
    AM_SAMPLE2_PROPERTIES props;
    props.cbData = cbUpToTypeSpecificFlags;
    const HRESULT hr = spSecond->GetProperties(props.cbData, reinterpret_cast<BYTE*>(&props));
    if (hr != S_OK || props.cbData < cbUpToTypeSpecificFlags) return FailureOf(hr, E_FAIL);
    m_dwTypeSpecificFlags = props.dwTypeSpecificFlags;
    m_wMask |= sampleTypeSpecificFlags;
    return S_OK;
}

HRESULT CSampleT::LoadMediaType(IMediaSample& sample, WORD wanted) {
    if (!(wanted & sampleMediaType)) return S_OK;
    AM_MEDIA_TYPE* pmt = nullptr;
    if (sample.GetMediaType(&pmt) != S_OK) return S_OK;
    if (!pmt) return E_FAIL;
    m_spMediaType.reset(pmt);
    m_wMask |= sampleMediaType;
    return S_OK;
}

HRESULT CSampleT::LoadPayload(IMediaSample& sample, WORD wanted) {
    if (!(wanted & (samplePayload | sampleActualLength))) return S_OK;
    m_lActual = sample.GetActualDataLength();
    LONG cb = 0;
    if (wanted & samplePayload) {
        if (sample.GetPointer(&m_pBuffer) != S_OK) m_pBuffer = nullptr;
        if (m_pBuffer) cb = sample.GetSize();
        if (cb > 0)
            m_wMask |= samplePayload;
        else
            m_pBuffer = nullptr;
    }
    if (!(wanted & sampleActualLength)) return S_OK;
    if (Holds(samplePayload) && m_lActual > cb) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CSampleT::Load(): GetActualDataLength()=%i, cbBuf=%i\n", m_lActual, cb);
        return E_FAIL;
    }
    m_wMask |= sampleActualLength;
    return S_OK;
}

HRESULT CSampleT::Save(IMediaSample* pSample, WORD wanted) const {
    if (!pSample) return E_INVALIDARG;
    const auto w = static_cast<WORD>(wanted & m_wMask);
    if (w == 0) {
        if (m_wMask == 0)
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                              "###Err### CSampleT::Save(): sample not loaded yet\n");
        else
            VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::MainPath,
                              "CSampleT::Save(): Can't save wanted properties: wanted 0x%X, exist 0x%X\n", wanted,
                              m_wMask);
        return m_wMask == 0 ? E_FAIL : S_FALSE;
    }
    for (const Writer writer : {&CSampleT::SaveTimes, &CSampleT::SaveMediaTimes, &CSampleT::SaveFlags,
                                &CSampleT::SaveTypeSpecificFlags, &CSampleT::SaveMediaType, &CSampleT::SavePayload}) {
        const HRESULT hr = (this->*writer)(*pSample, w);
        if (hr != S_OK) return FailureOf(hr, E_FAIL);
    }
    return S_OK;
}

HRESULT CSampleT::SaveTimes(IMediaSample& sample, WORD w) const {
    if (!(w & sampleStart)) return S_OK;
    REFERENCE_TIME start = m_tS;
    REFERENCE_TIME stop = m_tE;
    return sample.SetTime(&start, w & sampleStop ? &stop : nullptr);
}

HRESULT CSampleT::SaveMediaTimes(IMediaSample& sample, WORD w) const {
    LONGLONG start = m_llMS;
    LONGLONG end = m_llME;
    return w & sampleMediaTimes ? sample.SetMediaTime(&start, &end) : S_OK;
}

HRESULT CSampleT::SaveFlags(IMediaSample& sample, WORD w) const {
    HRESULT hr = w & sampleSyncPoint ? sample.SetSyncPoint(m_bSyncPoint) : S_OK;
    if (hr == S_OK && w & samplePreroll) hr = sample.SetPreroll(m_bPreroll);
    if (hr == S_OK && w & sampleDiscontinuity) hr = sample.SetDiscontinuity(m_bDiscontinuity);
    return hr;
}

HRESULT CSampleT::SaveTypeSpecificFlags(IMediaSample& sample, WORD w) const {
    if (!(w & sampleTypeSpecificFlags)) return S_OK;
    const CComPtr<IMediaSample2> spSecond = AskForSecond(sample);
    if (!spSecond) {
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error,
                          "###Err### CSampleT::Save(): QI( IMediaSample2 ) FAILED\n");
        return E_NOINTERFACE;
    }
    AM_SAMPLE2_PROPERTIES props;
    props.cbData = cbUpToTypeSpecificFlags;
    props.dwTypeSpecificFlags = m_dwTypeSpecificFlags;
    return spSecond->SetProperties(props.cbData, reinterpret_cast<const BYTE*>(&props));
}

HRESULT CSampleT::SaveMediaType(IMediaSample& sample, WORD w) const {
    return w & sampleMediaType ? sample.SetMediaType(m_spMediaType.get()) : S_OK;
}

HRESULT CSampleT::SavePayload(IMediaSample& sample, WORD w) const {
    if (!(w & (samplePayload | sampleActualLength))) return S_OK;
    return CSampleCopier::CopyBuffer(&sample, m_pBuffer, m_lActual, w);
}

} // namespace vellumcaster
