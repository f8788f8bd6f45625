#include "platform/kernel/trace.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <limits>

namespace vellumcaster {

namespace {

/// One conversion of a format: "%" flags width precision, then the letter.
struct Conversion {
    std::string prefix = "%";
    char letter = 0;
};

/// Reads the conversion at the head of `rest`, which starts behind the percent sign.
Conversion TakeConversion(std::string_view& rest) {
    const std::size_t cchPrefix = std::min(rest.find_first_not_of("-+ #0123456789."), rest.size());
    Conversion conversion;
    conversion.prefix += rest.substr(0, cchPrefix);
    rest.remove_prefix(cchPrefix);
    if (rest.starts_with("I64")) rest.remove_prefix(3);
    while (rest.starts_with('h') || rest.starts_with('l'))
        rest.remove_prefix(1);
    if (!rest.empty()) {
        conversion.letter = rest.front();
        rest.remove_prefix(1);
    }
    return conversion;
}

template <class T>
std::string Print(const Conversion& conversion, const char* pszLength, T value) {
    const std::string format = conversion.prefix + pszLength + conversion.letter;
    std::array<char, 512> text{};
    static_cast<void>(std::snprintf(text.data(), text.size(), format.c_str(), value));
    return text.data();
}

std::int64_t AsInteger(const TraceArgument& argument) {
    if (const auto* pReal = std::get_if<double>(&argument)) return static_cast<std::int64_t>(*pReal);
    if (const auto* pUnsigned = std::get_if<std::uint64_t>(&argument)) return static_cast<std::int64_t>(*pUnsigned);
    if (const auto* pSigned = std::get_if<std::int64_t>(&argument)) return *pSigned;
    return 0;
}

std::uint64_t AsUnsigned(const TraceArgument& argument) {
    const std::int64_t value = AsInteger(argument);
    const bool bNarrow = std::holds_alternative<std::int64_t>(argument) && value < 0 &&
                         value >= std::numeric_limits<std::int32_t>::min();
    return bNarrow ? static_cast<std::uint32_t>(value) : static_cast<std::uint64_t>(value);
}

std::string PrintArgument(const Conversion& conversion, const TraceArgument& argument) {
    switch (conversion.letter) {
    case 'd':
    case 'i': return Print(conversion, "ll", static_cast<long long>(AsInteger(argument)));
    case 'u':
    case 'x':
    case 'X': return Print(conversion, "ll", static_cast<unsigned long long>(AsUnsigned(argument)));
    case 'c': return Print(conversion, "", static_cast<int>(AsInteger(argument)));
    case 'f': {
        const auto* pReal = std::get_if<double>(&argument);
        return Print(conversion, "", pReal ? *pReal : static_cast<double>(AsInteger(argument)));
    }
    case 's': {
        const auto* pText = std::get_if<std::string_view>(&argument);
        return Print(conversion, "", pText ? std::string(*pText).c_str() : "?");
    }
    default: return "?";
    }
}

void WriteToStandardError(TraceCategory, TraceLevel, std::string_view line) {
    static_cast<void>(std::fwrite(line.data(), 1, line.size(), stderr));
}

std::atomic<TraceSink> g_sink = WriteToStandardError;

} // namespace

std::string FormatTraceLine(std::string_view format, std::span<const TraceArgument> arguments) {
    std::string line;
    while (!format.empty()) {
        const std::size_t cchPlain = std::min(format.find('%'), format.size());
        line += format.substr(0, cchPlain);
        format.remove_prefix(cchPlain);
        if (format.empty()) break;

        format.remove_prefix(1);
        const Conversion conversion = TakeConversion(format);
        if (conversion.letter == '%') {
            line += '%';
        } else if (arguments.empty()) {
            line += '?';
        } else {
            line += PrintArgument(conversion, arguments.front());
            arguments = arguments.subspan(1);
        }
    }
    return line;
}

TraceSink SetTraceSink(TraceSink sink) { return g_sink.exchange(sink ? sink : WriteToStandardError); }

void WriteTraceLine(TraceCategory category, TraceLevel level, std::string_view line) {
    g_sink.load()(category, level, line);
}

} // namespace vellumcaster
