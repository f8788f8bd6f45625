#pragma once

#include <string>
#include <string_view>

namespace vellumcaster {

/// The same text in UTF-8. A surrogate without its partner becomes U+FFFD.
[[nodiscard]] std::string ToUtf8(std::u16string_view text);

/// The same text in UTF-16. Each byte that begins no well-formed character becomes U+FFFD.
[[nodiscard]] std::u16string FromUtf8(std::string_view text);

} // namespace vellumcaster
