#pragma once

#include "platform/media/media_sample.h"

namespace vellumcaster::CSampleCopier {

/// Puts data into a sample's buffer and says how much of it there is.
/// \param wanted  `samplePayload` and `sampleActualLength` count.
/// \return S_OK; E_INVALIDARG for a payload that is not there or whose length is not wanted; E_FAIL for a buffer that is
///         too small or missing; E_UNEXPECTED when copying faulted; what the sample answers.
HRESULT CopyBuffer(IMediaSample* pDst, const BYTE* pSrc, LONG length, WORD wanted);

/// Copies what `pSrc` has of the wanted properties to `pDst`.
/// \return as `CSampleT::Load` and `CSampleT::Save`: the first failure, else S_FALSE where not all was there.
HRESULT Copy(IMediaSample* pDst, IMediaSample* pSrc, WORD wanted);

} // namespace vellumcaster::CSampleCopier
