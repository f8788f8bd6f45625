#pragma once

#include "platform/com/utf8.h"

#include <algorithm>
#include <string>

namespace vellumcaster {

/// A text from anywhere in one line for a terminal: control characters become question marks.
[[nodiscard]] inline std::string PlainText(std::string utf8) {
    std::replace_if(
        utf8.begin(), utf8.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
    return utf8;
}

[[nodiscard]] inline std::string PlainText(std::u16string_view text) { return PlainText(ToUtf8(text)); }

} // namespace vellumcaster
