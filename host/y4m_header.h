#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vellumcaster {

/// A number of frames a second.
struct FrameRate {
    std::int64_t numerator = 0;
    std::int64_t denominator = 0;
};

enum class ChromaLayout {
    Planar420, ///< whatever the siting of the chroma samples
    Planar422,
};

/// What the header of a YUV4MPEG2 stream says of its frames. The line itself is passed on as it came.
struct Y4mHeader {
    std::int32_t width = 0;  ///< pixels, even
    std::int32_t height = 0; ///< pixels, even in 4:2:0
    ChromaLayout layout = ChromaLayout::Planar420;
    std::optional<FrameRate> rate;
    bool bFullRange = false;
};

/// Longest header line, and longest line before a frame, in bytes.
inline constexpr std::size_t cbLongestY4mLine = 4096;

/// Whether a first line, whole or not, is that of a YUV4MPEG2 stream.
[[nodiscard]] bool IsY4mHeader(std::string_view line);

/// Reads the first line of a stream, without its end. A `Refusal` says what is wrong with it: no YUV4MPEG2, a width or
/// a height that is missing, no number, odd or too large, or a chroma layout other than 8-bit 4:2:0 and 4:2:2.
[[nodiscard]] Y4mHeader ParseY4mHeader(std::string_view line);

/// Bytes of one frame.
[[nodiscard]] std::size_t FrameSize(const Y4mHeader& header);

} // namespace vellumcaster
