#pragma once

#include <vellumcaster/types.h>

#include <string>

namespace vellumcaster {

/// The text that is laid out: valid UTF-8 with LF for every kind of line break but a last one, tabs and breaks as the
/// format word has them.
/// \return false for more than 65535 bytes.
[[nodiscard]] bool ReadText(const char* pszText, DWORD format, std::string& text);

/// Bytes in the longest line.
[[nodiscard]] std::size_t LongestLine(const std::string& text);

} // namespace vellumcaster
