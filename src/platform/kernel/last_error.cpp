#include "platform/kernel/last_error.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace vellumcaster {

namespace {

struct ErrorPair {
    int number;
    DWORD error;
};

constexpr std::array errorTable{
    ErrorPair{ENOENT, ERROR_FILE_NOT_FOUND},
    ErrorPair{ENOTDIR, ERROR_PATH_NOT_FOUND},
    ErrorPair{EMFILE, ERROR_TOO_MANY_OPEN_FILES},
    ErrorPair{ENFILE, ERROR_TOO_MANY_OPEN_FILES},
    ErrorPair{EACCES, ERROR_ACCESS_DENIED},
    ErrorPair{EPERM, ERROR_ACCESS_DENIED},
    ErrorPair{EISDIR, ERROR_ACCESS_DENIED},
    ErrorPair{EBADF, ERROR_INVALID_HANDLE},
    ErrorPair{ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    ErrorPair{EROFS, ERROR_WRITE_PROTECT},
    ErrorPair{EWOULDBLOCK, ERROR_SHARING_VIOLATION},
    ErrorPair{ETXTBSY, ERROR_SHARING_VIOLATION},
    ErrorPair{ENXIO, ERROR_NOT_SUPPORTED},
    ErrorPair{ENODEV, ERROR_NOT_SUPPORTED},
    ErrorPair{EOPNOTSUPP, ERROR_NOT_SUPPORTED},
    ErrorPair{EINVAL, ERROR_INVALID_PARAMETER},
    ErrorPair{ENOSPC, ERROR_DISK_FULL},
    ErrorPair{EDQUOT, ERROR_DISK_FULL},
    ErrorPair{EILSEQ, ERROR_INVALID_NAME},
    ErrorPair{ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    ErrorPair{EFBIG, ERROR_FILE_TOO_LARGE},
    ErrorPair{EOVERFLOW, ERROR_FILE_TOO_LARGE},
    ErrorPair{EFAULT, ERROR_NOACCESS},
    ErrorPair{EIO, ERROR_IO_DEVICE},
    ErrorPair{ELOOP, ERROR_CANT_RESOLVE_FILENAME},
};

thread_local DWORD t_lastError = ERROR_SUCCESS;

} // namespace

DWORD GetLastError() { return t_lastError; }

void SetLastError(DWORD error) { t_lastError = error; }

HRESULT LastErrorAsResult() {
    return t_lastError == ERROR_SUCCESS ? E_FAIL : static_cast<HRESULT>(0x80070000 | (t_lastError & 0xFFFF));
}

DWORD ErrorFromErrno(int number) {
    const auto* pPair = std::find_if(errorTable.begin(), errorTable.end(),
                                     [number](const ErrorPair& pair) { return pair.number == number; });
    return pPair == errorTable.end() ? ERROR_GEN_FAILURE : pPair->error;
}

} // namespace vellumcaster
