#include "graph/plain/plain_sample.h"

#include <vellumcaster/results.h>

namespace vellumcaster {

HRESULT CPlainSample::GetPointer(BYTE** ppBuffer) {
    if (!ppBuffer) return E_POINTER;
    *ppBuffer = m_pData;
    return S_OK;
}

HRESULT CPlainSample::GetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) {
    if (!pTimeStart || !pTimeEnd) return E_POINTER;
    if (!m_tStart) return VFW_E_SAMPLE_TIME_NOT_SET;
    *pTimeStart = *m_tStart;
    *pTimeEnd = m_tStop.value_or(*m_tStart + 1);
    return m_tStop ? S_OK : VFW_S_NO_STOP_TIME;
}

HRESULT CPlainSample::SetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) {
    if (!pTimeStart && pTimeEnd) return E_INVALIDARG;
    m_tStart = pTimeStart ? std::optional(*pTimeStart) : std::nullopt;
    m_tStop = pTimeEnd ? std::optional(*pTimeEnd) : std::nullopt;
    return S_OK;
}

HRESULT CPlainSample::SetActualDataLength(LONG cb) {
    if (cb < 0 || cb > m_cb) return VFW_E_BUFFER_OVERFLOW;
    m_cbActual = cb;
    return S_OK;
}

HRESULT CPlainSample::GetMediaType(AM_MEDIA_TYPE** ppMediaType) {
    if (!ppMediaType) return E_POINTER;
    *ppMediaType = nullptr;
    return S_FALSE;
}

HRESULT CPlainSample::SetMediaType(AM_MEDIA_TYPE*) { return E_NOTIMPL; }

HRESULT CPlainSample::GetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) {
    if (!pTimeStart || !pTimeEnd) return E_POINTER;
    if (!m_llMediaStart) return VFW_E_MEDIA_TIME_NOT_SET;
    *pTimeStart = *m_llMediaStart;
    *pTimeEnd = *m_llMediaEnd;
    return S_OK;
}

HRESULT CPlainSample::SetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) {
    if (!pTimeStart != !pTimeEnd) return E_INVALIDARG;
    m_llMediaStart = pTimeStart ? std::optional(*pTimeStart) : std::nullopt;
    m_llMediaEnd = pTimeEnd ? std::optional(*pTimeEnd) : std::nullopt;
    return S_OK;
}

HRESULT CPlainSample::Answer(bool b) { return b ? S_OK : S_FALSE; }

HRESULT CPlainSample::Store(bool& bField, BOOL b) {
    bField = b != 0;
    return S_OK;
}

} // namespace vellumcaster
