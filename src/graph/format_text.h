#pragma once

#include <vellumcaster/types.h>

#include <array>
#include <span>
#include <string_view>

namespace vellumcaster {

/// A text of at most `cch` - 1 characters held by value, for where a buffer would be in the way.
template <std::size_t cch>
class CShortText {
public:
    [[nodiscard]] std::span<char> Buffer() { return m_Text; }
    [[nodiscard]] const char* c_str() const { return m_Text.data(); }
    operator std::string_view() const { return m_Text.data(); } // NOLINT(google-explicit-constructor)

private:
    std::array<char, cch> m_Text{};
};

/// Bytes of the longest text of each formatter, with the closing zero.
inline constexpr std::size_t cchFourCC = 5;
inline constexpr std::size_t cchSubtypeCode = 13;
inline constexpr std::size_t cchRefTime = 23;
inline constexpr std::size_t cchGrouped = 27;

/// The four characters of a code, lowest byte first, are all printable ASCII.
[[nodiscard]] constexpr bool IsPrintableFourCC(DWORD code) {
    for (int nShift = 0; nShift < 32; nShift += 8)
        if (const DWORD byte = code >> nShift & 0xFF; byte < ' ' || byte > '~') return false;
    return true;
}

// Each formatter below writes a zero-ended text, cut where the buffer is too short for it, and answers the buffer.
// An empty buffer is left alone, and the answer is an empty text then.

/// Copies `text` as the formatters do.
const char* CopyText(std::string_view text, std::span<char> buffer);

/// Four characters, or nothing for a code that is not printable.
const char* FormatFourCC(DWORD code, std::span<char> buffer);

/// The name of a video subtype's code or a bitmap's compression word: "YV12", "RGB32"; in hex where it has none.
const char* FormatSubtypeCode(DWORD code, std::span<char> buffer);

/// Seconds, milliseconds and the rest in units of 100 ns, which is left out where it is 0: -0.500, 1.000'0001.
/// \param t  units of 100 ns.
const char* FormatRefTime(REFERENCE_TIME t, std::span<char> buffer);

/// Decimal digits in groups of three with blanks between them: 1 000 000.
const char* FormatGrouped(std::int64_t value, std::span<char> buffer);

// The same, by value.

[[nodiscard]] inline CShortText<cchRefTime> FormatRefTime(REFERENCE_TIME t) {
    CShortText<cchRefTime> text;
    FormatRefTime(t, text.Buffer());
    return text;
}

[[nodiscard]] inline CShortText<cchGrouped> FormatGrouped(std::int64_t value) {
    CShortText<cchGrouped> text;
    FormatGrouped(value, text.Buffer());
    return text;
}

} // namespace vellumcaster
