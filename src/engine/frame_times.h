#pragma once

#include <vellumcaster/types.h>

#include <optional>

namespace vellumcaster {

/// What a frame says of its times, as far as it does.
struct FrameTimes {
    std::optional<LONGLONG> mediaStart; ///< in the units of the source's media times; both or neither
    std::optional<LONGLONG> mediaEnd;
    std::optional<REFERENCE_TIME> start; ///< in units of 100 ns
    std::optional<REFERENCE_TIME> stop;
};

} // namespace vellumcaster
