#include "host/byte_source.h"

#include "host/interruption.h"
#include "host/refusal.h"
#include "host/wide_pipe.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vellumcaster {

namespace {

constexpr std::size_t cbAhead = 4096;

[[noreturn]] void RefuseToRead(const std::string& name, int error) {
    EndIfInterrupted();
    throw Refusal("cannot read " + name + ": " + std::generic_category().message(error));
}

int OpenToRead(const std::string& path) {
    if (path == "-") {
        if (isatty(STDIN_FILENO) == 1) throw Refusal("standard input is a terminal: name a clip, or pipe one in");
        return STDIN_FILENO;
    }
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) RefuseToRead(path, errno);
    return fd;
}

} // namespace

CByteSource::CByteSource(const std::string& path)
    : m_Name(path == "-" ? "standard input" : path), m_fd(OpenToRead(path)) {
    WidenPipe(m_fd);
}

CByteSource::~CByteSource() {
    if (m_fd != STDIN_FILENO) close(m_fd);
}

std::size_t CByteSource::ReadSome(std::span<std::uint8_t> bytes) {
    for (;;) {
        EndIfInterrupted();
        const ssize_t cb = read(m_fd, bytes.data(), bytes.size());
        if (cb >= 0) return static_cast<std::size_t>(cb);
        if (errno != EINTR) RefuseToRead(m_Name, errno);
    }
}

bool CByteSource::FillAhead() {
    if (m_nTaken < m_Ahead.size()) return true;
    m_Ahead.resize(cbAhead);
    m_Ahead.resize(ReadSome(m_Ahead));
    m_nTaken = 0;
    return !m_Ahead.empty();
}

LineEnd CByteSource::ReadLine(std::string& line, std::size_t cbMost) {
    line.clear();
    while (line.size() <= cbMost && FillAhead()) {
        const auto first = m_Ahead.begin() + static_cast<std::ptrdiff_t>(m_nTaken);
        const auto end = std::find(first, m_Ahead.end(), std::uint8_t{'\n'});
        line.append(first, end);
        m_nTaken += static_cast<std::size_t>(end - first);
        if (end == m_Ahead.end()) continue;
        ++m_nTaken;
        return line.size() <= cbMost ? LineEnd::Whole : LineEnd::TooLong;
    }
    return line.size() <= cbMost ? LineEnd::CutOff : LineEnd::TooLong;
}

std::size_t CByteSource::Read(std::span<std::uint8_t> bytes) {
    const std::size_t cbBuffered = std::min(bytes.size(), m_Ahead.size() - m_nTaken);
    std::copy_n(m_Ahead.begin() + static_cast<std::ptrdiff_t>(m_nTaken), cbBuffered, bytes.begin());
    m_nTaken += cbBuffered;
    std::size_t cbRead = cbBuffered;
    while (cbRead < bytes.size()) {
        const std::size_t cb = ReadSome(bytes.subspan(cbRead));
        if (cb == 0) break;
        cbRead += cb;
    }
    return cbRead;
}

bool CByteSource::IsAtEnd() { return !FillAhead(); }

} // namespace vellumcaster
