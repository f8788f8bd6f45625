#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace vellumcaster {

struct AM_MEDIA_TYPE;
struct IMediaSample;

enum class TraceCategory : std::uint32_t {
    General = 0x20,
    ComCalls = 0x40,
};

enum class TraceLevel : int {
    CaughtFault = 1,
    Error = 2,
    Warning = 4,
    MainPath = 8,
    ChattyQuery = 10,
    SampleAccess = 12,
};

#ifdef VELLUM_TRACE
inline constexpr bool bTracing = true;
#else
inline constexpr bool bTracing = false;
#endif

/// Writes one line of diagnosis: `VELLUM_TRACE_LINE(category, level, format, arguments...)`. Where tracing is not
/// built in there is no call and no argument is evaluated, so nothing may depend on a trace having run.
#define VELLUM_TRACE_LINE(...)                                                                                         \
    do {                                                                                                               \
        if constexpr (::vellumcaster::bTracing) ::vellumcaster::Trace(__VA_ARGS__);                                    \
    } while (false)

/// One argument of a trace line. Each fits each conversion: the format says how to print, the type how to read.
using TraceArgument = std::variant<std::int64_t, std::uint64_t, double, std::string_view>;

template <class T>
TraceArgument ToTraceArgument(const T& value) {
    if constexpr (std::is_floating_point_v<T>)
        return static_cast<double>(value);
    else if constexpr (std::is_same_v<T, const char*> || std::is_same_v<T, char*>)
        return std::string_view(value ? value : "NULL");
    else if constexpr (std::is_pointer_v<T>)
        return std::uint64_t{reinterpret_cast<std::uintptr_t>(value)};
    else if constexpr (std::is_convertible_v<const T&, std::string_view>)
        return std::string_view(value);
    else if constexpr (std::is_signed_v<T>)
        return static_cast<std::int64_t>(value);
    else
        return static_cast<std::uint64_t>(value);
}

/// The text of a line. The format is that of printf: flags, width and precision as there, the conversions d, i,
/// u, x, X, c, s, f and %; size marks (h, l, ll, I64) are read over. Negative numbers under u, x and X print as
/// 32 bits where they fit, as a result code does. An argument that is missing prints as "?".
[[nodiscard]] std::string FormatTraceLine(std::string_view format, std::span<const TraceArgument> arguments);

/// Where lines go: standard error by default. Called on whatever thread traces.
using TraceSink = void (*)(TraceCategory category, TraceLevel level, std::string_view line);

/// Replaces the sink, null for the default. \return the earlier one.
TraceSink SetTraceSink(TraceSink sink);

void WriteTraceLine(TraceCategory category, TraceLevel level, std::string_view line);

/// See VELLUM_TRACE_LINE, by which every site calls it. A line that there is no memory for is lost.
template <class... Arguments>
void Trace(TraceCategory category, TraceLevel level, std::string_view format, const Arguments&... arguments) noexcept {
    try {
        const std::array<TraceArgument, sizeof...(Arguments)> all{ToTraceArgument(arguments)...};
        WriteTraceLine(category, level, FormatTraceLine(format, all));
    } catch (...) {
        return;
    }
}

/// Where a whole media type or sample passes by. Nothing is written: their fields stand in the lines of the sites.
inline void TraceMediaType(TraceCategory /*category*/, TraceLevel /*level*/, const AM_MEDIA_TYPE* /*pType*/,
                           std::string_view /*prefix*/) {}
inline void TraceSample(TraceCategory /*category*/, TraceLevel /*level*/, IMediaSample* /*pSample*/,
                        std::string_view /*prefix*/, bool /*bFlag*/) {}

} // namespace vellumcaster
