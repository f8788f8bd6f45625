#include "host/progress_line.h"

#include <cstdio>

#include <unistd.h>

namespace vellumcaster {

namespace {

constexpr std::chrono::milliseconds writeInterval{100};

} // namespace

CProgressLine::CProgressLine() : m_bTerminal(isatty(STDERR_FILENO) == 1) {}

CProgressLine::~CProgressLine() {
    if (!m_bTerminal || m_nFrames == 0) return;
    Write(Clock::now());
    static_cast<void>(std::fputc('\n', stderr));
}

void CProgressLine::Show(std::int64_t nFrames) {
    m_nFrames = nFrames;
    if (!m_bTerminal) return;
    const Clock::time_point now = Clock::now();
    if (now < m_NextWrite) return;
    m_NextWrite = now + writeInterval;
    Write(now);
}

void CProgressLine::Write(Clock::time_point now) {
    const double seconds = std::chrono::duration<double>(now - m_Start).count();
    const double rate = seconds > 0 ? static_cast<double>(m_nFrames) / seconds : 0;
    static_cast<void>(std::fprintf(stderr, "\rframe %lld, %.0f frames/s  ", static_cast<long long>(m_nFrames), rate));
}

} // namespace vellumcaster
