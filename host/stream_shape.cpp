#include "host/stream_shape.h"

#include "host/refusal.h"

#include <algorithm>
#include <array>
#include <charconv>
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
    const std::size_t colon = text.find(':');
    const char* pEndOfNumber = text.data() + std::min(colon, text.size());
    PixelSwitch change;
    const auto [end, error] = std::from_chars(text.data(), pEndOfNumber, change.nFrame);
    const bool bNumber = error == std::errc() && end == pEndOfNumber && change.nFrame > 0;
    if (!bNumber || colon == std::string::npos || colon + 1 == text.size())
        throw Refusal("--switch " + text + ": what is wanted is N:FORMAT, with a frame from 1 on");
    change.pixels = text.substr(colon + 1);
    return change;
}

FrameMemory ParseFrameMemory(const std::string& text) {
    const auto* const named =
        std::find_if(memories.begin(), memories.end(), [&](const auto& memory) { return memory.first == text; });
    if (named != memories.end()) return named->second;
    throw Refusal("--memory " + text + ": what is wanted is passed, copied, read-only or slow");
}

} // namespace vellumcaster
