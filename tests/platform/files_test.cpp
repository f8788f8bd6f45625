#include "platform/kernel/files.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

namespace vellumcaster {
namespace {

/// A folder of the test's own, which goes with it.
class Files : public ::testing::Test {
protected:
    Files() { std::filesystem::create_directory(m_folder); }
    ~Files() override { std::filesystem::remove_all(m_folder); }

    [[nodiscard]] std::string Path(const std::string& name) const { return m_folder + "/" + name; }

    [[nodiscard]] std::string Content(const std::string& name) const {
        std::ifstream in(Path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    static HANDLE Read(const std::string& path) {
        return CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    static HANDLE Write(const std::string& path) {
        return CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    }

private:
    std::string m_folder = ::testing::TempDir() + "files_test." + std::to_string(getpid());
};

TEST_F(Files, HoldWhatWasWrittenAndAreEmptiedByCreating) {
    for (const std::string text : {"a longer text", "short"}) {
        CFileHandle file(Write(Path("a")));
        ASSERT_TRUE(file.IsOpen());
        DWORD cb = 0;
        EXPECT_TRUE(WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &cb, nullptr));
        EXPECT_EQ(cb, text.size());
        EXPECT_TRUE(FlushFileBuffers(file.Get()));
        EXPECT_TRUE(file.Close());
        EXPECT_EQ(Content("a"), text);
    }

    CFileHandle file(Read(Path("a")));
    std::array<char, 9> text{};
    DWORD cb = 0;
    LONGLONG cbFile = 0;
    EXPECT_TRUE(GetFileSizeEx(file.Get(), &cbFile));
    EXPECT_EQ(cbFile, 5);
    EXPECT_EQ(SetFilePointer(file.Get(), 2, nullptr, FILE_BEGIN), 2u);
    EXPECT_TRUE(ReadFile(file.Get(), text.data(), text.size(), &cb, nullptr));
    EXPECT_EQ(std::string(text.data(), cb), "ort") << "fewer bytes at the end are no failure";

    LONG high = 3;
    EXPECT_EQ(SetFilePointer(file.Get(), static_cast<LONG>(0xFFFFFFF0), &high, FILE_BEGIN), 0xFFFFFFF0u);
    EXPECT_EQ(high, 3) << "the low half has no sign";
    EXPECT_EQ(SetFilePointer(file.Get(), -1, nullptr, FILE_BEGIN), INVALID_SET_FILE_POINTER);
    EXPECT_EQ(GetLastError(), ERROR_NEGATIVE_SEEK);
}

TEST_F(Files, AreOpenForOneCallerAndSurviveARefusedOne) {
    std::ofstream(Path("a")) << "text";
    {
        const CFileHandle first(Read(Path("a")));
        ASSERT_TRUE(first.IsOpen());
        EXPECT_EQ(Read(Path("a")), INVALID_HANDLE_VALUE);
        EXPECT_EQ(GetLastError(), ERROR_SHARING_VIOLATION);
        EXPECT_EQ(Write(Path("a")), INVALID_HANDLE_VALUE);
        EXPECT_EQ(GetLastError(), ERROR_SHARING_VIOLATION);
    }
    EXPECT_EQ(Content("a"), "text");
    EXPECT_TRUE(CFileHandle(Write(Path("a"))).IsOpen()) << "closed by its owner";
    EXPECT_EQ(Content("a"), "");
}

TEST_F(Files, AreRefusedWithThePlatformsNumber) {
    std::ofstream(Path("a")) << "text";
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    std::filesystem::create_symlink("loop", Path("loop"));
    const struct {
        std::string path;
        DWORD onRead, onWrite;
    } cases[] = {
        {Path("none"), ERROR_FILE_NOT_FOUND, ERROR_SUCCESS},
        {Path("none/a"), ERROR_PATH_NOT_FOUND, ERROR_PATH_NOT_FOUND},
        {Path("a/b"), ERROR_PATH_NOT_FOUND, ERROR_PATH_NOT_FOUND},
        {"", ERROR_PATH_NOT_FOUND, ERROR_PATH_NOT_FOUND},
        {Path("."), ERROR_ACCESS_DENIED, ERROR_ACCESS_DENIED},
        {Path("pipe"), ERROR_NOT_SUPPORTED, ERROR_NOT_SUPPORTED},
        {"/dev/full", ERROR_NOT_SUPPORTED, ERROR_NOT_SUPPORTED},
        {Path("loop"), ERROR_CANT_RESOLVE_FILENAME, ERROR_CANT_RESOLVE_FILENAME},
        {Path(std::string(256, 'n')), ERROR_FILENAME_EXCED_RANGE, ERROR_FILENAME_EXCED_RANGE},
    };
    for (const auto& c : cases) {
        SetLastError(ERROR_SUCCESS);
        EXPECT_FALSE(CFileHandle(Read(c.path)).IsOpen()) << c.path;
        EXPECT_EQ(GetLastError(), c.onRead) << c.path;
        SetLastError(ERROR_SUCCESS);
        EXPECT_EQ(CFileHandle(Write(c.path)).IsOpen(), c.onWrite == ERROR_SUCCESS) << c.path;
        EXPECT_EQ(GetLastError(), c.onWrite) << c.path;
    }
    EXPECT_EQ(CreateFileA(Path("a").c_str(), GENERIC_READ, 1, nullptr, OPEN_EXISTING, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER) << "sharing";
}

TEST(LastError, BelongsToItsThread) {
    SetLastError(ERROR_DISK_FULL);
    std::thread([] {
        EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
        SetLastError(ERROR_ACCESS_DENIED);
    }).join();
    EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);
}

} // namespace
} // namespace vellumcaster
