#pragma once

#include <vellumcaster/stream.h>

namespace vellumcaster {

/// A stream that reads a regular file from front to back. It cannot be written, and its place only moves by reading.
/// One thread at a time.
/// \param pszFile  UTF-8.
/// \return S_OK; E_POINTER; E_OUTOFMEMORY; the platform's error, 0x8007 in its high half, as for a file that is not there.
HRESULT OpenFileStream(const char* pszFile, IStream** ppStream);

/// A stream that writes a file, whole or not at all: what was written comes to stand under the file's name with `Commit`,
/// which waits until it is on the disk. Released without, it leaves nothing, and an earlier file keeps its content. It
/// cannot be read. One thread at a time.
/// \param pszFile  UTF-8.
/// \return as `OpenFileStream`.
HRESULT CreateFileStream(const char* pszFile, IStream** ppStream);

} // namespace vellumcaster
