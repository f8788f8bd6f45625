#pragma once

#include "platform/media/media_sample.h"

namespace vellumcaster {

/// Bits of a sample's flags.
enum AM_SAMPLE_FLAGS : DWORD {
    AM_SAMPLE_SPLICEPOINT = 0x01,
    AM_SAMPLE_PREROLL = 0x02,
    AM_SAMPLE_DATADISCONTINUITY = 0x04,
    AM_SAMPLE_TYPECHANGED = 0x08,
    AM_SAMPLE_TIMEVALID = 0x10,
    AM_SAMPLE_TIMEDISCONTINUITY = 0x40,
    AM_SAMPLE_FLUSH_ON_PAUSE = 0x80,
    AM_SAMPLE_STOPVALID = 0x100,
};

/// All that a sample says of itself, in one record. A caller may hold the beginning of it alone: how far it goes is told
/// in bytes.
struct AM_SAMPLE2_PROPERTIES {
    DWORD cbData = 0; ///< bytes of the record that count
    DWORD dwTypeSpecificFlags = 0;
    DWORD dwSampleFlags = 0; ///< `AM_SAMPLE_FLAGS`
    LONG lActual = 0;        ///< bytes of the buffer that hold data
    REFERENCE_TIME tStart = 0;
    REFERENCE_TIME tStop = 0;
    DWORD dwStreamId = 0;
    AM_MEDIA_TYPE* pMediaType = nullptr; ///< the sample's own, not a copy
    BYTE* pbBuffer = nullptr;
    LONG cbBuffer = 0;
};

/// A sample that can be read and written in one call.
struct IMediaSample2 : IMediaSample {
    using Parent = IMediaSample;
    static constexpr GUID IID{0x36B73884, 0xC2C8, 0x11CF, {0x8B, 0x46, 0x00, 0x80, 0x5F, 0x6C, 0xEF, 0x60}};

    /// Copies the first `cbProperties` bytes of the record out.
    virtual HRESULT GetProperties(DWORD cbProperties, BYTE* pbProperties) = 0;
    /// Takes the fields that lie wholly within the first `cbProperties` bytes.
    virtual HRESULT SetProperties(DWORD cbProperties, const BYTE* pbProperties) = 0;

protected:
    ~IMediaSample2() = default;
};

} // namespace vellumcaster
