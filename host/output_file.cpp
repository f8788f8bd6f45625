#include "host/output_file.h"

#include "host/interruption.h"
#include "host/refusal.h"
#include "host/wide_pipe.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vellumcaster {

namespace {

constexpr mode_t modeOfNewFile = 0666; // less the user's mask

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

/// The name by which a file without one can be reached.
std::string NameOfDescriptor(int fd) { return "/proc/self/fd/" + std::to_string(fd); }

/// The file that a name stands for, behind symbolic links.
std::string BehindLinks(const std::string& path) {
    std::error_code error;
    const auto real = std::filesystem::canonical(path, error);
    return error ? path : real.string();
}

std::string FolderOf(const std::string& path) {
    const auto folder = std::filesystem::path(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

} // namespace

COutputFile::COutputFile(const std::string& path) : m_Name(path == "-" ? "standard output" : path) {
    if (path == "-" && isatty(STDOUT_FILENO) == 1)
        throw Refusal("standard output is a terminal: name a file, or pipe it on");
    if (path == "-" || IsStandardOutput(path)) {
        m_fd = STDOUT_FILENO;
    } else if (IsWrittenDirectly(path)) {
        m_fd = open(path.c_str(), O_WRONLY | O_CLOEXEC);
        if (m_fd < 0) Refuse(errno);
    } else {
        m_Target = BehindLinks(path);
        OpenInterim();
    }
    WidenPipe(m_fd);
}

COutputFile::~COutputFile() {
    if (m_fd >= 0 && m_fd != STDOUT_FILENO) close(m_fd);
    if (!m_Interim.empty()) unlink(m_Interim.c_str());
}

void COutputFile::OpenInterim() {
    struct stat earlier {};
    const bool bReplaces = stat(m_Target.c_str(), &earlier) == 0;
    if (bReplaces && access(m_Target.c_str(), W_OK) != 0) Refuse(errno);
    if (!OpenUnnamed())
        TakeInterimName([this](const char* pszName) {
            m_fd = open(pszName, O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, modeOfNewFile);
            return m_fd >= 0;
        });
    constexpr mode_t permissions = 0777;
    if (bReplaces) static_cast<void>(fchmod(m_fd, earlier.st_mode & permissions)); // where there are any
}

/// \return false where there are no files without a name.
bool COutputFile::OpenUnnamed() {
    m_fd = open(FolderOf(m_Target).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, modeOfNewFile);
    if (m_fd < 0 && errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) Refuse(errno);
    if (m_fd >= 0 && access(NameOfDescriptor(m_fd).c_str(), F_OK) != 0) close(std::exchange(m_fd, -1));
    return m_fd >= 0;
}

/// Gives the file a name beside its target: the first that nobody has.
template <class Take>
void COutputFile::TakeInterimName(const Take& take) {
    const std::string stem = FolderOf(m_Target) + "/.vellumcast-" + std::to_string(getpid()) + "-";
    for (int nth = 0;; ++nth) {
        std::string name = stem + std::to_string(nth);
        if (take(name.c_str())) {
            m_Interim = std::move(name);
            return;
        }
        if (errno != EEXIST) Refuse(errno);
    }
}

void COutputFile::Write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
        EndIfInterrupted();
        const ssize_t cb = write(m_fd, bytes.data(), bytes.size());
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
    // A link cannot take the place of a file that stands already; a name of its own can, by renaming.
    if (!m_Target.empty() && m_Interim.empty())
        TakeInterimName([own = NameOfDescriptor(m_fd)](const char* pszName) {
            return linkat(AT_FDCWD, own.c_str(), AT_FDCWD, pszName, AT_SYMLINK_FOLLOW) == 0;
        });
    // Some file systems tell only now that they are full; so standard output is closed too.
    if (close(std::exchange(m_fd, -1)) != 0) Refuse(errno);
    if (m_Target.empty()) return;
    if (rename(m_Interim.c_str(), m_Target.c_str()) != 0) Refuse(errno);
    m_Interim.clear();
}

bool COutputFile::IsSameFileAs(int fd) const {
    struct stat own {};
    struct stat other {};
    const bool bKnown = (m_Target.empty() ? fstat(m_fd, &own) : stat(m_Target.c_str(), &own)) == 0;
    return bKnown && fstat(fd, &other) == 0 && S_ISREG(own.st_mode) && own.st_dev == other.st_dev &&
           own.st_ino == other.st_ino;
}

void COutputFile::Refuse(int error) const {
    EndIfInterrupted();
    throw Refusal("cannot write " + m_Name + ": " + std::generic_category().message(error));
}

} // namespace vellumcaster
