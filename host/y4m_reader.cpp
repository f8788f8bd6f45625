#include "host/y4m_reader.h"

#include "host/refusal.h"

namespace vellumcaster {

namespace {

std::string ReadHeaderLine(CByteSource& source) {
    if (source.IsAtEnd()) throw Refusal(source.Name() + " is empty");
    std::string line;
    const LineEnd end = source.ReadLine(line, cbLongestY4mLine);
    if (!IsY4mHeader(line)) throw Refusal(source.Name() + " is no YUV4MPEG2 clip");
    if (end == LineEnd::CutOff) throw Refusal(source.Name() + " is cut off in its header");
    if (end == LineEnd::TooLong)
        throw Refusal(source.Name() + " has a header of more than " + std::to_string(cbLongestY4mLine) + " bytes");
    return line;
}

bool IsFrameLine(const std::string& line) { return line == "FRAME" || line.starts_with("FRAME "); }

} // namespace

CY4mReader::CY4mReader(CByteSource& source)
    : m_Source(source), m_HeaderLine(ReadHeaderLine(source)), m_Header(ParseY4mHeader(m_HeaderLine)) {}

bool CY4mReader::ReadFrame(std::string& line, std::span<std::uint8_t> frame) {
    if (m_Source.IsAtEnd()) return false;
    if (m_Source.ReadLine(line, cbLongestY4mLine) != LineEnd::Whole || !IsFrameLine(line))
        throw Refusal(m_Source.Name() + " has no FRAME line where frame " + std::to_string(m_nFrames) +
                      " should begin");
    const std::size_t cb = m_Source.Read(frame);
    if (cb < frame.size())
        throw Refusal(m_Source.Name() + " is cut off in frame " + std::to_string(m_nFrames) + ", after " +
                      std::to_string(cb) + " of " + std::to_string(frame.size()) + " bytes");
    ++m_nFrames;
    return true;
}

} // namespace vellumcaster
