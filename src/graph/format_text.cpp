#include "graph/format_text.h"

#include "image/picture_format.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace vellumcaster {

namespace {

struct NamedCode {
    DWORD code;
    const char* pszName;
};

constexpr std::array<NamedCode, 14> namedCodes{{
    {0, "BI_RGB"},
    {1, "BI_RLE8"},
    {2, "BI_RLE4"},
    {3, "BI_BITFIELDS"},
    {0xE436EB78, "RGB1"},
    {0xE436EB79, "RGB4"},
    {format_code::RGB8, "RGB8"},
    {format_code::RGB565, "RGB565"},
    {format_code::RGB555, "RGB555"},
    {format_code::RGB24, "RGB24"},
    {format_code::RGB32, "RGB32"},
    {0x297C55AF, "ARGB1555"},
    {0x6E6415E6, "ARGB4444"},
    {format_code::ARGB32, "ARGB32"},
}};

constexpr REFERENCE_TIME unitsPerMillisecond = 10000;

unsigned Magnitude(std::int64_t small) { return static_cast<unsigned>(std::abs(small)); }

/// Whole seconds. A negative time of less than one keeps its sign.
std::string_view PrintSeconds(REFERENCE_TIME t, std::span<char> room) {
    constexpr std::int64_t billion = 1'000'000'000;
    const std::int64_t s = t / (1000 * unitsPerMillisecond);
    const int high = static_cast<int>(s / billion);
    const unsigned low = Magnitude(s % billion);
    const char* pszSign = t < 0 && high == 0 ? "-" : "";
    const int cch = high != 0 ? std::snprintf(room.data(), room.size(), "%d%09u", high, low)
                              : std::snprintf(room.data(), room.size(), "%s%u", pszSign, low);
    return {room.data(), static_cast<std::size_t>(cch)};
}

} // namespace

const char* CopyText(std::string_view text, std::span<char> buffer) {
    if (buffer.empty()) return "";
    const std::size_t cch = text.copy(buffer.data(), buffer.size() - 1);
    buffer[cch] = 0;
    return buffer.data();
}

const char* FormatFourCC(DWORD code, std::span<char> buffer) {
    if (!IsPrintableFourCC(code)) return CopyText({}, buffer);
    std::array<char, 4> text{};
    for (char& c : text) {
        c = static_cast<char>(code & 0xFF);
        code >>= 8;
    }
    return CopyText({text.data(), text.size()}, buffer);
}

const char* FormatSubtypeCode(DWORD code, std::span<char> buffer) {
    if (IsPrintableFourCC(code)) return FormatFourCC(code, buffer);
    const auto* const named =
        std::find_if(namedCodes.begin(), namedCodes.end(), [code](const NamedCode& row) { return row.code == code; });
    if (named != namedCodes.end()) return CopyText(named->pszName, buffer);
    std::array<char, cchSubtypeCode> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), "0x%X", code));
    return CopyText(text.data(), buffer);
}

const char* FormatRefTime(REFERENCE_TIME t, std::span<char> buffer) {
    std::array<char, cchRefTime> text{};
    const std::size_t cchSeconds = PrintSeconds(t, text).size();
    const std::span<char> behind = std::span(text).subspan(cchSeconds);
    const unsigned milliseconds = Magnitude(t / unitsPerMillisecond % 1000);
    const unsigned rest = Magnitude(t % unitsPerMillisecond);
    if (rest != 0)
        static_cast<void>(std::snprintf(behind.data(), behind.size(), ".%03u'%04u", milliseconds, rest));
    else
        static_cast<void>(std::snprintf(behind.data(), behind.size(), ".%03u", milliseconds));
    return CopyText(text.data(), buffer);
}

const char* FormatGrouped(std::int64_t value, std::span<char> buffer) {
    std::array<char, cchGrouped> text{};
    std::size_t first = text.size() - 1;
    auto rest = static_cast<std::uint64_t>(value);
    if (value < 0) rest = 0 - rest;
    for (int nDigits = 0; nDigits == 0 || rest != 0; ++nDigits, rest /= 10) {
        if (nDigits != 0 && nDigits % 3 == 0) text[--first] = ' ';
        text[--first] = static_cast<char>('0' + rest % 10);
    }
    if (value < 0) text[--first] = '-';
    return CopyText(text.data() + first, buffer);
}

} // namespace vellumcaster
