#include "host/stream_shape.h"

#include "host/frame_option.h"
#include "host/refusal.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace vellumcaster {

namespace {

constexpr std::array<std::pair<std::string_view, FrameMemory>, 4> memories{{{"passed", FrameMemory::Passed},
                                                                            {"copied", FrameMemory::Copied},
                                                                            {"read-only", FrameMemory::ReadOnly},
                                                                            {"slow", FrameMemory::Slow}}};

} // namespace

PixelSwitch ParsePixelSwitch(const std::string& text) {
    const std::optional<FrameOption> option = ParseFrameOption(text);
    if (!option || option->nFrame == 0)
        throw Refusal("--switch " + text + ": what is wanted is N:FORMAT, with a frame from 1 on");
    return {option->nFrame, option->text};
}

FrameMemory ParseFrameMemory(const std::string& text) {
    const auto* const named =
        std::find_if(memories.begin(), memories.end(), [&](const auto& memory) { return memory.first == text; });
    if (named != memories.end()) return named->second;
    throw Refusal("--memory " + text + ": what is wanted is passed, copied, read-only or slow");
}

} // namespace vellumcaster
