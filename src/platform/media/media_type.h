#pragma once

#include <vellumcaster/types.h>
#include <vellumcaster/unknown.h>

namespace vellumcaster {

/// What flows through a connection. A plain record: who holds it by value, or as a block of `CoTaskMemAlloc`, owns
/// the format block and one reference on `pUnk`.
struct AM_MEDIA_TYPE {
    GUID majortype;             ///< video, audio, ...
    GUID subtype;               ///< the format's name within `majortype`
    BOOL bFixedSizeSamples = 0; ///< every sample is `lSampleSize` bytes long
    BOOL bTemporalCompression = 0;
    ULONG lSampleSize = 0;    ///< bytes
    GUID formattype;          ///< how the format block reads
    IUnknown* pUnk = nullptr; ///< a counted reference, or null
    ULONG cbFormat = 0;       ///< bytes of the format block; 0 and a null `pbFormat` go together
    BYTE* pbFormat = nullptr; ///< the format block, from `CoTaskMemAlloc`
};

} // namespace vellumcaster
