#include "host/picture.h"

#include "engine/overlay_engine.h"
#include "engine/stream_painter.h"
#include "host/refusal.h"
#include "image/picture_persist.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace vellumcaster {
namespace {

/// Saves a picture and names it.
std::string SavePicture(const char* pszName, LONG width, LONG height, WORD bits) {
    const std::string path = testing::TempDir() + pszName;
    BITMAPINFOHEADER header;
    header.biSize = 40;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = bits;
    const std::vector<BYTE> pixels(static_cast<std::size_t>((width * 4 + 3) * std::abs(height)), 50);
    EXPECT_EQ(CPicturePersist::SaveToFile(path.c_str(), &header, pixels.data()), S_OK);
    return path;
}

TEST(Picture, IsReadFromTheCommandLine) {
    const Picture picture = ParsePicture("a/b.bmp,x=-3,y=4,w=20,h=30,alpha=7,key=00102030-fF405060,dx=0.5,wrap");
    EXPECT_EQ(picture.path, "a/b.bmp");
    EXPECT_EQ(picture.size, (SIZE{20, 30}));
    EXPECT_TRUE(picture.nColorKeyMin == 0x00102030 && picture.nColorKeyMax == static_cast<LONG>(0xFF405060));
    const ItemPlacement& placement = picture.placement;
    EXPECT_TRUE(placement.x == -3 && placement.y == 4 && placement.alpha == 7 && placement.dx == 0.5 &&
                placement.bWrap);
    const Picture plain = ParsePicture("logo.bmp");
    EXPECT_TRUE(plain.nColorKeyMin == -1 && plain.nColorKeyMax == -1 && plain.size == SIZE{});
    const Picture topLeft = ParsePicture("logo.bmp,key=topleft");
    EXPECT_TRUE(topLeft.nColorKeyMin == -1 && topLeft.nColorKeyMax == 0);
    EXPECT_EQ(ParsePicture("logo.bmp,key=000000-202020").nColorKeyMax, 0x202020);
}

TEST(Picture, SaysWhatIsWrong) {
    const std::string sixteenBits = SavePicture("sixteen.bmp", 4, 4, 16);
    const std::string missing = testing::TempDir() + "missing.bmp";
    const struct {
        std::string text, sentence;
    } cases[] = {
        {"", "what is wanted is FILE.bmp"},
        {"a.bmp,w=1", "w has to be a whole number from 2 to 32767"},
        {"a.bmp,h=", "h has to be"},
        {"a.bmp,key=left", "key has to be topleft, or MIN-MAX"},
        {"a.bmp,key=00-11", "key has to be topleft, or MIN-MAX"},
        {"a.bmp,turn=3", "there is no \"turn=3\""},
        {missing, "there is no such file"},
        {testing::TempDir(), "it may not be read, or is no file"},
        {"/proc/self/exe", "it is no bitmap"},
        {sixteenBits, "only bitmaps of 24 or 32 bits"},
    };
    for (const auto& c : cases) {
        CStreamPainter painter;
        COverlayEngine engine(painter);
        try {
            static_cast<void>(AddPicture(engine, ParsePicture(c.text)));
            ADD_FAILURE() << "taken: " << c.text;
        } catch (const Refusal& refusal) {
            EXPECT_THAT(refusal.what(), testing::StartsWith("--image " + c.text + ": " + c.sentence));
        }
    }
}

TEST(Picture, ShowsWhereItsFourthBytesAreAllZero) {
    for (const BYTE fourth : {BYTE{0}, BYTE{1}}) {
        BITMAPINFOHEADER header;
        header.biSize = 40;
        header.biWidth = header.biHeight = 2;
        header.biPlanes = 1;
        header.biBitCount = 32;
        const BYTE pixels[16] = {9, 9, 9, 0, 9, 9, 9, 0, 9, 9, 9, 0, 9, 9, 9, fourth};
        const std::string path = testing::TempDir() + "fourth.bmp";
        ASSERT_EQ(CPicturePersist::SaveToFile(path.c_str(), &header, pixels), S_OK);
        CStreamPainter painter;
        painter.SetInputFormat(format_code::RGB32);
        COverlayEngine engine(painter);
        static_cast<void>(AddPicture(engine, ParsePicture(path)));
        std::array<BYTE, 16> frame{};
        ASSERT_EQ(engine.MixFrame({frame.data(), frame.size(), {format_code::RGB32, 2, -2, 2}}, {2, 2}, {}), S_OK);
        EXPECT_EQ(frame[0], fourth == 0 ? 9 : 0);
    }
}

TEST(Picture, KeepsItsProportionsWhereOneSideIsLeftOut) {
    const struct {
        LONG width, height;
        WORD bits;
        const char* pszFields;
        SIZE want;
    } cases[] = {{40, 20, 24, "", {40, 20}},
                 {40, 20, 24, ",w=20", {20, 10}},
                 {40, -20, 24, ",h=40", {80, 40}},
                 {41, -20, 32, ",w=10,h=6", {10, 6}},
                 {400, 3, 32, ",w=20", {20, 2}}};
    for (const auto& c : cases) {
        CStreamPainter painter;
        painter.SetInputFormat(format_code::I420);
        COverlayEngine engine(painter);
        const std::string path = SavePicture("sized.bmp", c.width, c.height, c.bits);
        const Cookie cookie = AddPicture(engine, ParsePicture(path + c.pszFields));
        SIZE size;
        EXPECT_EQ(engine.GetItemSize(cookie, &size), S_OK);
        EXPECT_EQ(size, c.want);
    }
}

} // namespace
} // namespace vellumcaster
