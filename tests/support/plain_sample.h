#pragma once

#include "platform/com/unknown_impl.h"
#include "platform/media/media_sample.h"

namespace vellumcaster::testing_support {

/// A sample over memory that a test owns, which says nothing of itself but whether it is a discontinuity.
class CPlainSample final : public CUnknownImpl<IMediaSample> {
public:
    CPlainSample(BYTE* pData, LONG cb) : m_pData(pData), m_cb(cb), m_cbActual(cb) {}

    HRESULT GetPointer(BYTE** ppBuffer) override {
        *ppBuffer = m_pData;
        return S_OK;
    }
    LONG GetSize() override { return m_cb; }
    HRESULT GetTime(REFERENCE_TIME*, REFERENCE_TIME*) override { return VFW_E_SAMPLE_TIME_NOT_SET; }
    HRESULT SetTime(REFERENCE_TIME*, REFERENCE_TIME*) override { return S_OK; }
    HRESULT IsSyncPoint() override { return S_OK; }
    HRESULT SetSyncPoint(BOOL) override { return S_OK; }
    HRESULT IsPreroll() override { return S_FALSE; }
    HRESULT SetPreroll(BOOL) override { return S_OK; }
    LONG GetActualDataLength() override { return m_cbActual; }
    HRESULT SetActualDataLength(LONG cb) override {
        if (cb > m_cb) return VFW_E_BUFFER_OVERFLOW;
        m_cbActual = cb;
        return S_OK;
    }
    HRESULT GetMediaType(AM_MEDIA_TYPE** ppMediaType) override {
        *ppMediaType = nullptr;
        return S_FALSE;
    }
    HRESULT SetMediaType(AM_MEDIA_TYPE*) override { return E_NOTIMPL; }
    HRESULT IsDiscontinuity() override { return m_bDiscontinuity ? S_OK : S_FALSE; }
    HRESULT SetDiscontinuity(BOOL bDiscontinuity) override {
        m_bDiscontinuity = bDiscontinuity != 0;
        return S_OK;
    }
    HRESULT GetMediaTime(LONGLONG*, LONGLONG*) override { return VFW_E_MEDIA_TIME_NOT_SET; }
    HRESULT SetMediaTime(LONGLONG*, LONGLONG*) override { return S_OK; }

private:
    BYTE* m_pData;
    LONG m_cb;
    LONG m_cbActual;
    bool m_bDiscontinuity = false;
};

} // namespace vellumcaster::testing_support
