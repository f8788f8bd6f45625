#include "graph/media_sample.h"

#include "graph/format_text.h"
#include "graph/memory_allocator.h"
#include "platform/kernel/trace.h"

#include <vellumcaster/results.h>

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace vellumcaster {

namespace {

using Props = AM_SAMPLE2_PROPERTIES;

/// The sample's own flag, which no caller sees or sets.
constexpr DWORD flagMediaTimeValid = 0x20;

/// The flags that a caller may not set.
constexpr DWORD refusedFlags = 0xFFFFFE20;

/// Bytes of a record that reaches up to and including a field.
constexpr DWORD upToTypeSpecificFlags = offsetof(Props, dwTypeSpecificFlags) + sizeof(Props::dwTypeSpecificFlags);
constexpr DWORD upToSampleFlags = offsetof(Props, dwSampleFlags) + sizeof(Props::dwSampleFlags);
constexpr DWORD upToActual = offsetof(Props, lActual) + sizeof(Props::lActual);
constexpr DWORD upToStart = offsetof(Props, tStart) + sizeof(Props::tStart);
constexpr DWORD upToStop = offsetof(Props, tStop) + sizeof(Props::tStop);
constexpr DWORD upToStreamId = offsetof(Props, dwStreamId) + sizeof(Props::dwStreamId);
constexpr DWORD upToMediaType = offsetof(Props, pMediaType) + sizeof(void*);
constexpr DWORD upToBuffer = offsetof(Props, pbBuffer) + sizeof(Props::pbBuffer);
constexpr DWORD upToBufferSize = offsetof(Props, cbBuffer) + sizeof(Props::cbBuffer);
constexpr DWORD cbWhole = sizeof(Props);

} // namespace

HRESULT CMediaSample::QueryInterface(const GUID& iid, void** ppv) {
    if (!ppv) return E_POINTER;
    const bool bOurs = iid == IUnknown::IID || iid == IMediaSample::IID || iid == IMediaSample2::IID;
    *ppv = bOurs ? static_cast<IMediaSample2*>(this) : nullptr;
    if (!bOurs) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

ULONG CMediaSample::AddRef() { return m_cReferences.fetch_add(1, std::memory_order_relaxed) + 1; }

ULONG CMediaSample::Release() {
    const ULONG cLeft = m_cReferences.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (cLeft == 0) m_Allocator.EndSample(this);
    return cLeft;
}

HRESULT CMediaSample::GetPointer(BYTE** ppBuffer) {
    if (!ppBuffer) return E_POINTER;
    *ppBuffer = m_pBuffer;
    return m_pBuffer ? S_OK : E_FAIL;
}

HRESULT CMediaSample::GetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) {
    if (!pTimeStart || !pTimeEnd) return E_INVALIDARG;
    CAutoLock lock(m_cs);
    if (m_dwFlags & AM_SAMPLE_STOPVALID) {
        *pTimeStart = m_tStart;
        *pTimeEnd = m_tStop;
        return S_OK;
    }
    if (!(m_dwFlags & AM_SAMPLE_TIMEVALID)) return VFW_E_SAMPLE_TIME_NOT_SET;
    *pTimeStart = m_tStart;
    *pTimeEnd = NextUnit(m_tStart);
    return VFW_S_NO_STOP_TIME;
}

HRESULT CMediaSample::SetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) {
    CAutoLock lock(m_cs);
    if (pTimeStart && pTimeEnd && *pTimeEnd < *pTimeStart) return E_INVALIDARG;
    m_dwFlags &= ~DWORD{AM_SAMPLE_TIMEVALID | AM_SAMPLE_STOPVALID};
    m_tStart = pTimeStart ? *pTimeStart : 0;
    m_tStop = pTimeStart && pTimeEnd ? *pTimeEnd : 0;
    if (pTimeStart) m_dwFlags |= AM_SAMPLE_TIMEVALID;
    if (pTimeStart && pTimeEnd) m_dwFlags |= AM_SAMPLE_STOPVALID;
    return S_OK;
}

LONG CMediaSample::GetActualDataLength() {
    CAutoLock lock(m_cs);
    return m_cbActual;
}

HRESULT CMediaSample::SetActualDataLength(LONG cb) {
    CAutoLock lock(m_cs);
    if (cb > m_cb) return VFW_E_BUFFER_OVERFLOW;
    m_cbActual = cb;
    return S_OK;
}

HRESULT CMediaSample::GetMediaType(AM_MEDIA_TYPE** ppMediaType) {
    if (!ppMediaType) return E_POINTER;
    CAutoLock lock(m_cs);
    *ppMediaType = nullptr;
    if (!(m_dwFlags & AM_SAMPLE_TYPECHANGED) || !m_spMediaType) return S_FALSE;
    *ppMediaType = MT_Clone(m_spMediaType.get());
    return *ppMediaType ? S_OK : E_OUTOFMEMORY;
}

HRESULT CMediaSample::SetMediaType(AM_MEDIA_TYPE* pMediaType) {
    CAutoLock lock(m_cs);
    CMediaTypePtr spNew(pMediaType ? MT_Clone(pMediaType) : nullptr); // which may be the one that is held
    m_spMediaType = std::move(spNew);
    m_dwFlags &= ~DWORD{AM_SAMPLE_TYPECHANGED};
    if (!pMediaType) return S_OK;
    if (!m_spMediaType) return E_OUTOFMEMORY;
    m_dwFlags |= AM_SAMPLE_TYPECHANGED;
    return S_OK;
}

