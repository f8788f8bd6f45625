#pragma once

#include <vellumcaster/create.h>

#include <string>
#include <string_view>

namespace vellumcaster {

/// The same text in UTF-8. A surrogate without its partner becomes U+FFFD.
[[nodiscard]] std::string ToUtf8(std::u16string_view text);

} // namespace vellumcaster
