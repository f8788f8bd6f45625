#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vellumcaster {

/// Whose memory a stream's frames are in, and so how they come through the filter.
enum class FrameMemory {
    Passed,   ///< one memory for both sides of the filter: nothing is copied
    Copied,   ///< the sink's own: a copy
    ReadOnly, ///< the source's, which may not be written: a copy
    Slow,     ///< read-only, and a sink whose memory is slow to read: two copies
};

/// From a frame on, counted from 0, the stream is in another pixel format.
struct PixelSwitch {
    std::int64_t nFrame = 0;
    std::string pixels;
};

/// What a stream through the filter is like.
struct StreamShape {
    std::optional<std::string> pixels; ///< the name of the pixel format; none: the clip's own
    bool bBottomUp = false;            ///< frames in RGB have their bottom row first
    std::vector<PixelSwitch> switches; ///< in any order
    FrameMemory memory = FrameMemory::Passed;
};

/// Reads "N:FORMAT", with N above 0. A `Refusal` says what is wrong with it.
[[nodiscard]] PixelSwitch ParsePixelSwitch(const std::string& text);

/// Reads "passed", "copied", "read-only" or "slow". A `Refusal` says what is wrong with it.
[[nodiscard]] FrameMemory ParseFrameMemory(const std::string& text);

} // namespace vellumcaster