HRESULT CMediaSample::GetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) {
    if (!pTimeStart || !pTimeEnd) return E_INVALIDARG;
    CAutoLock lock(m_cs);
    *pTimeStart = m_llMediaStart;
    *pTimeEnd = m_llMediaStop;
    return m_dwFlags & flagMediaTimeValid ? S_OK : VFW_E_MEDIA_TIME_NOT_SET;
}

HRESULT CMediaSample::SetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) {
    if (pTimeStart && (!pTimeEnd || *pTimeEnd < *pTimeStart)) return E_INVALIDARG;
    if (pTimeStart && *pTimeEnd == *pTimeStart)
        VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Warning,
                          "WARNING. %s: SetMediaTime(): *pTimeEnd == *pTimeStart = %s\n", DisplayName(),
                          FormatGrouped(*pTimeStart));
    CAutoLock lock(m_cs);
    m_dwFlags &= ~flagMediaTimeValid;
    if (pTimeStart) m_dwFlags |= flagMediaTimeValid;
    m_llMediaStart = pTimeStart ? *pTimeStart : 0;
    m_llMediaStop = pTimeStart ? *pTimeEnd : 0;
    return S_OK;
}

HRESULT CMediaSample::GetProperties(DWORD cbProperties, BYTE* pbProperties) {
    if (cbProperties == 0) return S_OK;
    if (!pbProperties) return E_POINTER;
    CAutoLock lock(m_cs);
    Props props;
    props.cbData = std::min(cbProperties, cbWhole);
    props.dwTypeSpecificFlags = m_dwTypeSpecificFlags;
    props.dwSampleFlags = m_dwFlags & ~flagMediaTimeValid;
    props.lActual = m_cbActual;
    props.tStart = m_tStart;
    props.tStop = m_tStop;
    props.dwStreamId = m_dwStreamId;
    props.pMediaType = m_dwFlags & AM_SAMPLE_TYPECHANGED ? m_spMediaType.get() : nullptr;
    props.pbBuffer = m_pBuffer;
    props.cbBuffer = m_cb;
    std::memcpy(pbProperties, &props, props.cbData);
    return S_OK;
}

HRESULT CMediaSample::SetProperties(DWORD cbProperties, const BYTE* pbProperties) {
    if (cbProperties < upToTypeSpecificFlags) return S_OK;
    if (!pbProperties) return E_POINTER;
    Props props;
    std::memcpy(&props, pbProperties, std::min(cbProperties, cbWhole));
    const DWORD cb = std::min(cbProperties, props.cbData);
    CAutoLock lock(m_cs);
    const HRESULT hr = Check(cb, props);
    if (FAILED(hr)) return hr;
    CMediaTypePtr spNewType;
    if (cb >= upToMediaType && props.dwSampleFlags & AM_SAMPLE_TYPECHANGED) {
        if (!props.pMediaType) return E_POINTER;
        spNewType.reset(MT_Clone(props.pMediaType));
        if (!spNewType) return E_OUTOFMEMORY;
    }
    if (cb >= upToTypeSpecificFlags) m_dwTypeSpecificFlags = props.dwTypeSpecificFlags;
    if (cb >= upToSampleFlags) m_dwFlags = props.dwSampleFlags | (m_dwFlags & flagMediaTimeValid);
    if (cb >= upToActual) m_cbActual = props.lActual;
    if (cb >= upToStart) m_tStart = props.tStart;
    if (cb >= upToStop) m_tStop = props.tStop;
    if (cb >= upToStreamId) m_dwStreamId = props.dwStreamId;
    if (spNewType) m_spMediaType = std::move(spNewType);
    return S_OK;
}

HRESULT CMediaSample::Check(DWORD cb, const Props& props) const {
    const bool bHasFlags = cb >= upToSampleFlags;
    const bool bStartAlone = bHasFlags && cb < upToStop && props.dwSampleFlags & AM_SAMPLE_TIMEVALID;
    const bool bOtherBuffer = props.pbBuffer && props.pbBuffer != m_pBuffer;
    const bool bOtherSize = props.cbBuffer != 0 && props.cbBuffer != m_cb;
    if (cb > cbWhole) return E_INVALIDARG;
    if (bHasFlags && props.dwSampleFlags & refusedFlags) return E_INVALIDARG;
    if (bStartAlone && !(m_dwFlags & AM_SAMPLE_STOPVALID)) return E_INVALIDARG;
    if (cb >= upToBuffer && bOtherBuffer) return E_INVALIDARG;
    if (cb >= upToBufferSize && (bOtherSize || props.cbBuffer < props.lActual)) return E_INVALIDARG;
    return S_OK;
}

HRESULT CMediaSample::HasFlag(DWORD flag) {
    CAutoLock lock(m_cs);
    return m_dwFlags & flag ? S_OK : S_FALSE;
}

HRESULT CMediaSample::SetFlag(DWORD flag, BOOL b) {
    CAutoLock lock(m_cs);
    m_dwFlags = b ? m_dwFlags | flag : m_dwFlags & ~flag;
    return S_OK;
}

} // namespace vellumcaster
