#include "platform/kernel/trace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <cairo.h>
#include <sys/wait.h>
#include <unistd.h>

// Runs the program as its users do, by the shell, in a folder of its own.

namespace {

namespace fs = std::filesystem;

struct Outcome {
    int status;
    std::string errors;
};

class Vellumcast : public testing::Test {
protected:
    Vellumcast() { fs::create_directories(m_Folder); }
    ~Vellumcast() override { fs::remove_all(m_Folder); }

    /// Runs `vellumcast` with these words; "cd" has been done, and $V is the program.
    Outcome Run(const std::string& words) const { return Shell("\"$V\" " + words); }

    Outcome Shell(const std::string& command) const {
        const std::string errors = Path(".errors");
        const std::string line =
            "cd '" + m_Folder.string() + "' && V='" VELLUMCAST_PROGRAM "' && { " + command + "; } 2>'" + errors + "'";
        const int status = std::system(line.c_str()); // NOLINT(cert-env33-c,concurrency-mt-unsafe)
        Outcome outcome{WEXITSTATUS(status), SentencesOf(Read(".errors"))};
        fs::remove(errors);
        return outcome;
    }

    /// What the program said to its user; where lines of diagnosis are built in, they come the same way.
    static std::string SentencesOf(const std::string& errors) {
        if (!vellumcaster::bTracing) return errors;
        std::string sentences;
        std::istringstream lines(errors);
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with("vellumcast: ")) sentences += line + '\n';
        return sentences;
    }

    std::string Path(const std::string& name) const { return (m_Folder / name).string(); }

    std::string Read(const std::string& name) const {
        std::ifstream file(Path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    void Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(Path(name), std::ios::binary) << bytes;
    }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_Folder))
            names.push_back(entry.path().filename().string());
        return names;
    }

    const fs::path m_Folder = fs::temp_directory_path() / ("vellumcast-test-" + std::to_string(getpid()));
};

constexpr int nWidth = 16;
constexpr int nHeight = 8;

/// A clip of grey noise, its planes in the order in which the file has them.
std::string Clip(const std::string& tags, int nFrames, std::size_t cbFrame) {
    std::string clip = "YUV4MPEG2 W16 H8 " + tags + "\n";
    for (int frame = 0; frame < nFrames; ++frame) {
        clip += frame % 2 ? "FRAME Ip Xsome\n" : "FRAME\n";
        for (std::size_t i = 0; i < cbFrame; ++i)
            clip += static_cast<char>(40 + (i * 7 + static_cast<std::size_t>(frame) * 13) % 150);
    }
    return clip;
}

constexpr std::size_t cb420 = nWidth * nHeight * 3 / 2;
constexpr std::size_t cb422 = nWidth * nHeight * 2;

/// Puts a value on a block of one plane.
void Put(std::string& clip, std::size_t plane, int pitch, int x, int y, int w, int h, int value) {
    for (int row = y; row < y + h; ++row)
        for (int column = x; column < x + w; ++column)
            clip[plane + static_cast<std::size_t>(row * pitch + column)] = static_cast<char>(value);
}

TEST_F(Vellumcast, ChangesNothingButThePanels) {
    const std::string tags = "F25:1 Ip A1:1 C420mpeg2 XYSCSS=420MPEG2 XCOLORRANGE=LIMITED";
    const std::string clip = Clip(tags, 3, cb420);
    Write("in.y4m", clip);
    ASSERT_EQ(Run("in.y4m plain.y4m").status, 0);
    EXPECT_EQ(Read("plain.y4m"), clip);

    // Pure red is Y 82, U 90, V 240. It starts at (4, 2) and moves by (2.5, 1) a frame, drawn at even places.
    std::string expected = clip;
    std::size_t plane = clip.find("FRAME\n");
    for (const auto& [x, y] : {std::pair{4, 2}, std::pair{6, 2}, std::pair{8, 4}}) {
        plane = clip.find('\n', plane) + 1;
        Put(expected, plane, nWidth, x, y, 4, 2, 82);
        Put(expected, plane + 128, nWidth / 2, x / 2, y / 2, 2, 1, 90);
        Put(expected, plane + 160, nWidth / 2, x / 2, y / 2, 2, 1, 240);
        plane += cb420;
    }
    for (const char* pszPixels : {"", " --pixels i420", " --pixels YV12"}) {
        const Outcome outcome = Run("in.y4m out.y4m --panel '4,2,5,3,#FF0000,dx=2.5,dy=1'" + std::string(pszPixels));
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(outcome.errors, "");
        EXPECT_TRUE(Read("out.y4m") == expected) << pszPixels;
    }
    ASSERT_EQ(Run("--panel 4,2,5,3,#FF0000,dx=2.5,dy=1 in.y4m /dev/stdout > first.y4m").status, 0);
    EXPECT_TRUE(Read("first.y4m") == expected) << "options may stand before the names";
    ASSERT_EQ(Shell("cat in.y4m | \"$V\" --panel=4,2,5,3,#FF0000,dx=2.5,dy=1 | cat > piped.y4m").status, 0);
    EXPECT_TRUE(Read("piped.y4m") == expected);
}

