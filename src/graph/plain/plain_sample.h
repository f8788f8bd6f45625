#pragma once

#include "platform/com/unknown_impl.h"
#include "platform/media/media_sample.h"

#include <cstddef>
#include <optional>

namespace vellumcaster {

/// A sample over memory that somebody else owns, without an allocator and without a media type of its own. The
/// memory must outlive every reference.
///
/// One thread at a time, as a sample on its way through a graph has it.
class CPlainSample final : public CUnknownImpl<IMediaSample> {
public:
    /// \param cb  bytes of the buffer; all of them hold data at first.
    CPlainSample(BYTE* pData, LONG cb) : m_pData(pData), m_cb(cb), m_cbActual(cb) {}

    HRESULT GetPointer(BYTE** ppBuffer) override;
    LONG GetSize() override { return m_cb; }
    HRESULT GetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) override;
    HRESULT SetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) override;
    HRESULT IsSyncPoint() override { return Answer(m_bSyncPoint); }
    HRESULT SetSyncPoint(BOOL bIsSyncPoint) override { return Store(m_bSyncPoint, bIsSyncPoint); }
    HRESULT IsPreroll() override { return Answer(m_bPreroll); }
    HRESULT SetPreroll(BOOL bIsPreroll) override { return Store(m_bPreroll, bIsPreroll); }
    LONG GetActualDataLength() override { return m_cbActual; }
    HRESULT SetActualDataLength(LONG cb) override;
    /// Answers S_FALSE: the type is always the connection's.
    HRESULT GetMediaType(AM_MEDIA_TYPE** ppMediaType) override;
    /// Answers E_NOTIMPL.
    HRESULT SetMediaType(AM_MEDIA_TYPE* pMediaType) override;
    HRESULT IsDiscontinuity() override { return Answer(m_bDiscontinuity); }
    HRESULT SetDiscontinuity(BOOL bDiscontinuity) override { return Store(m_bDiscontinuity, bDiscontinuity); }
    HRESULT GetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) override;
    HRESULT SetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) override;

private:
    static HRESULT Answer(bool b);
    static HRESULT Store(bool& bField, BOOL b);

    BYTE* m_pData;
    LONG m_cb;
    LONG m_cbActual;
    std::optional<REFERENCE_TIME> m_tStart;
    std::optional<REFERENCE_TIME> m_tStop;
    std::optional<LONGLONG> m_llMediaStart;
    std::optional<LONGLONG> m_llMediaEnd;
    bool m_bSyncPoint = true;
    bool m_bPreroll = false;
    bool m_bDiscontinuity = false;
};

} // namespace vellumcaster
