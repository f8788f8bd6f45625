#pragma once

#include "host/byte_source.h"
#include "host/y4m_header.h"

namespace vellumcaster {

/// The frames of a YUV4MPEG2 clip, one after the other. Every failure is a `Refusal`.
class CY4mReader {
public:
    /// Reads the header. \param source  alive as long as the reader.
    explicit CY4mReader(CByteSource& source);

    [[nodiscard]] const Y4mHeader& Header() const { return m_Header; }
    /// As it came, without its end.
    [[nodiscard]] const std::string& HeaderLine() const { return m_HeaderLine; }

    /// Reads the next frame.
    /// \param line  receives the line before the frame, as it came.
    /// \param frame  receives the planes; as large as `FrameSize` says.
    /// \return false when the clip has ended.
    [[nodiscard]] bool ReadFrame(std::string& line, std::span<std::uint8_t> frame);

private:
    CByteSource& m_Source;
    std::string m_HeaderLine;
    Y4mHeader m_Header;
    std::int64_t m_nFrames = 0; ///< read so far
};

} // namespace vellumcaster
