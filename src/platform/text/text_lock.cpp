#include "platform/text/text_lock.h"

namespace vellumcaster {

CCriticalSection& TextLock() {
    static CCriticalSection& cs = *new CCriticalSection; // also for what is let go when the process ends
    return cs;
}

} // namespace vellumcaster
