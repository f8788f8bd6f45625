#pragma once

#include "graph/media_type.h"
#include "platform/media/media_sample.h"

namespace vellumcaster {

/// What can be known of a sample, one bit each.
enum SampleProperty : WORD {
    sampleStart = 0x0001,
    sampleStop = 0x0002,
    sampleMediaTimes = 0x0004, ///< both
    sampleSyncPoint = 0x0010,
    samplePreroll = 0x0020,
    sampleDiscontinuity = 0x0040,
    sampleTypeSpecificFlags = 0x0080,
    sampleMediaType = 0x0100,
    samplePayload = 0x1000,
    sampleActualLength = 0x2000,
};
inline constexpr WORD sampleEverything = 0xFFFF;
inline constexpr WORD sampleAllButPayload = 0xEFFF;

/// A plain value that holds what a sample says of itself. Its buffer is the sample's and lives no longer than that.
class CSampleT {
public:
    /// Reads a sample; what was held before is forgotten. What a sample may lack (times, media times, the flags of its
    /// type) is left out.
    /// \param wanted  bits of `SampleProperty`.
    /// \return S_OK; S_FALSE: not all that was wanted is there, unless everything was wanted; E_INVALIDARG for a null
    ///         sample or none wanted; E_FAIL when nothing could be read, or for data beyond the buffer; what a property
    ///         that every sample has failed with.
    HRESULT Load(IMediaSample* pSample, WORD wanted);

    /// Writes what is both wanted and held to another sample.
    /// \return S_OK; S_FALSE when there is nothing of it; E_INVALIDARG for a null sample; E_FAIL before `Load`; the first
    ///         refusal.
    HRESULT Save(IMediaSample* pSample, WORD wanted) const;

    [[nodiscard]] bool Holds(WORD properties) const { return (m_wMask & properties) == properties; }
    [[nodiscard]] WORD Mask() const { return m_wMask; }

    REFERENCE_TIME m_tS = 0; ///< stream time, units of 100 ns
    REFERENCE_TIME m_tE = 0;
    LONGLONG m_llMS = 0; ///< media time
    LONGLONG m_llME = 0;

private:
    using Reader = HRESULT (CSampleT::*)(IMediaSample&, WORD);
    using Writer = HRESULT (CSampleT::*)(IMediaSample&, WORD) const;

    HRESULT LoadTimes(IMediaSample& sample, WORD wanted);
    HRESULT LoadMediaTimes(IMediaSample& sample, WORD wanted);
    HRESULT LoadFlags(IMediaSample& sample, WORD wanted);
    HRESULT LoadTypeSpecificFlags(IMediaSample& sample, WORD wanted);
    HRESULT LoadMediaType(IMediaSample& sample, WORD wanted);
    HRESULT LoadPayload(IMediaSample& sample, WORD wanted);

    HRESULT SaveTimes(IMediaSample& sample, WORD w) const;
    HRESULT SaveMediaTimes(IMediaSample& sample, WORD w) const;
    HRESULT SaveFlags(IMediaSample& sample, WORD w) const;
    HRESULT SaveTypeSpecificFlags(IMediaSample& sample, WORD w) const;
    HRESULT SaveMediaType(IMediaSample& sample, WORD w) const;
    HRESULT SavePayload(IMediaSample& sample, WORD w) const;

    WORD m_wMask = 0;
    BOOL m_bSyncPoint = 0;
    BOOL m_bPreroll = 0;
    BOOL m_bDiscontinuity = 0;
    DWORD m_dwTypeSpecificFlags = 0;
    CMediaTypePtr m_spMediaType;
    LONG m_lActual = 0;
    BYTE* m_pBuffer = nullptr;
};

} // namespace vellumcaster
