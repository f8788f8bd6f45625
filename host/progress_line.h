#pragma once

#include <chrono>
#include <cstdint>

namespace vellumcaster {

/// A line on the terminal that says how far a run is: "frame 120, 843 frames/s". Where standard error is no terminal
/// it says nothing.
class CProgressLine {
public:
    CProgressLine();
    CProgressLine(const CProgressLine&) = delete;
    CProgressLine& operator=(const CProgressLine&) = delete;
    /// Ends the line.
    ~CProgressLine();

    /// \param nFrames  done so far. Written anew ten times a second at most.
    void Show(std::int64_t nFrames);

private:
    using Clock = std::chrono::steady_clock;

    void Write(Clock::time_point now);

    bool m_bTerminal;
    Clock::time_point m_Start = Clock::now();
    Clock::time_point m_NextWrite = m_Start;
    std::int64_t m_nFrames = 0;
};

} // namespace vellumcaster