TEST_F(Vellumcast, CarriesFourTwoTwoInEveryPackedFormat) {
    const std::string clip = Clip("C422", 2, cb422);
    Write("in.y4m", clip);
    std::string expected = clip;
    std::size_t plane = clip.find("FRAME\n");
    for (const int nFrame : {0, 1}) {
        plane = clip.find('\n', plane) + 1;
        Put(expected, plane, nWidth, 14, 3, 2, 4, 82);
        Put(expected, plane + 128, nWidth / 2, 7, 3, 1, 4, 90);
        Put(expected, plane + 192, nWidth / 2, 7, 3, 1, 4, 240);
        plane += cb422 * static_cast<std::size_t>(nFrame == 0);
    }
    for (const char* pszPixels : {"", " --pixels YUY2", " --pixels UYVY", " --pixels YVYU"}) {
        EXPECT_EQ(Run("in.y4m out.y4m --panel '15,3,8,4,#FF0000'" + std::string(pszPixels)).status, 0);
        EXPECT_TRUE(Read("out.y4m") == expected) << pszPixels;
    }
}

TEST_F(Vellumcast, CarriesAClipInEveryFormat) {
    // Grey 126 comes back from RGB as it went; pure red is Y 82, U 90, V 240 whichever way it takes.
    const std::string flat = "YUV4MPEG2 W16 H8\nFRAME\n" + std::string(128, 126) + std::string(64, '\x80');
    Write("flat.y4m", flat);
    const std::string noise = Clip("C420", 2, cb420);
    Write("noise.y4m", noise);
    std::string expected = flat;
    const std::size_t plane = flat.size() - cb420;
    Put(expected, plane, nWidth, 4, 2, 6, 4, 82);
    Put(expected, plane + 128, nWidth / 2, 2, 1, 3, 2, 90);
    Put(expected, plane + 160, nWidth / 2, 2, 1, 3, 2, 240);
    for (const std::string pixels : {"I420", "YV12", "YUY2", "UYVY", "YVYU", "RGB32", "RGB24", "ARGB32"}) {
        ASSERT_EQ(Run("flat.y4m out.y4m --panel 4,2,6,4,#FF0000 --pixels " + pixels).status, 0);
        EXPECT_TRUE(Read("out.y4m") == expected) << pixels;
        if (pixels.find("RGB") != std::string::npos) continue;
        ASSERT_EQ(Run("noise.y4m out.y4m --pixels " + pixels).status, 0);
        EXPECT_TRUE(Read("out.y4m") == noise) << pixels;
    }
}

