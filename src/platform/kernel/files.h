#pragma once

#include "platform/kernel/last_error.h"

#include <cstdint>
#include <utility>

/// Files by the platform's names. Any thread may call; a handle is used by one thread at a time. A call that fails
/// leaves its reason in `GetLastError`, one that succeeds leaves that alone.
namespace vellumcaster {

/// An open file. Owned by whoever opened it; see `CFileHandle`.
using HANDLE = void*;

// The platform says -1, for 0 would do as well as any open file.
inline void* const INVALID_HANDLE_VALUE =
    reinterpret_cast<void*>(std::intptr_t{-1}); // NOLINT(performance-no-int-to-ptr)

inline constexpr DWORD GENERIC_READ = 0x80000000;
inline constexpr DWORD GENERIC_WRITE = 0x40000000;
inline constexpr DWORD CREATE_ALWAYS = 2;
inline constexpr DWORD OPEN_EXISTING = 3;
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
inline constexpr DWORD FILE_BEGIN = 0;
inline constexpr DWORD INVALID_SET_FILE_POINTER = 0xFFFFFFFF;

struct SECURITY_ATTRIBUTES;
struct OVERLAPPED;

/// Opens a file for this caller alone: GENERIC_READ with OPEN_EXISTING, or GENERIC_WRITE with CREATE_ALWAYS, which
/// makes the file or empties it. Only regular files are opened, so that no read or write ever waits for a partner.
///
/// That nobody shares the file is kept among those who open it here, in this process or another; a program that
/// takes no locks is not kept out, and a file system without locks lets everybody in.
/// \param pszName  UTF-8. \param dwShareMode  0. \param pSecurity, hTemplate  null.
/// \return INVALID_HANDLE_VALUE with ERROR_FILE_NOT_FOUND; ERROR_PATH_NOT_FOUND for a folder on the way that is not
///         there; ERROR_ACCESS_DENIED, also for a folder; ERROR_NOT_SUPPORTED for a device, a pipe or a socket;
///         ERROR_SHARING_VIOLATION for a file that is open, which is then untouched; ERROR_INVALID_PARAMETER for
///         any other request; else what `ErrorFromErrno` says.
[[nodiscard]] HANDLE CreateFileA(const char* pszName, DWORD dwDesiredAccess, DWORD dwShareMode,
                                 SECURITY_ATTRIBUTES* pSecurity, DWORD dwCreationDisposition, DWORD dwFlags,
                                 HANDLE hTemplate);

/// Reads `cb` bytes, fewer only at the end of the file. \param pOverlapped  null.
/// \param pcbRead  receives the bytes read, after a failure too.
[[nodiscard]] bool ReadFile(HANDLE hFile, void* pv, DWORD cb, DWORD* pcbRead, OVERLAPPED* pOverlapped);

/// Writes `cb` bytes. \param pOverlapped  null. \param pcbWritten  receives the bytes written, after a failure too.
[[nodiscard]] bool WriteFile(HANDLE hFile, const void* pv, DWORD cb, DWORD* pcbWritten, OVERLAPPED* pOverlapped);

/// Moves to a byte counted from the start, which may lie behind the end.
/// \param lDistance  bytes; with `plHigh` the low half of them, without a sign of its own.
/// \param plHigh  in and out: the high half; may be null.
/// \param dwMethod  FILE_BEGIN.
/// \return the low half of the position, or INVALID_SET_FILE_POINTER, ERROR_NEGATIVE_SEEK for a place before the
///         start.
[[nodiscard]] DWORD SetFilePointer(HANDLE hFile, LONG lDistance, LONG* plHigh, DWORD dwMethod);

/// Bytes that the file has now.
[[nodiscard]] bool GetFileSizeEx(HANDLE hFile, LONGLONG* pcb);

/// Returns when what was written is on the disk.
[[nodiscard]] bool FlushFileBuffers(HANDLE hFile);

/// Gives the file free. \return false when something written before could not be kept; it is closed all the same.
bool CloseHandle(HANDLE h);

/// Owns one open file, or none.
class CFileHandle {
public:
    explicit CFileHandle(HANDLE h) : m_h(h) {}
    CFileHandle(const CFileHandle&) = delete;
    CFileHandle& operator=(const CFileHandle&) = delete;
    ~CFileHandle() {
        if (IsOpen()) CloseHandle(m_h);
    }

    [[nodiscard]] bool IsOpen() const { return m_h != INVALID_HANDLE_VALUE; }
    [[nodiscard]] HANDLE Get() const { return m_h; }
    /// Hands the file to the caller.
    [[nodiscard]] HANDLE Detach() { return std::exchange(m_h, INVALID_HANDLE_VALUE); }
    /// As `CloseHandle`, for those to whom a failure matters.
    [[nodiscard]] bool Close() { return CloseHandle(Detach()); }

private:
    HANDLE m_h;
};

} // namespace vellumcaster
