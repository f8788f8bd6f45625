#pragma once

#include "platform/com/utf8.h"

#include <algorithm>
#include <string>

namespace vellumcaster {

/// A text from anywhere in one line for a terminal: control characters become question marks, those from U+0080 to
/// U+009F too, which some terminals obey.
[[nodiscard]] inline std::string PlainText(std::string utf8) {
    std::replace_if(
        utf8.begin(), utf8.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
    for (std::size_t i = 0; (i = utf8.find('\xC2', i)) != std::string::npos; ++i)
        if (i + 1 < utf8.size() && static_cast<unsigned char>(utf8[i + 1]) < 0xA0) utf8.replace(i, 2, 1, '?');
    return utf8;
}

[[nodiscard]] inline std::string PlainText(std::u16string_view text) { return PlainText(ToUtf8(text)); }

} // namespace vellumcaster
