#pragma once

#include <vellumcaster/results.h>

namespace vellumcaster {

inline constexpr DWORD ERROR_SUCCESS = 0;
inline constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
inline constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
inline constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
inline constexpr DWORD ERROR_ACCESS_DENIED = 5;
inline constexpr DWORD ERROR_INVALID_HANDLE = 6;
inline constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
inline constexpr DWORD ERROR_WRITE_PROTECT = 19;
inline constexpr DWORD ERROR_GEN_FAILURE = 31;
inline constexpr DWORD ERROR_SHARING_VIOLATION = 32;
inline constexpr DWORD ERROR_NOT_SUPPORTED = 50;
inline constexpr DWORD ERROR_INVALID_PARAMETER = 87;
inline constexpr DWORD ERROR_DISK_FULL = 112;
inline constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
inline constexpr DWORD ERROR_INVALID_NAME = 123;
inline constexpr DWORD ERROR_NEGATIVE_SEEK = 131;
inline constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
inline constexpr DWORD ERROR_FILE_TOO_LARGE = 223;
inline constexpr DWORD ERROR_NOACCESS = 998;
inline constexpr DWORD ERROR_IO_DEVICE = 1117;
inline constexpr DWORD ERROR_CANT_RESOLVE_FILENAME = 1921;

/// Why a kernel call failed on this thread last. A call that succeeds leaves it as it was.
[[nodiscard]] DWORD GetLastError();
void SetLastError(DWORD error);

/// The last error as a result: 0x80070000 with the number in its low word; E_FAIL where there is none.
[[nodiscard]] HRESULT LastErrorAsResult();

/// The platform's number for one of the C library; ERROR_GEN_FAILURE for one that has no counterpart.
[[nodiscard]] DWORD ErrorFromErrno(int number);

} // namespace vellumcaster
