#pragma once

#include <fcntl.h>

namespace vellumcaster {

/// Lets a pipe hold as much as the system grants, which spares most of the changes between the programs at its
/// ends. Does nothing to what is no pipe.
inline void WidenPipe(int fd) {
    constexpr int cbWide = 1 << 20;
    static_cast<void>(fcntl(fd, F_SETPIPE_SZ, cbWide)); // NOLINT(cppcoreguidelines-pro-type-vararg)
}

} // namespace vellumcaster