TEST_F(Vellumcast, DrawsAlikeWhateverTheMemoryAndTheRowOrder) {
    Write("in.y4m", Clip("C420 F25:1", 6, cb420));
    const std::string items = "in.y4m out.y4m --timecode x=2,y=1,height=6,color=#FFFF00 --snapshot 5:s.png";
    for (const std::string pixels : {"", " --pixels RGB32", " --pixels RGB24 --switch 3:YUY2 --switch 4:RGB32"}) {
        ASSERT_EQ(Run(items + pixels).status, 0);
        const std::string expected = Read("out.y4m");
        ASSERT_NE(expected, Read("in.y4m"));
        for (const std::string way : {"copied", "read-only", "slow", "copied --bottom-up", "slow --bottom-up"}) {
            const Outcome outcome = Run(items + pixels + " --memory " + way);
            // Where a program may not serve its own pages there is no slow memory.
            if (way.starts_with("slow") && outcome.errors == "vellumcast: the graph does not run\n") continue;
            ASSERT_EQ(outcome.status, 0) << outcome.errors;
            EXPECT_TRUE(Read("out.y4m") == expected) << way << pixels;
        }
    }
    ASSERT_EQ(Shell("\"$V\" in.y4m out.y4m --graph --memory read-only 2> graph.txt").status, 0);
    EXPECT_THAT(Read("graph.txt"), testing::HasSubstr("Source.Frames -> Overlay.In  I420 16x8, 25.000 frames/s\n"));
}

TEST_F(Vellumcast, StacksPanelsAndImagesInTheOrderOfTheCommandLine) {
    constexpr std::string_view blue("BM\x46\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\2\0\0\0\2\0\0\0\1\0\x18\0\0\0\0\0\0\0\0\0"
                                    "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\xff\0\0\xff\0\0\0\0\xff\0\0\xff\0\0\0\0",
                                    70);
    Write("blue.bmp", std::string(blue));
    Write("in.y4m", Clip("C420", 1, cb420));
    const auto firstLuma = [this] {
        return int{static_cast<unsigned char>(Read("out.y4m")[Read("in.y4m").size() - cb420])};
    };
    ASSERT_EQ(Run("in.y4m out.y4m --panel 0,0,2,2,#FFFFFF --image blue.bmp --panel 0,0,2,2,#FFFFFF,alpha=0").status, 0);
    EXPECT_EQ(firstLuma(), 42); // blue's 41, through which 1/256 of white's 235 shows
    ASSERT_EQ(Run("in.y4m out.y4m --image blue.bmp --panel 0,0,2,2,#FFFFFF").status, 0);
    EXPECT_EQ(firstLuma(), 235);
    const Outcome refused = Run("in.y4m out.y4m --pixels ARGB32 --image blue.bmp");
    EXPECT_TRUE(refused.status == 1 && refused.errors.find("cannot be prepared") != std::string::npos);
}

