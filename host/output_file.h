#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace vellumcaster {

/// A file that comes to stand under its name whole or not at all. Until `Commit` it has no name (where the file
/// system knows no such files, one beside the target's), so whatever ends the program, an earlier file of that name
/// keeps its content; its permissions pass on to the new one. A target that is no regular file (a pipe, a device) and
/// standard output are written directly.
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
    void OpenInterim();
    bool OpenUnnamed();
    template <class Take>
    void TakeInterimName(const Take& take);
    [[noreturn]] void Refuse(int error) const;

    std::string m_Name;    ///< for sentences
    std::string m_Target;  ///< where the file is to stand; empty: it is written directly
    std::string m_Interim; ///< the name it has until then; empty: none
    int m_fd = -1;
};

} // namespace vellumcaster
