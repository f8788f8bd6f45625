#pragma once

#include <string>

namespace vellumcaster {

/// A file that comes to stand under its name whole or not at all. Until `Commit` it has no name (where the file system
/// knows no such files, one beside the target's), so whatever ends the program, an earlier file of that name keeps its
/// content; its permissions pass on to the new one. A symbolic link is followed.
///
/// One thread at a time. A call that fails says why in `errno`.
class CNewFile {
public:
    CNewFile() = default;
    CNewFile(const CNewFile&) = delete;
    CNewFile& operator=(const CNewFile&) = delete;
    /// What was not committed is gone.
    ~CNewFile();

    /// \param path  UTF-8; the file need not be there yet. Called once.
    /// \return false, as for a target that may not be written, or is no regular file.
    [[nodiscard]] bool Open(const std::string& path);

    /// Where to write; -1 before `Open` and after `Commit`.
    [[nodiscard]] int Descriptor() const { return m_fd; }

    /// Waits until what was written is on the disk.
    [[nodiscard]] bool Flush() const;

    /// Closes the file and gives it its name. \return false, and an earlier file still stands.
    [[nodiscard]] bool Commit();

    /// The file that the name stands for, behind symbolic links.
    [[nodiscard]] const std::string& Target() const { return m_Target; }

private:
    bool OpenUnnamed();
    template <class Take>
    bool TakeInterimName(const Take& take);

    std::string m_Target;
    std::string m_Interim; ///< the name that the file has until it is committed; empty: none
    int m_fd = -1;
};

} // namespace vellumcaster
