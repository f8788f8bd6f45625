#include "platform/com/file_stream.h"
#include "platform/com/memory_stream.h"
#include "platform/kernel/last_error.h"

#include <vellumcaster/counted_ptr.h>
#include <vellumcaster/results.h>

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace vellumcaster {
namespace {

namespace fs = std::filesystem;

std::string ReadAll(IStream& stream) {
    std::string text(100, '\0');
    ULONG cb = 0;
    EXPECT_EQ(stream.Read(text.data(), 100, &cb), S_OK);
    text.resize(cb);
    return text;
}

HRESULT WriteText(IStream& stream, std::string_view text) {
    ULONG cb = 0;
    const HRESULT hr = stream.Write(text.data(), static_cast<ULONG>(text.size()), &cb);
    EXPECT_EQ(cb, SUCCEEDED(hr) ? text.size() : 0);
    return hr;
}

TEST(MemoryStream, HasAPlaceThatMoves) {
    CComPtr<IStream> sp;
    const std::array<BYTE, 3> content{'a', 'b', 'c'};
    ASSERT_EQ(CreateMemoryStream(content, sp.Put()), S_OK);
    EXPECT_EQ(ReadAll(*sp), "abc");
    EXPECT_EQ(ReadAll(*sp), "") << "the end";
    EXPECT_EQ(WriteText(*sp, "de"), S_OK);
    const struct {
        LONGLONG move;
        DWORD origin;
        HRESULT hr;
        std::uint64_t place;
        // clang-format off
    } moves[] = {{1, STREAM_SEEK_SET, S_OK, 1},          {2, STREAM_SEEK_CUR, S_OK, 3},
                 {-1, STREAM_SEEK_END, S_OK, 4},         {-5, STREAM_SEEK_CUR, STG_E_INVALIDFUNCTION, 4},
                 {0, 3, STG_E_INVALIDFUNCTION, 4},       {INT64_MIN, STREAM_SEEK_SET, STG_E_INVALIDFUNCTION, 4},
                 {INT64_MAX, STREAM_SEEK_END, STG_E_INVALIDFUNCTION, 4}};
    // clang-format on
    for (const auto& move : moves) {
        std::uint64_t place = 0;
        EXPECT_EQ(sp->Seek(move.move, move.origin, &place), move.hr);
        EXPECT_EQ(place, move.place);
    }
    EXPECT_EQ(ReadAll(*sp), "e");
    EXPECT_EQ(sp->Seek(2, STREAM_SEEK_END, nullptr), S_OK);
    EXPECT_EQ(WriteText(*sp, "z"), S_OK);
    EXPECT_EQ(sp->Seek(0, STREAM_SEEK_SET, nullptr), S_OK);
    CComPtr<IStream> spCopy;
    ASSERT_EQ(CreateMemoryStream({}, spCopy.Put()), S_OK);
    std::uint64_t cbRead = 0, cbWritten = 0;
    EXPECT_EQ(sp->CopyTo(spCopy.Get(), 1000, &cbRead, &cbWritten), S_OK);
    EXPECT_TRUE(cbRead == 8 && cbWritten == 8);
    EXPECT_EQ(spCopy->Seek(0, STREAM_SEEK_SET, nullptr), S_OK);
    EXPECT_EQ(ReadAll(*spCopy), std::string("abcde\0\0z", 8)) << "what was skipped is zero";
    EXPECT_EQ(sp->SetSize(std::uint64_t{1} << 40), STG_E_MEDIUMFULL);
    EXPECT_EQ(sp->Read(nullptr, 1, nullptr), STG_E_INVALIDPOINTER);
}

class FileStream : public testing::Test {
protected:
    FileStream() { fs::create_directory(m_Folder); }
    ~FileStream() override { fs::remove_all(m_Folder); }

    [[nodiscard]] std::string Content() const {
        std::ifstream file(m_Name);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] auto FilesBeside() const { return std::distance(fs::directory_iterator(m_Folder), {}); }

    const fs::path m_Folder = fs::path(testing::TempDir()) / ("file_stream_" + std::to_string(getpid()));
    const std::string m_Name = (m_Folder / "stack").string();
};

TEST_F(FileStream, StandsUnderItsNameWholeOrNotAtAll) {
    std::ofstream(m_Name) << "earlier";
    CComPtr<IStream> sp;
    ASSERT_EQ(CreateFileStream(m_Name.c_str(), sp.Put()), S_OK);
    EXPECT_EQ(WriteText(*sp, "new"), S_OK);
    EXPECT_EQ(Content(), "earlier");
    sp.Reset();
    EXPECT_EQ(Content(), "earlier");
    EXPECT_EQ(FilesBeside(), 1);

    ASSERT_EQ(CreateFileStream(m_Name.c_str(), sp.Put()), S_OK);
    EXPECT_EQ(WriteText(*sp, "new"), S_OK);
    EXPECT_EQ(WriteText(*sp, "er"), S_OK);
    EXPECT_EQ(sp->Commit(0), S_OK);
    EXPECT_EQ(Content(), "newer");
    EXPECT_EQ(WriteText(*sp, "x"), STG_E_REVERTED) << "it is made";
    EXPECT_EQ(sp->Commit(0), S_OK);
    EXPECT_EQ(FilesBeside(), 1);

    ASSERT_EQ(OpenFileStream(m_Name.c_str(), sp.Put()), S_OK);
    EXPECT_EQ(WriteText(*sp, "x"), STG_E_ACCESSDENIED);
    EXPECT_EQ(ReadAll(*sp), "newer");
    EXPECT_EQ(ReadAll(*sp), "");
}

TEST_F(FileStream, SaysWhyItCannotBe) {
    const auto result = [](DWORD error) { return static_cast<HRESULT>(0x80070000 | error); };
    CComPtr<IStream> sp;
    EXPECT_EQ(OpenFileStream(m_Name.c_str(), sp.Put()), result(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(OpenFileStream(m_Folder.c_str(), sp.Put()), result(ERROR_ACCESS_DENIED));
    EXPECT_EQ(OpenFileStream("/dev/zero", sp.Put()), result(ERROR_NOT_SUPPORTED));
    EXPECT_EQ(CreateFileStream((m_Folder / "no" / "folder").c_str(), sp.Put()), result(ERROR_FILE_NOT_FOUND));
    ASSERT_EQ(mkfifo(m_Name.c_str(), 0600), 0);
    EXPECT_EQ(CreateFileStream(m_Name.c_str(), sp.Put()), result(ERROR_ACCESS_DENIED));
    EXPECT_TRUE(fs::is_fifo(m_Name)) << "no file took its place";
    EXPECT_EQ(OpenFileStream(nullptr, sp.Put()), E_POINTER);
    EXPECT_EQ(CreateFileStream(m_Name.c_str(), nullptr), E_POINTER);
    EXPECT_FALSE(sp);
}

} // namespace
} // namespace vellumcaster
