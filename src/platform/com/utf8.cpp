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

/// How a character begins whose first byte is masked so, and the least that takes as many bytes.
struct Utf8Form {
    unsigned char mask;
    unsigned char lead;
    int nContinuations;
    char32_t least;
};

constexpr Utf8Form utf8Forms[] = {
    {0x80, 0x00, 0, 0},
    {0xE0, 0xC0, 1, 0x80},
    {0xF0, 0xE0, 2, 0x800},
    {0xF8, 0xF0, 3, 0x10000},
};

constexpr bool IsScalarValue(char32_t c) { return c <= 0x10FFFF && !IsHighSurrogate(c) && !IsLowSurrogate(c); }

/// Reads a character of this form from the front. \return whether there is a well-formed one.
bool ReadCharacter(std::string_view text, const Utf8Form& form, char32_t& c) {
    const auto byteAt = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    if ((byteAt(0) & form.mask) != form.lead || text.size() <= static_cast<std::size_t>(form.nContinuations))
        return false;
    c = byteAt(0) & static_cast<unsigned char>(~form.mask);
    for (std::size_t i = 1; i <= static_cast<std::size_t>(form.nContinuations); ++i) {
        if ((byteAt(i) & 0xC0) != 0x80) return false;
        c = c << 6 | (byteAt(i) & 0x3F);
    }
    return c >= form.least && IsScalarValue(c);
}

/// Takes the first character off `rest`, which is not empty.
char32_t TakeCharacter(std::string_view& rest) {
    for (const Utf8Form& form : utf8Forms) {
        char32_t c = 0;
        if (!ReadCharacter(rest, form, c)) continue;
        rest.remove_prefix(static_cast<std::size_t>(form.nContinuations) + 1);
        return c;
    }
    rest.remove_prefix(1);
    return replacement;
}

void AppendUtf16(std::u16string& text, char32_t c) {
    if (c < 0x10000) {
        text += static_cast<char16_t>(c);
        return;
    }
    text += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
    text += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
}

} // namespace

std::string ToUtf8(std::u16string_view text) {
    std::string utf8;
    while (!text.empty())
        AppendUtf8(utf8, TakeCharacter(text));
    return utf8;
}

std::u16string FromUtf8(std::string_view text) {
    std::u16string utf16;
    while (!text.empty())
        AppendUtf16(utf16, TakeCharacter(text));
    return utf16;
}

} // namespace vellumcaster
