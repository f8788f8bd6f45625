#include "platform/kernel/new_file.h"

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

/// The name by which a file without one can be reached.
std::string NameOfDescriptor(int fd) { return "/proc/self/fd/" + std::to_string(fd); }

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

CNewFile::~CNewFile() {
    if (m_fd >= 0) close(m_fd);
    if (!m_Interim.empty()) unlink(m_Interim.c_str());
}

bool CNewFile::Open(const std::string& path) {
    m_Target = BehindLinks(path);
    struct stat earlier {};
    const bool bReplaces = stat(m_Target.c_str(), &earlier) == 0;
    if (bReplaces && !S_ISREG(earlier.st_mode)) { // a device must not become a file
        errno = EACCES;
        return false;
    }
    if (bReplaces && access(m_Target.c_str(), W_OK) != 0) return false;
    if (!OpenUnnamed()) {
        const bool bNoUnnamedFiles = errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL;
        const auto take = [this](const char* pszName) {
            m_fd = open(pszName, O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, modeOfNewFile);
            return m_fd >= 0;
        };
        if (!bNoUnnamedFiles || !TakeInterimName(take)) return false;
    }
    constexpr mode_t permissions = 0777;
    if (bReplaces) static_cast<void>(fchmod(m_fd, earlier.st_mode & permissions)); // where there are any
    return true;
}

bool CNewFile::OpenUnnamed() {
    m_fd = open(FolderOf(m_Target).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, modeOfNewFile);
    if (m_fd >= 0 && access(NameOfDescriptor(m_fd).c_str(), F_OK) != 0) {
        close(std::exchange(m_fd, -1));
        errno = EOPNOTSUPP; // it could never be given a name
    }
    return m_fd >= 0;
}

/// Gives the file a name beside its target: the first that nobody has.
template <class Take>
bool CNewFile::TakeInterimName(const Take& take) {
    const std::string stem = FolderOf(m_Target) + "/.vellumcast-" + std::to_string(getpid()) + "-";
    for (int nth = 0;; ++nth) {
        std::string name = stem + std::to_string(nth);
        if (take(name.c_str())) {
            m_Interim = std::move(name);
            return true;
        }
        if (errno != EEXIST) return false;
    }
}

bool CNewFile::Flush() const { return fsync(m_fd) == 0; }

bool CNewFile::Commit() {
    // A link cannot take the place of a file that stands already; a name of its own can, by renaming.
    const auto take = [own = NameOfDescriptor(m_fd)](const char* pszName) {
        return linkat(AT_FDCWD, own.c_str(), AT_FDCWD, pszName, AT_SYMLINK_FOLLOW) == 0;
    };
    if (m_Interim.empty() && !TakeInterimName(take)) return false;
    // Some file systems tell only now that they are full.
    if (close(std::exchange(m_fd, -1)) != 0) return false;
    if (rename(m_Interim.c_str(), m_Target.c_str()) != 0) return false;
    m_Interim.clear();
    return true;
}

} // namespace vellumcaster
