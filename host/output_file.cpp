#include "host/output_file.h"

#include "host/interruption.h"
#include "host/refusal.h"
#include "host/wide_pipe.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vellumcaster {

namespace {

bool IsWrittenDirectly(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode);
}

/// Whether a name such as /dev/stdout stands for the file that the caller has redirected standard output to. Its
/// place in that file is the caller's.
bool IsStandardOutput(const std::string& path) {
    struct stat status {};
    struct stat own {};
    return stat(path.c_str(), &status) == 0 && fstat(STDOUT_FILENO, &own) == 0 && S_ISREG(own.st_mode) &&
           status.st_dev == own.st_dev && status.st_ino == own.st_ino;
}

} // namespace

COutputFile::COutputFile(const std::string& path) : m_Name(path == "-" ? "standard output" : path) {
    if (path == "-" && isatty(STDOUT_FILENO) == 1)
        throw Refusal("standard output is a terminal: name a file, or pipe it on");
    if (path == "-" || IsStandardOutput(path)) {
        m_fdDirect = STDOUT_FILENO;
    } else if (IsWrittenDirectly(path)) {
        m_fdDirect = open(path.c_str(), O_WRONLY | O_CLOEXEC);
        if (m_fdDirect < 0) Refuse(errno);
    } else if (!m_File.Open(path)) {
        Refuse(errno);
    }
    if (IsDirect()) WidenPipe(m_fdDirect);
}

COutputFile::~COutputFile() {
    if (IsDirect() && m_fdDirect != STDOUT_FILENO) close(m_fdDirect);
}

void COutputFile::Write(std::span<const std::uint8_t> bytes) {
    const int fd = IsDirect() ? m_fdDirect : m_File.Descriptor();
    while (!bytes.empty()) {
        EndIfInterrupted();
        const ssize_t cb = write(fd, bytes.data(), bytes.size());
        if (cb >= 0)
            bytes = bytes.subspan(static_cast<std::size_t>(cb));
        else if (errno != EINTR)
            Refuse(errno);
    }
}

void COutputFile::Write(std::string_view text) {
    Write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

void COutputFile::Commit() {
    EndIfInterrupted();
    // Some file systems tell only now that they are full; so standard output is closed too.
    const bool bKept = IsDirect() ? close(std::exchange(m_fdDirect, -1)) == 0 : m_File.Commit();
    if (!bKept) Refuse(errno);
}

bool COutputFile::IsSameFileAs(int fd) const {
    struct stat own {};
    struct stat other {};
    const bool bKnown = (IsDirect() ? fstat(m_fdDirect, &own) : stat(m_File.Target().c_str(), &own)) == 0;
    return bKnown && fstat(fd, &other) == 0 && S_ISREG(own.st_mode) && own.st_dev == other.st_dev &&
           own.st_ino == other.st_ino;
}

void COutputFile::Refuse(int error) const {
    EndIfInterrupted();
    throw Refusal("cannot write " + m_Name + ": " + std::generic_category().message(error));
}

} // namespace vellumcaster