TEST_F(Vellumcast, KeepsFramesAsPictures) {
    Write("in.y4m", Clip("C420jpeg", 2, cb420));
    ASSERT_EQ(Run("in.y4m out.y4m --panel '8,0,8,8,#3264C8' --snapshot 1:one.png").status, 0);
    cairo_surface_t* pPicture = cairo_image_surface_create_from_png(Path("one.png").c_str());
    ASSERT_EQ(cairo_surface_status(pPicture), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(cairo_image_surface_get_width(pPicture), nWidth);
    EXPECT_EQ(cairo_image_surface_get_height(pPicture), nHeight);
    const unsigned char* pPixel = cairo_image_surface_get_data(pPicture) + 12 * 4;
    EXPECT_NEAR(pPixel[0], 0xC8, 3);
    EXPECT_NEAR(pPixel[1], 0x64, 3);
    EXPECT_NEAR(pPixel[2], 0x32, 3);
    cairo_surface_destroy(pPicture);

    const Outcome late = Run("in.y4m out2.y4m --snapshot 2:two.png");
    EXPECT_EQ(late.status, 1);
    EXPECT_THAT(late.errors, testing::HasSubstr("there is no frame 2 for two.png: the clip has 2"));
    EXPECT_EQ(Read("out2.y4m"), Read("in.y4m")) << "the clip itself is complete";
}

TEST_F(Vellumcast, EndsInOneSentenceAndLeavesNothing) {
    const std::string clip = Clip("C420", 2, cb420);
    Write("good.y4m", clip);
    Write("empty.y4m", "");
    Write("text.y4m", "hello\n");
    Write("long.y4m", "YUV4MPEG2 X" + std::string(5000, 'x'));
    Write("cutheader.y4m", "YUV4MPEG2 W16 H8");
    Write("cutframe.y4m", clip.substr(0, clip.size() - 1));
    Write("cutline.y4m", clip.substr(0, clip.find("FRAME\n") + 3));
    Write("garbage.y4m", clip + "FRAMES\n");
    Write("deep.y4m", "YUV4MPEG2 W16 H8 C420p10\n");
    Write("odd.y4m", "YUV4MPEG2 W15 H8\n");
    Write("wild.y4m", "YUV4MPEG2 W16 H8 C\x1B[31m\r\xC2\x9Bx\n");
    Write("huge.y4m", "YUV4MPEG2 W32766 H21846\n"); // above the limit only with its rows rounded up
    Write("old.y4m", "old");
    Write("big.y4m", Clip("C420", 100, cb420));
    const auto names = Names();
    const struct {
        const char* pszCommand;
        const char* pszSentence;
    } cases[] = {
        {"\"$V\" empty.y4m out.y4m", "empty.y4m is empty"},
        {"\"$V\" text.y4m out.y4m", "no YUV4MPEG2 clip"},
        {"\"$V\" long.y4m out.y4m", "long.y4m has a header of more than 4096 bytes"},
        {"\"$V\" cutheader.y4m out.y4m", "cutheader.y4m is cut off in its header"},
        {"\"$V\" cutframe.y4m out.y4m", "cut off in frame 1, after 191 of 192 bytes"},
        {"\"$V\" cutframe.y4m old.y4m", "cut off in frame 1"},
        {"\"$V\" - out.y4m < cutline.y4m", "standard input has no FRAME line where frame 0"},
        {"\"$V\" garbage.y4m out.y4m", "no FRAME line where frame 2"},
        {"\"$V\" deep.y4m out.y4m", "10-bit 4:2:0 (C420p10)"},
        {"\"$V\" wild.y4m out.y4m", "unknown (C?[31m??x)"},
        {"\"$V\" huge.y4m out.y4m --pixels YV12", "frames are above 1 GiB"},
        {"\"$V\" odd.y4m out.y4m", "width is odd (15x8)"},
        {"\"$V\" missing.y4m out.y4m", "cannot read missing.y4m: No such file"},
        {"\"$V\" . out.y4m", "cannot read .: Is a directory"},
        {"\"$V\" good.y4m nowhere/out.y4m", "cannot write nowhere/out.y4m: No such file"},
        {"\"$V\" good.y4m good.y4m", "overwrite the input good.y4m"},
        {"\"$V\" good.y4m /dev/full", "cannot write /dev/full: No space left"},
        {"\"$V\" good.y4m > /dev/full", "cannot write standard output: No space left"},
        {"(ulimit -f 8; \"$V\" big.y4m out.y4m)", "cannot write out.y4m: File too large"},
        {"\"$V\" good.y4m out.y4m --snapshot 1:nowhere/p.png", "cannot write nowhere/p.png"},
        {"\"$V\" good.y4m out.y4m --snapshot x:p.png", "what is wanted is N:FILE.png"},
        {"\"$V\" good.y4m out.y4m --pixels RGB9", "there is no such pixel format"},
        {"\"$V\" good.y4m out.y4m --pixels ''", "there is no such pixel format"},
        {"\"$V\" good.y4m out.y4m --save-stack -", "a stack is kept in a file"},
        {"\"$V\" good.y4m out.y4m --switch 0:YUY2", "what is wanted is N:FORMAT"},
        {"\"$V\" good.y4m out.y4m --switch 1:RGB9", "--switch 1:RGB9: there is no such pixel format"},
        {"\"$V\" good.y4m out.y4m --switch 1:YUY2 --panel 1,2,2,2,#FF0000", "a panel is made for one pixel format"},
        {"\"$V\" good.y4m out.y4m --memory mine", "what is wanted is passed, copied"},
        {"\"$V\" good.y4m out.y4m --panel 1,2", "--panel 1,2: what is wanted is"},
        {"\"$V\" good.y4m out.y4m --unknown", "--unknown"},
        {"\"$V\" good.y4m out.y4m third", "third"},
    };
    for (const auto& c : cases) {
        const bool bLimitsFiles = std::string_view(c.pszCommand).find("ulimit") != std::string_view::npos;
        if (vellumcaster::bTracing && bLimitsFiles) continue; // lines of diagnosis fill a file by themselves
        const Outcome outcome = Shell(c.pszCommand);
        EXPECT_EQ(outcome.status, 1) << c.pszCommand;
        EXPECT_THAT(outcome.errors, testing::StartsWith("vellumcast: ")) << c.pszCommand;
        EXPECT_THAT(outcome.errors, testing::HasSubstr(c.pszSentence)) << c.pszCommand;
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
        EXPECT_THAT(Names(), testing::UnorderedElementsAreArray(names)) << c.pszCommand;
    }
    EXPECT_EQ(Read("old.y4m"), "old");
    EXPECT_EQ(Read("good.y4m"), clip);
}

TEST_F(Vellumcast, ReportsAReaderThatHasGone) {
    Write("in.y4m", Clip("C420", 8000, cb420)); // more than any pipe holds
    const Outcome outcome = Shell("{ \"$V\" in.y4m; echo $? > status; } | head -c 100 > /dev/null");
    EXPECT_EQ(Read("status"), "1\n");
    EXPECT_THAT(outcome.errors, testing::HasSubstr("cannot write standard output: Broken pipe"));
}

TEST_F(Vellumcast, LeavesNothingWhenASignalEndsIt) {
    Write("in.y4m", Clip("C420", 1, cb420));
    Write("old.y4m", "old");
    // The pipe opens when the program has it open too. It never gets to the end that would complete its output.
    const Outcome outcome = Shell("mkfifo pipe; \"$V\" pipe old.y4m & exec 3> pipe; cat in.y4m >&3; kill -TERM $!; "
                                  "exec 3>&-; wait $!");
    EXPECT_EQ(outcome.status, 128 + SIGTERM);
    EXPECT_THAT(outcome.errors, testing::Not(testing::HasSubstr("vellumcast: ")));
    EXPECT_EQ(Read("old.y4m"), "old");
    EXPECT_THAT(Names(), testing::UnorderedElementsAre("in.y4m", "old.y4m", "pipe"));
}

TEST_F(Vellumcast, PassesThePermissionsOfAnEarlierFileOn) {
    Write("in.y4m", Clip("C420", 1, cb420));
    Write("out.y4m", "old");
    fs::permissions(Path("out.y4m"), fs::perms::owner_read | fs::perms::owner_write);
    ASSERT_EQ(Run("in.y4m out.y4m").status, 0);
    EXPECT_EQ(Read("out.y4m"), Read("in.y4m"));
    EXPECT_EQ(fs::status(Path("out.y4m")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(Vellumcast, TakesAClipWithoutFrames) {
    Write("in.y4m", "YUV4MPEG2 W16 H8\n");
    EXPECT_EQ(Run("in.y4m out.y4m --panel '0,0,4,4,#FFFFFF'").status, 0);
    EXPECT_EQ(Read("out.y4m"), "YUV4MPEG2 W16 H8\n");
}

TEST_F(Vellumcast, KeepsAStackAndUsesItAgain) {
    Write("in.y4m", Clip("F25:1", 2, cb420));
    const std::string items = "--text 'x=2,y=-4,height=12,dx=1,text=\u65E5' --frame-number 'x=8,height=8' ";
    ASSERT_EQ(Run(items + "--save-stack stack").status, 0) << "with no clip that is all";
    ASSERT_EQ(Run(items + "in.y4m direct.y4m").status, 0);
    ASSERT_EQ(Run("--stack stack in.y4m kept.y4m --save-stack again").status, 0);
    EXPECT_EQ(Read("kept.y4m"), Read("direct.y4m"));
    EXPECT_EQ(Read("again"), Read("stack"));

    ASSERT_EQ(Shell("\"$V\" --show-stack stack > table").status, 0);
    const std::string table = Read("table");
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 3);
    EXPECT_THAT(table, testing::HasSubstr("\u65E5\n"));
    EXPECT_THAT(table, testing::HasSubstr("Frame Number\n"));
}

TEST_F(Vellumcast, FindsThePicturesOfAStackFromAnyFolder) {
    ASSERT_EQ(Shell("\"${V%/*}/draw_logo\" logo.bmp").status, 0);
    Write("in.y4m", Clip("F25:1", 1, cb420));
    ASSERT_EQ(Run("--image logo.bmp,w=8,h=8,alpha=90 --text Hello --save-stack stack").status, 0);
    ASSERT_EQ(Run("--panel 0,0,4,4,#FF0000 --stack stack in.y4m kept.y4m").status, 0);
    ASSERT_EQ(Run("--panel 0,0,4,4,#FF0000 --image logo.bmp,w=8,h=8,alpha=90 --text Hello in.y4m direct.y4m").status,
              0);
    EXPECT_EQ(Read("kept.y4m"), Read("direct.y4m"));
    ASSERT_EQ(Shell("mkdir other && cd other && \"$V\" --stack ../stack --save-stack again").errors, "");
    EXPECT_EQ(Read("other/again"), Read("stack"));
    fs::remove(Path("logo.bmp"));
    const Outcome outcome = Run("--stack stack --save-stack less");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "vellumcast: stack: \"" + Path("logo.bmp") + "\" cannot be shown and is left out\n");
    EXPECT_LT(Read("less").size(), Read("stack").size());
}

TEST_F(Vellumcast, ShowsAKeptPictureAsTheOneThatWasNamed) {
    Write("in.y4m", Clip("F25:1", 2, cb420));
    // 4x4 of 32 bits, rows from the top down, no alpha anywhere.
    const std::string header("BM\x76\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\4\0\0\0\xFC\xFF\xFF\xFF\1\0\x20\0", 30);
    std::string pixels;
    for (char c = 0; c < 16; ++c)
        pixels += {c, static_cast<char>(5 * c), 'x', '\0'};
    Write("down.bmp", header + std::string(24, '\0') + pixels);
    for (const std::string fields : {"", ",w=8,h=6", ",alpha=100", ",key=topleft"}) {
        const std::string image = "--image down.bmp" + fields;
        ASSERT_EQ(Run(image + " in.y4m direct.y4m").status, 0) << fields;
        ASSERT_EQ(Run(image + " --save-stack stack").status, 0) << fields;
        EXPECT_EQ(Run("--stack stack in.y4m kept.y4m").errors, "") << fields;
        EXPECT_EQ(Read("kept.y4m"), Read("direct.y4m")) << fields;
        EXPECT_NE(Read("kept.y4m"), Read("in.y4m")) << fields;
    }
}

TEST_F(Vellumcast, RefusesAStackThatItCannotReadOrKeep) {
    ASSERT_EQ(Run("--text one --text two --save-stack stack").status, 0);
    const std::string stack = Read("stack");
    Write("cut", stack.substr(0, stack.size() - 10));
    Write("other", "YUV4MPEG2 W16 H8\n");
    const struct {
        const char* pszWords;
        const char* pszError;
    } cases[] = {
        {"--stack none --save-stack x", "cannot read none: there is no such file or folder"},
        {"--stack cut --save-stack x", "cannot read cut: it is cut off, or holds what no stack does"},
        {"--show-stack other", "cannot read other: it is cut off, or holds what no stack does"},
        {"--panel 0,0,2,2,#000000 --save-stack x",
         "--save-stack: a panel is neither a picture nor a text, and cannot be kept"},
        {"--text one --save-stack ./other other x", "--save-stack: the stack would overwrite the clip other"},
        {"--text one --save-stack no/folder/x", "cannot write no/folder/x: there is no such file or folder"},
    };
    for (const auto& c : cases) {
        const Outcome outcome = Run(c.pszWords);
        EXPECT_EQ(outcome.status, 1) << c.pszWords;
        EXPECT_EQ(outcome.errors, std::string("vellumcast: ") + c.pszError + "\n");
    }
    EXPECT_FALSE(fs::exists(Path("x")));
    EXPECT_EQ(Shell("\"$V\" --show-stack cut > table").status, 1);
    EXPECT_THAT(Read("table"), testing::HasSubstr("one\n")) << "what could be read";
}

} // namespace
