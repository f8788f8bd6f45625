#pragma once

#include <csignal>

namespace vellumcaster {

/// Thrown where the program was asked to end by a signal, so that what stands half-done is cleared away on the way
/// out. No `std::exception`: nobody but the program's last lines has an answer to it.
struct Interruption {
    int nSignal;
};

/// From here on SIGINT, SIGTERM and SIGHUP, where they are not ignored, are kept for `EndIfInterrupted`. The second
/// of a kind ends the program on the spot.
void WatchForInterruptions();

/// Throws an `Interruption` when a signal has come in. A system call that waits is broken off by the signal.
void EndIfInterrupted();

/// While it lives, signals that interrupt come to the other threads: this one waits for what they do.
class CSignalsForOthers {
public:
    CSignalsForOthers();
    CSignalsForOthers(const CSignalsForOthers&) = delete;
    CSignalsForOthers& operator=(const CSignalsForOthers&) = delete;
    ~CSignalsForOthers();

private:
    sigset_t m_Before{};
};

/// Ends the program as the signal would have done by itself.
void EndBy(const Interruption& interruption);

} // namespace vellumcaster
