#pragma once

#include "graph/media_type.h"
#include "platform/kernel/critical_section.h"
#include "platform/media/media_sample2.h"

#include <atomic>

namespace vellumcaster {

class CMemoryAllocator;

/// A sample of `CMemoryAllocator`, built in a block of the allocator's pool. Its last reference sends buffer and block
/// home. Any thread; calls wait for each other.
class CMediaSample final : public IMediaSample2 {
public:
    /// Starts with one reference, no data and nothing said.
    /// \param allocator  outlives the sample.
    /// \param pBuffer  memory of the allocator, `cb` bytes.
    CMediaSample(CMemoryAllocator& allocator, BYTE* pBuffer, LONG cb)
        : m_Allocator(allocator), m_pBuffer(pBuffer), m_cb(cb) {}
    CMediaSample(const CMediaSample&) = delete;
    CMediaSample& operator=(const CMediaSample&) = delete;
    ~CMediaSample() = default;

    HRESULT QueryInterface(const GUID& iid, void** ppv) override;
    ULONG AddRef() override;
    ULONG Release() override;

    HRESULT GetPointer(BYTE** ppBuffer) override;
    LONG GetSize() override { return m_cb; }
    HRESULT GetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) override;
    HRESULT SetTime(REFERENCE_TIME* pTimeStart, REFERENCE_TIME* pTimeEnd) override;
    HRESULT IsSyncPoint() override { return HasFlag(AM_SAMPLE_SPLICEPOINT); }
    HRESULT SetSyncPoint(BOOL b) override { return SetFlag(AM_SAMPLE_SPLICEPOINT, b); }
    HRESULT IsPreroll() override { return HasFlag(AM_SAMPLE_PREROLL); }
    HRESULT SetPreroll(BOOL b) override { return SetFlag(AM_SAMPLE_PREROLL, b); }
    LONG GetActualDataLength() override;
    HRESULT SetActualDataLength(LONG cb) override;
    HRESULT GetMediaType(AM_MEDIA_TYPE** ppMediaType) override;
    HRESULT SetMediaType(AM_MEDIA_TYPE* pMediaType) override;
    HRESULT IsDiscontinuity() override { return HasFlag(AM_SAMPLE_DATADISCONTINUITY); }
    HRESULT SetDiscontinuity(BOOL b) override { return SetFlag(AM_SAMPLE_DATADISCONTINUITY, b); }
    HRESULT GetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) override;
    HRESULT SetMediaTime(LONGLONG* pTimeStart, LONGLONG* pTimeEnd) override;

    HRESULT GetProperties(DWORD cbProperties, BYTE* pbProperties) override;
    HRESULT SetProperties(DWORD cbProperties, const BYTE* pbProperties) override;

    [[nodiscard]] virtual const char* DisplayName() const { return "CMediaSample"; }

private:
    HRESULT HasFlag(DWORD flag);
    HRESULT SetFlag(DWORD flag, BOOL b);
    [[nodiscard]] HRESULT Check(DWORD cb, const AM_SAMPLE2_PROPERTIES& props) const;

    CMemoryAllocator& m_Allocator;
    BYTE* m_pBuffer;
    LONG m_cb;
    LONG m_cbActual = 0;
    DWORD m_dwFlags = 0; ///< `AM_SAMPLE_FLAGS`, and one of its own for media times
    DWORD m_dwTypeSpecificFlags = 0;
    CMediaTypePtr m_spMediaType; ///< where AM_SAMPLE_TYPECHANGED is set
    REFERENCE_TIME m_tStart = 0;
    REFERENCE_TIME m_tStop = 0;
    LONGLONG m_llMediaStart = 0;
    LONGLONG m_llMediaStop = 0;
    DWORD m_dwStreamId = 0;
    std::atomic<ULONG> m_cReferences = 1;
    CCriticalSection m_cs;
};

} // namespace vellumcaster
