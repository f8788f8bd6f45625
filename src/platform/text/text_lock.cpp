#include "platform/text/text_lock.h"

// NOLINTBEGIN(bugprone-reserved-identifier) the names that the sanitizers look for, where a program is built with them
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions();

/// Fontconfig's records point into each other by distances, which the checker does not follow: it takes all that is
/// cached there for lost.
const char* __lsan_default_suppressions() { return "leak:libfontconfig\n"; }

/// Pango asks Fontconfig on a thread of its own, and the checker does not see the two wait for each other.
const char* __tsan_default_suppressions() { return "called_from_lib:libfontconfig.so\n"; }
// NOLINTEND(bugprone-reserved-identifier)

namespace vellumcaster {

CCriticalSection& TextLock() {
    static CCriticalSection& cs = *new CCriticalSection; // also for what is let go when the process ends
    return cs;
}

} // namespace vellumcaster
