#include "graph/sample_snapshot.h"

#include "graph/format_text.h"
#include "graph/sample_copier.h"
#include "graph/seh_calls.h"
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
    static_cast<void>(SEH_IUnknown::Ask(&sample, sp));
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
    const HRESULT hr = SEH_IMediaSample::GetTime(&sample, &m_tS, &m_tE);
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
    if (m_tE <= m_tS) m_tE = NextUnit(m_tS);
    return S_OK;
}

HRESULT CSampleT::LoadMediaTimes(IMediaSample& sample, WORD wanted) {
    if (!(wanted & sampleMediaTimes)) return S_OK;
    const HRESULT hr = SEH_IMediaSample::GetMediaTime(&sample, &m_llMS, &m_llME);
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
        const CGuardedMethod<IMediaSample>& ask;
        BOOL CSampleT::*field;
    };
    constexpr Flag flags[] = {
        {sampleSyncPoint, SEH_IMediaSample::IsSyncPoint, &CSampleT::m_bSyncPoint},
        {samplePreroll, SEH_IMediaSample::IsPreroll, &CSampleT::m_bPreroll},
        {sampleDiscontinuity, SEH_IMediaSample::IsDiscontinuity, &CSampleT::m_bDiscontinuity},
    };
    for (const Flag& flag : flags) {
        if (!(wanted & flag.property)) continue;
        const HRESULT hr = flag.ask(&sample);
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
    const HRESULT hr = SEH_IMediaSample2::GetProperties(spSecond.Get(), props.cbData, reinterpret_cast<BYTE*>(&props));
    if (hr != S_OK || props.cbData < cbUpToTypeSpecificFlags) return FailureOf(hr, E_FAIL);
    m_dwTypeSpecificFlags = props.dwTypeSpecificFlags;
    m_wMask |= sampleTypeSpecificFlags;
    return S_OK;
}

HRESULT CSampleT::LoadMediaType(IMediaSample& sample, WORD wanted) {
    if (!(wanted & sampleMediaType)) return S_OK;
    AM_MEDIA_TYPE* pmt = nullptr;
    if (SEH_IMediaSample::GetMediaType(&sample, &pmt) != S_OK) return S_OK;
    if (!pmt) return E_FAIL;
    m_spMediaType.reset(pmt);
    m_wMask |= sampleMediaType;
    return S_OK;
}

HRESULT CSampleT::LoadPayload(IMediaSample& sample, WORD wanted) {
    if (!(wanted & (samplePayload | sampleActualLength))) return S_OK;
    m_lActual = SEH_IMediaSample::GetActualDataLength(&sample);
    LONG cb = 0;
    if (wanted & samplePayload) {
        if (SEH_IMediaSample::GetPointer(&sample, &m_pBuffer) != S_OK) m_pBuffer = nullptr;
        if (m_pBuffer) cb = SEH_IMediaSample::GetSize(&sample);
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
    return SEH_IMediaSample::SetTime(&sample, &start, w & sampleStop ? &stop : nullptr);
}

HRESULT CSampleT::SaveMediaTimes(IMediaSample& sample, WORD w) const {
    LONGLONG start = m_llMS;
    LONGLONG end = m_llME;
    return w & sampleMediaTimes ? SEH_IMediaSample::SetMediaTime(&sample, &start, &end) : S_OK;
}

HRESULT CSampleT::SaveFlags(IMediaSample& sample, WORD w) const {
    HRESULT hr = w & sampleSyncPoint ? SEH_IMediaSample::SetSyncPoint(&sample, m_bSyncPoint) : S_OK;
    if (hr == S_OK && w & samplePreroll) hr = SEH_IMediaSample::SetPreroll(&sample, m_bPreroll);
    if (hr == S_OK && w & sampleDiscontinuity) hr = SEH_IMediaSample::SetDiscontinuity(&sample, m_bDiscontinuity);
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
    return SEH_IMediaSample2::SetProperties(spSecond.Get(), props.cbData, reinterpret_cast<const BYTE*>(&props));
}

HRESULT CSampleT::SaveMediaType(IMediaSample& sample, WORD w) const {
    return w & sampleMediaType ? SEH_IMediaSample::SetMediaType(&sample, m_spMediaType.get()) : S_OK;
}

HRESULT CSampleT::SavePayload(IMediaSample& sample, WORD w) const {
    if (!(w & (samplePayload | sampleActualLength))) return S_OK;
    return CSampleCopier::CopyBuffer(&sample, m_pBuffer, m_lActual, w);
}

} // namespace vellumcaster
