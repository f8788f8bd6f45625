#include "platform/kernel/files.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <limits>
#include <string_view>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vellumcaster {

namespace {

// One up, so that no open file is the null handle.
HANDLE ToHandle(int fd) {
    return reinterpret_cast<HANDLE>(std::intptr_t{fd} + 1); // NOLINT(performance-no-int-to-ptr)
}

int ToDescriptor(HANDLE h) {
    const auto value = reinterpret_cast<std::intptr_t>(h) - 1;
    return value >= 0 && value <= std::numeric_limits<int>::max() ? static_cast<int>(value) : -1;
}

bool Fail(DWORD error) {
    SetLastError(error);
    return false;
}

bool FailByErrno() { return Fail(ErrorFromErrno(errno)); }

/// Calls again for as long as a signal came between.
template <class Call>
auto Uninterrupted(const Call& call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Calls `transfer(offset, cbLeft)` until `cb` bytes have gone or nothing goes any more.
template <class Transfer>
bool TransferAll(DWORD cb, DWORD* pcbDone, const Transfer& transfer) {
    for (*pcbDone = 0; *pcbDone < cb;) {
        const ssize_t n = Uninterrupted([&] { return transfer(*pcbDone, std::size_t{cb - *pcbDone}); });
        if (n < 0) return FailByErrno();
        if (n == 0) break;
        *pcbDone += static_cast<DWORD>(n);
    }
    return true;
}

/// Whether a name was not found because the folder it should be in is not there. The name is known to be shorter
/// than PATH_MAX: a longer one would have been refused for that.
bool IsFolderMissing(std::string_view name) {
    const std::size_t slash = name.find_last_of('/');
    if (slash == std::string_view::npos) return name.empty();
    std::array<char, PATH_MAX> folder{};
    name.copy(folder.data(), std::min(slash + 1, folder.size() - 1));
    return access(folder.data(), F_OK) != 0;
}

DWORD OpenError(const char* pszName) {
    const DWORD error = ErrorFromErrno(errno);
    return error == ERROR_FILE_NOT_FOUND && IsFolderMissing(pszName) ? ERROR_PATH_NOT_FOUND : error;
}

/// Makes sure of a file that was just opened and touches nothing of it that is another's.
bool TakeForOneself(int fd, bool bEmptyIt) {
    struct stat status {};
    if (fstat(fd, &status) != 0) return FailByErrno();
    if (S_ISDIR(status.st_mode)) return Fail(ERROR_ACCESS_DENIED);
    if (!S_ISREG(status.st_mode)) return Fail(ERROR_NOT_SUPPORTED);
    if (flock(fd, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) return Fail(ERROR_SHARING_VIOLATION);
    if (bEmptyIt && Uninterrupted([fd] { return ftruncate(fd, 0); }) != 0) return FailByErrno();
    return true;
}

} // namespace

HANDLE CreateFileA(const char* pszName, DWORD dwDesiredAccess, DWORD dwShareMode, SECURITY_ATTRIBUTES* pSecurity,
                   DWORD dwCreationDisposition, DWORD dwFlags, HANDLE hTemplate) {
    const bool bRead = dwDesiredAccess == GENERIC_READ && dwCreationDisposition == OPEN_EXISTING;
    const bool bWrite = dwDesiredAccess == GENERIC_WRITE && dwCreationDisposition == CREATE_ALWAYS;
    const bool bPlain = dwShareMode == 0 && (dwFlags & ~FILE_ATTRIBUTE_NORMAL) == 0 && !pSecurity && !hTemplate;
    if (!pszName || !bPlain || (!bRead && !bWrite)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return INVALID_HANDLE_VALUE;
    }

    // A file is emptied only once it is known to be nobody else's, so not by O_TRUNC. O_NONBLOCK, because opening a
    // pipe would wait for its other end.
    const int flags = (bWrite ? O_WRONLY | O_CREAT : O_RDONLY) | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    constexpr mode_t everybodyByMask = 0666;
    const int fd = Uninterrupted([&] { return open(pszName, flags, everybodyByMask); });
    if (fd < 0) {
        SetLastError(OpenError(pszName));
        return INVALID_HANDLE_VALUE;
    }
    CFileHandle file(ToHandle(fd));
    return TakeForOneself(fd, bWrite) ? file.Detach() : INVALID_HANDLE_VALUE;
}

bool ReadFile(HANDLE hFile, void* pv, DWORD cb, DWORD* pcbRead, OVERLAPPED* pOverlapped) {
    if (pOverlapped) return Fail(ERROR_INVALID_PARAMETER);
    return TransferAll(cb, pcbRead, [hFile, pb = static_cast<BYTE*>(pv)](DWORD offset, std::size_t cbLeft) {
        return read(ToDescriptor(hFile), pb + offset, cbLeft);
    });
}

bool WriteFile(HANDLE hFile, const void* pv, DWORD cb, DWORD* pcbWritten, OVERLAPPED* pOverlapped) {
    if (pOverlapped) return Fail(ERROR_INVALID_PARAMETER);
    return TransferAll(cb, pcbWritten, [hFile, pb = static_cast<const BYTE*>(pv)](DWORD offset, std::size_t cbLeft) {
        return write(ToDescriptor(hFile), pb + offset, cbLeft);
    });
}

DWORD SetFilePointer(HANDLE hFile, LONG lDistance, LONG* plHigh, DWORD dwMethod) {
    const off_t distance = plHigh ? (off_t{*plHigh} << 32) | static_cast<DWORD>(lDistance) : off_t{lDistance};
    if (dwMethod != FILE_BEGIN || distance < 0) {
        SetLastError(dwMethod == FILE_BEGIN ? ERROR_NEGATIVE_SEEK : ERROR_INVALID_PARAMETER);
        return INVALID_SET_FILE_POINTER;
    }
    const off_t position = lseek(ToDescriptor(hFile), distance, SEEK_SET);
    if (position < 0) {
        SetLastError(ErrorFromErrno(errno));
        return INVALID_SET_FILE_POINTER;
    }
    if (plHigh) *plHigh = static_cast<LONG>(position >> 32);
    return static_cast<DWORD>(position);
}

bool GetFileSizeEx(HANDLE hFile, LONGLONG* pcb) {
    struct stat status {};
    if (fstat(ToDescriptor(hFile), &status) != 0) return FailByErrno();
    *pcb = status.st_size;
    return true;
}

bool FlushFileBuffers(HANDLE hFile) {
    return Uninterrupted([hFile] { return fsync(ToDescriptor(hFile)); }) == 0 || FailByErrno();
}

bool CloseHandle(HANDLE h) {
    // Never called again: after a signal the descriptor is free too, and may be another's by then.
    return close(ToDescriptor(h)) == 0 || errno == EINTR || FailByErrno();
}

} // namespace vellumcaster
