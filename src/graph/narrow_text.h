#pragma once

#include "platform/com/utf8.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace vellumcaster {

/// Puts a text into a fixed array as UTF-8, cut between two characters where it does not fit; the closing zero always
/// does. Throws
/// `std::bad_alloc`.
inline void NarrowText(std::u16string_view text, std::span<char> narrow) {
    const std::string utf8 = ToUtf8(text);
    std::size_t cb = std::min(utf8.size(), narrow.size() - 1);
    const auto isInsideCharacter = [&] { return cb < utf8.size() && (utf8[cb] & 0xC0) == 0x80; };
    while (isInsideCharacter())
        --cb;
    std::copy_n(utf8.begin(), cb, narrow.begin());
    std::fill(narrow.begin() + static_cast<std::ptrdiff_t>(cb), narrow.end(), '\0');
}

/// The way back, into an array of UTF-16 units.
inline void WidenText(std::string_view text, std::span<OLECHAR> wide) {
    const std::u16string utf16 = FromUtf8(text);
    const std::size_t cch = std::min(utf16.size(), wide.size() - 1);
    std::copy_n(utf16.begin(), cch, wide.begin());
    std::fill(wide.begin() + static_cast<std::ptrdiff_t>(cch), wide.end(), u'\0');
}

} // namespace vellumcaster
