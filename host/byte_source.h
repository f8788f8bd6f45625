#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vellumcaster {

/// How the reading of a line ended.
enum class LineEnd {
    Whole,
    CutOff,  ///< by the end of the bytes
    TooLong, ///< before its end was seen
};

/// Bytes from a file or from standard input, in order. One thread at a time. Every failure is a `Refusal` that
/// names the source.
class CByteSource {
public:
    /// \param path  "-" is standard input.
    explicit CByteSource(const std::string& path);
    CByteSource(const CByteSource&) = delete;
    CByteSource& operator=(const CByteSource&) = delete;
    ~CByteSource();

    /// Reads the next line. \param line  receives what was read of it, without its end; keeps its memory.
    [[nodiscard]] LineEnd ReadLine(std::string& line, std::size_t cbMost);

    /// Fills `bytes` as far as there are any. \return how many were read.
    [[nodiscard]] std::size_t Read(std::span<std::uint8_t> bytes);

    /// Whether no byte is left.
    [[nodiscard]] bool IsAtEnd();

    [[nodiscard]] const std::string& Name() const { return m_Name; }
    [[nodiscard]] int Descriptor() const { return m_fd; }

private:
    [[nodiscard]] std::size_t ReadSome(std::span<std::uint8_t> bytes);
    bool FillAhead();

    std::string m_Name;
    int m_fd;
    std::vector<std::uint8_t> m_Ahead;
    std::size_t m_nTaken = 0; ///< of `m_Ahead`
};

} // namespace vellumcaster
