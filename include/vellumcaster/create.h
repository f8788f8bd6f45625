#pragma once

#include <vellumcaster/export.h>
#include <vellumcaster/frame_mixer.h>

#include <string>
#include <string_view>

/// Where an application comes in. Each function may be called on any thread.
namespace vellumcaster {

/// Makes an object that draws items on frames of the caller's own, with no items yet and no format.
/// \param ppMixer  receives it with a reference that the caller releases, or null.
/// \return S_OK; E_POINTER for null; E_OUTOFMEMORY; E_NOTIMPL on a processor older than the library was built for, which
///         is also said in one sentence on standard error.
VELLUM_API HRESULT CreateFrameMixer(IFrameMixer** ppMixer) noexcept;

/// The same text in UTF-16, as strings of the calls have it. Each byte that begins no well-formed character becomes
/// U+FFFD.
/// \throws std::bad_alloc
VELLUM_API [[nodiscard]] std::u16string FromUtf8(std::string_view text);

} // namespace vellumcaster
