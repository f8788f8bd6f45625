#include "host/y4m_reader.h"

#include "host/refusal.h"

namespace vellumcaster {

namespace {

std::string ReadHeaderLine(CByteSource& source) {
    if (source.IsAtEnd()) throw Refusal(source.Name() + " is empty");
    std::optional<std::string> line = source.ReadLine(cbLongestY4mLine);
    if (!line) throw Refusal(source.Name() + " does not start with a whole YUV4MPEG2 header");
    return *std::move(line);
}

bool IsFrameLine(const std::string& line) { return line == "FRAME" || line.starts_with("FRAME "); }

} // namespace

CY4mReader::CY4mReader(CByteSource& source)
    : m_Source(source), m_HeaderLine(ReadHeaderLine(source)), m_Header(ParseY4mHeader(m_HeaderLine)) {}

bool CY4mReader::ReadFrame(std::string& line, std::span<std::uint8_t> frame) {
    if (m_Source.IsAtEnd()) return false;
    std::optional<std::string> read = m_Source.ReadLine(cbLongestY4mLine);
    if (!read || !IsFrameLine(*read))
        throw Refusal(m_Source.Name() + " has no FRAME line where frame " + std::to_string(m_nFrames) +
                      " should begin");
    const std::size_t cb = m_Source.Read(frame);
    if (cb < frame.size())
        throw Refusal(m_Source.Name() + " is cut off in frame " + std::to_string(m_nFrames) + ", after " +
                      std::to_string(cb) + " of " + std::to_string(frame.size()) + " bytes");
    line = *std::move(read);
    ++m_nFrames;
    return true;
}

} // namespace vellumcaster
