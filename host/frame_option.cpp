#include "host/frame_option.h"

#include <algorithm>
#include <charconv>

namespace vellumcaster {

std::optional<FrameOption> ParseFrameOption(const std::string& text) {
    const std::size_t colon = text.find(':');
    const char* pEndOfNumber = text.data() + std::min(colon, text.size());
    FrameOption option;
    const auto [end, error] = std::from_chars(text.data(), pEndOfNumber, option.nFrame);
    const bool bNumber = error == std::errc() && end == pEndOfNumber && option.nFrame >= 0;
    if (!bNumber || colon == std::string::npos || colon + 1 == text.size()) return {};
    option.text = text.substr(colon + 1);
    return option;
}

} // namespace vellumcaster
