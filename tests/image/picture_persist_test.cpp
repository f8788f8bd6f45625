#include "image/bmp_headers.h"
#include "image/picture_format.h"
#include "image/picture_persist.h"
#include "platform/com/task_memory.h"
#include "support/random_bytes.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vellumcaster {
namespace {

constexpr HRESULT Win32(std::uint32_t error) { return static_cast<HRESULT>(0x80070000 | error); }

using CTaskPixels = std::unique_ptr<BYTE, decltype(&CoTaskMemFree)>;

/// A file that is taken apart, changed and put together.
struct BmpFile {
    BITMAPFILEHEADER file{bmpFileType, 0, 54};
    BITMAPINFOHEADER info;
    std::vector<BYTE> rest; ///< what stands behind the two records

    static BmpFile Of(LONG width, LONG height, WORD bits, DWORD compression, DWORD cbPixels) {
        BmpFile bmp;
        bmp.info = {40, width, height, 1, bits, compression, 0, 0, 0, 0, 0};
        bmp.rest.resize(cbPixels);
        testing_support::FillRandom(bmp.rest, cbPixels);
        bmp.file.bfSize = 54 + cbPixels;
        return bmp;
    }

    [[nodiscard]] std::vector<BYTE> Bytes() const {
        std::vector<BYTE> bytes(54);
        EncodeBmpHeader(file, std::span(bytes).first<cbBmpFileHeader>());
        EncodeBmpHeader(info, std::span(bytes).subspan<cbBmpFileHeader, cbBmpInfoHeader>());
        bytes.insert(bytes.end(), rest.begin(), rest.end());
        return bytes;
    }
};

class PicturePersist : public ::testing::Test {
protected:
    ~PicturePersist() override {
        EXPECT_EQ(OpenFiles(), m_nOpen);
        std::filesystem::remove(m_path);
    }

