#pragma once

#include "platform/media/bitmap_info.h"

#include <vellumcaster/results.h>

/// Bitmap files without compression or colour table. A file's pixels are taken as they are: rows in the file's order,
/// each up to a multiple of four bytes, in the depth of the file.
///
/// No state is kept: calls on different files may run at once. Files are opened for one caller alone.
///
/// Where a file call fails the result is 0x80070000 with the platform's error number, such as 0x80070002 for a file
/// that is not there and 0x80070020 for one that is open, or E_FAIL where the platform gave no number.
namespace vellumcaster::CPicturePersist {

/// \param pszFile  UTF-8.
/// \param pHeader  receives the file's record with its `biSizeImage` corrected; all zero after a failure.
/// \param ppPixels  receives `biSizeImage` bytes that the caller frees by `CoTaskMemFree`; null after a failure.
/// \return S_OK; E_INVALIDARG for a null name or record, E_POINTER for a null `ppPixels`; a file call's failure; E_FAIL
///         for what is no such bitmap, for pixels that do not fit between the start that the file names and the end
///         that it names or has, and for a file that ends in its records; E_OUTOFMEMORY.
[[nodiscard]] HRESULT LoadFromFile(const char* pszFile, BITMAPINFOHEADER* pHeader, void** ppPixels);

/// Makes the file or replaces what it held. After a failure the file holds what had been written by then.
///
/// \param pHeader  the bitmap's record; with `biCompression` BI_BITFIELDS three masks of four bytes follow it in memory.
/// \param pPixels  as many bytes as the record's geometry needs, whatever its `biSizeImage` says.
/// \return S_OK; E_INVALIDARG for a null argument or another `biSize`; E_FAIL for a record that
///         `TestAndCorrectBmpHeader` refuses; a file call's failure, of which the first counts.
[[nodiscard]] HRESULT SaveToFile(const char* pszFile, const BITMAPINFOHEADER* pHeader, const void* pPixels);

/// Whether a record speaks of a bitmap that can be loaded and saved: a format of the table, by its depth or its code,
/// no colour table, a geometry that the format can have and that is within the size limits.
/// \param pHeader  may be null, which is refused; where the answer is true its `biSizeImage` is right afterwards.
[[nodiscard]] bool TestAndCorrectBmpHeader(BITMAPINFOHEADER* pHeader);

} // namespace vellumcaster::CPicturePersist
