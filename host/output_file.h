#pragma once

#include "platform/kernel/new_file.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace vellumcaster {

/// A program's output: a file that comes to stand under its name whole or not at all, by `Commit`. A target that is no
/// regular file (a pipe, a device) and standard output are written directly.
///
/// One thread at a time. Every failure is a `Refusal` that names the target.
class COutputFile {
public:
    /// \param path  "-" is standard output.
    explicit COutputFile(const std::string& path);
    COutputFile(const COutputFile&) = delete;
    COutputFile& operator=(const COutputFile&) = delete;
    ~COutputFile();

    void Write(std::span<const std::uint8_t> bytes);
    void Write(std::string_view text);

    /// Ends the writing and gives the file its name.
    void Commit();

    /// Whether the target is the file that is open under a descriptor.
    [[nodiscard]] bool IsSameFileAs(int fd) const;

private:
    [[nodiscard]] bool IsDirect() const { return m_fdDirect >= 0; }
    [[noreturn]] void Refuse(int error) const;

    std::string m_Name;  ///< for sentences
    int m_fdDirect = -1; ///< of a target that is written directly
    CNewFile m_File;     ///< of any other
};

} // namespace vellumcaster
