#pragma once

#include <vellumcaster/export.h>
#include <vellumcaster/frame_mixer.h>
#include <vellumcaster/stream.h>

#include <cstddef>
#include <string>
#include <string_view>

/// Where an application comes in. Each function may be called on any thread. Those that make an object answer E_NOTIMPL
/// on a processor older than the library was built for; the first says so in one sentence on standard error.
namespace vellumcaster {

/// Makes an object that draws items on frames of the caller's own, with no items yet and no format.
/// \param ppMixer  receives it with a reference that the caller releases, or null.
/// \return S_OK; E_POINTER for null; E_OUTOFMEMORY; E_NOTIMPL.
VELLUM_API HRESULT CreateFrameMixer(IFrameMixer** ppMixer) noexcept;

/// Makes a stream over memory of its own, which grows as it is written to.
/// \param pContent  `cb` bytes that it holds at first, copied; may be null where `cb` is 0.
/// \param ppStream  receives it with a reference that the caller releases, or null.
/// \return S_OK; E_POINTER; E_OUTOFMEMORY; E_NOTIMPL.
VELLUM_API HRESULT CreateStreamOnMemory(const void* pContent, std::size_t cb, IStream** ppStream) noexcept;

/// Makes a stream that reads a file from front to back.
/// \param pszUtf8File  a regular file's name. \param ppStream  as above.
/// \return S_OK; E_POINTER; E_OUTOFMEMORY; E_NOTIMPL; the platform's error, 0x8007 in its high half.
VELLUM_API HRESULT OpenStreamOnFile(const char* pszUtf8File, IStream** ppStream) noexcept;

/// Makes a stream that writes a file, whole or not at all: it comes to stand under its name with `IStream::Commit`, and an
/// earlier file keeps its content until then, or for good where the stream is released without.
/// \param pszUtf8File  a regular file's name, or that of none yet. \param ppStream  as above.
/// \return as `OpenStreamOnFile`.
VELLUM_API HRESULT CreateStreamOnFile(const char* pszUtf8File, IStream** ppStream) noexcept;

/// The same text in UTF-16, as strings of the calls have it. Each byte that begins no well-formed character becomes
/// U+FFFD.
/// \throws std::bad_alloc
VELLUM_API [[nodiscard]] std::u16string FromUtf8(std::string_view text);

} // namespace vellumcaster
