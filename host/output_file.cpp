#include "host/output_file.h"

#include "host/refusal.h"

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
    if (path == "-") {
        if (isatty(STDOUT_FILENO) == 1) throw Refusal("standard output is a terminal: name a file, or pipe it on");
        m_fd = STDOUT_FILENO;
    } else if (IsWrittenDirectly(path)) {
        m_fd = open(path.c_str(), O_WRONLY | O_CLOEXEC);
        if (m_fd < 0) Refuse(errno);
    } else {
        m_Target = BehindLinks(path);
        OpenUnnamed();
    }
}

COutputFile::~COutputFile() {
    if (m_fd >= 0 && m_fd != STDOUT_FILENO) close(m_fd);
    if (!m_Interim.empty()) unlink(m_Interim.c_str());
}

void COutputFile::OpenUnnamed() {
    if (access(m_Target.c_str(), F_OK) == 0 && access(m_Target.c_str(), W_OK) != 0) Refuse(errno);
    m_fd = open(FolderOf(m_Target).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, modeOfNewFile);
    if (m_fd >= 0) return;
    if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL) Refuse(errno);
    std::string interim = m_Target + ".part" + std::to_string(getpid());
    m_fd = open(interim.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, modeOfNewFile);
    if (m_fd < 0) Refuse(errno);
    m_Interim = std::move(interim);
}

void COutputFile::Write(std::span<const std::uint8_t> bytes) {
    while (!bytes.empty()) {
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
    if (!m_Target.empty() && m_Interim.empty()) {
        // A link cannot take the place of a file that stands already; a name of its own can, by renaming.
        std::string interim = m_Target + ".part" + std::to_string(getpid());
        const std::string own = "/proc/self/fd/" + std::to_string(m_fd);
        if (linkat(AT_FDCWD, own.c_str(), AT_FDCWD, interim.c_str(), AT_SYMLINK_FOLLOW) != 0) Refuse(errno);
        m_Interim = std::move(interim);
    }
    const int fd = std::exchange(m_fd, -1);
    if (fd != STDOUT_FILENO && close(fd) != 0) Refuse(errno);
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
    throw Refusal("cannot write " + m_Name + ": " + std::generic_category().message(error));
}

} // namespace vellumcaster
