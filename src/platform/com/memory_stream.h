#pragma once

#include <vellumcaster/stream.h>

#include <span>

namespace vellumcaster {

/// A stream over memory of its own, which grows as it is written to, up to 1 GiB. One thread at a time.
/// \param content  is copied; the stream's place is at its front.
/// \return S_OK; E_POINTER; E_OUTOFMEMORY.
HRESULT CreateMemoryStream(std::span<const BYTE> content, IStream** ppStream);

} // namespace vellumcaster