    void Store(const std::vector<BYTE>& bytes) const {
        std::ofstream(m_path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

    [[nodiscard]] std::vector<BYTE> Stored() const {
        std::ifstream in(m_path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    [[nodiscard]] HRESULT Load() {
        void* pPixels = this;
        const HRESULT hr = CPicturePersist::LoadFromFile(m_path.c_str(), &m_header, &pPixels);
        m_spPixels.reset(static_cast<BYTE*>(pPixels));
        return hr;
    }

    [[nodiscard]] std::vector<BYTE> LoadedPixels() const {
        return {m_spPixels.get(), m_spPixels.get() + m_header.biSizeImage};
    }

    static std::ptrdiff_t OpenFiles() {
        const std::filesystem::directory_iterator all("/proc/self/fd");
        return std::distance(begin(all), end(all));
    }

    const std::ptrdiff_t m_nOpen = OpenFiles();
    std::string m_path = ::testing::TempDir() + "picture_persist_test." + std::to_string(getpid());
    BITMAPINFOHEADER m_header{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    CTaskPixels m_spPixels{nullptr, CoTaskMemFree};
};

TEST_F(PicturePersist, LoadsEveryFormatOfTheTableAsItStandsInTheFile) {
    const struct {
        LONG width, height;
        WORD bits;
        DWORD compression, cb;
        // clang-format off
    } cases[] = {{3, 2, 24, BI_RGB, 2 * 12},        {3, -2, 24, BI_RGB, 2 * 12},
                 {3, 2, 32, BI_RGB, 2 * 12},        {3, 2, 32, BI_BITFIELDS, 2 * 12},
                 {3, 2, 16, BI_RGB, 2 * 8},         {4, 2, 16, format_code::YUY2, 2 * 8},
                 {4, 2, 0, format_code::YV12, 12},  {8, -2, 12, format_code::I420, 24},
                 {1, 1, 16, format_code::RGB555, 4}, {4, 2, 24, format_code::IYU2, 2 * 12}};
    // clang-format on
    for (const auto& c : cases)
        for (const DWORD cbBefore : {0u, 6u}) {
            BmpFile bmp = BmpFile::Of(c.width, c.height, c.bits, c.compression, c.cb);
            const std::vector<BYTE> pixels = bmp.rest;
            bmp.rest.insert(bmp.rest.begin(), cbBefore, 0xEE);
            bmp.rest.push_back(0xEE);
            bmp.file.bfOffBits += cbBefore;
            bmp.file.bfSize += cbBefore;
            Store(bmp.Bytes());
            EXPECT_EQ(Load(), S_OK) << std::hex << c.compression << " " << c.bits;
            bmp.info.biSizeImage = c.cb;
            EXPECT_EQ(m_header, bmp.info);
            EXPECT_EQ(LoadedPixels(), pixels);
        }
}

TEST_F(PicturePersist, RefusesWhatIsNoBitmapOfItsKind) {
    const struct {
        const char* what;
        std::function<void(BmpFile&)> spoil;
    } cases[] = {
        {"other letters", [](BmpFile& bmp) { bmp.file.bfType = 0x4142; }},
        {"pixels within the records", [](BmpFile& bmp) { bmp.file.bfOffBits = 53; }},
        {"size one byte short", [](BmpFile& bmp) { bmp.file.bfSize -= 1; }},
        {"sum beyond 32 bits", [](BmpFile& bmp) { bmp.file.bfOffBits = 0xFFFFFFF0, bmp.file.bfSize = 0xFFFFFFFF; }},
        {"another record", [](BmpFile& bmp) { bmp.info.biSize = 108; }},
        {"no plane", [](BmpFile& bmp) { bmp.info.biPlanes = 0; }},
        {"8 bits", [](BmpFile& bmp) { bmp.info.biBitCount = 8; }},
        {"a colour table", [](BmpFile& bmp) { bmp.info.biClrUsed = 1; }},
        {"important colours", [](BmpFile& bmp) { bmp.info.biClrImportant = 1; }},
        {"no width", [](BmpFile& bmp) { bmp.info.biWidth = 0; }},
        {"no height", [](BmpFile& bmp) { bmp.info.biHeight = 0; }},
        {"beyond 1 GiB", [](BmpFile& bmp) { bmp.info.biWidth = bmp.info.biHeight = 32767; }},
        {"odd YUV", [](BmpFile& bmp) { bmp.info.biCompression = format_code::I420; }},
    };
    for (const auto& c : cases) {
        BmpFile bmp = BmpFile::Of(3, 2, 24, BI_RGB, 24);
        c.spoil(bmp);
        Store(bmp.Bytes());
        m_header.biSize = 1;
        EXPECT_EQ(Load(), E_FAIL) << c.what;
        EXPECT_EQ(m_header, BITMAPINFOHEADER{}) << c.what;
        EXPECT_EQ(m_spPixels, nullptr) << c.what;
    }
    const std::vector<BYTE> whole = BmpFile::Of(3, 2, 24, BI_RGB, 24).Bytes();
    for (std::ptrdiff_t cb = 0; cb < std::ssize(whole); ++cb) {
        Store({whole.begin(), whole.begin() + cb});
        EXPECT_EQ(Load(), E_FAIL) << "cut to " << cb;
    }
}

TEST_F(PicturePersist, TellsWhyAFileCannotBeHad) {
    void* pPixels = nullptr;
    const BITMAPINFOHEADER header{40, 3, 2, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    EXPECT_EQ(Load(), Win32(2));
    EXPECT_EQ(m_header, BITMAPINFOHEADER{});
    EXPECT_EQ(CPicturePersist::LoadFromFile(nullptr, &m_header, &pPixels), E_INVALIDARG);
    EXPECT_EQ(CPicturePersist::LoadFromFile("a", nullptr, &pPixels), E_INVALIDARG);
    EXPECT_EQ(CPicturePersist::LoadFromFile("a", &m_header, nullptr), E_POINTER);
    const struct {
        const char* pszName;
        const BITMAPINFOHEADER* pHeader;
        const void* pPixels;
        HRESULT hr;
    } saves[] = {{nullptr, &header, this, E_INVALIDARG},  {"a", nullptr, this, E_INVALIDARG},
                 {"a", &header, nullptr, E_INVALIDARG},   {"a", &m_header, this, E_INVALIDARG},
                 {"/dev/full", &header, this, Win32(50)}, {"/none/a", &header, this, Win32(3)}};
    for (const auto& c : saves)
        EXPECT_EQ(CPicturePersist::SaveToFile(c.pszName, c.pHeader, c.pPixels), c.hr) << &c - saves;
}

TEST_F(PicturePersist, WritesEveryByteWhereALoadFindsIt) {
    const struct {
        BITMAPINFOHEADER info{40, 1, -1, 1, 32, BI_BITFIELDS, 0xFFFFFFFF, 0x01020304, -1, 0, 0};
        BmpMasks masks{0x00FF0000, 0x0000FF00, 0x000000FF};
    } record;
    Store(std::vector<BYTE>(1000));
    const std::array<BYTE, 4> pixel{0xB1, 0xB2, 0xB3, 0xB4};
    EXPECT_EQ(CPicturePersist::SaveToFile(m_path.c_str(), &record.info, pixel.data()), S_OK);
    const std::vector<BYTE>
        want{
            // clang-format off
        'B', 'M', 70, 0, 0, 0, 0, 0, 0, 0, 66, 0, 0, 0,                          // size, offset of the pixels
        40, 0, 0, 0, 1, 0, 0, 0, 255, 255, 255, 255, 1, 0, 32, 0, 3, 0, 0, 0, 4, 0, 0, 0, // to the image size
        4, 3, 2, 1, 255, 255, 255, 255, 0, 0, 0, 0, 0, 0, 0, 0,
        0, 0, 0xFF, 0, 0, 0xFF, 0, 0, 0xFF, 0, 0, 0,                             // masks
        0xB1, 0xB2, 0xB3, 0xB4,
            // clang-format on
        };
    EXPECT_EQ(Stored(), want);
    EXPECT_EQ(Load(), S_OK);
    EXPECT_EQ(LoadedPixels(), (std::vector<BYTE>{pixel.begin(), pixel.end()}));
}

TEST_F(PicturePersist, AnswersTheFirstFailureOfASave) {
    const BmpFile bmp = BmpFile::Of(3, 2, 24, BI_RGB, 24);
    const auto pEarlier = std::signal(SIGXFSZ, SIG_IGN);
    rlimit earlier{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &earlier), 0);
    const rlimit tight{60, earlier.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tight), 0);
    const HRESULT hr = CPicturePersist::SaveToFile(m_path.c_str(), &bmp.info, bmp.rest.data());
    setrlimit(RLIMIT_FSIZE, &earlier);
    std::signal(SIGXFSZ, pEarlier);
    EXPECT_EQ(hr, Win32(223));
    EXPECT_EQ(Stored().size(), 60u);
}

} // namespace
} // namespace vellumcaster
