#include "platform/com/utf8.h"

namespace vellumcaster {

namespace {

constexpr char32_t replacement = 0xFFFD;

constexpr bool IsHighSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDBFF; }
constexpr bool IsLowSurrogate(char32_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

/// Takes the first character off `rest`, which is not empty.
char32_t TakeCharacter(std::u16string_view& rest) {
    const char32_t first = rest.front();
    rest.remove_prefix(1);
    if (IsLowSurrogate(first)) return replacement;
    if (!IsHighSurrogate(first)) return first;
    if (rest.empty() || !IsLowSurrogate(rest.front())) return replacement;
    const char32_t second = rest.front();
    rest.remove_prefix(1);
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

void AppendUtf8(std::string& text, char32_t c) {
    const auto continuation = [&](int shift) { text += static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xC0 | (c >> 6));
        continuation(0);
    } else if (c < 0x10000) {
        text += static_cast<char>(0xE0 | (c >> 12));
        continuation(6);
        continuation(0);
    } else {
        text += static_cast<char>(0xF0 | (c >> 18));
        continuation(12);
        continuation(6);
        continuation(0);
    }
}

} // namespace

std::string ToUtf8(std::u16string_view text) {
    std::string utf8;
    while (!text.empty())
        AppendUtf8(utf8, TakeCharacter(text));
    return utf8;
}

} // namespace vellumcaster
