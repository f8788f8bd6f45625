#include "host/vellumcast.h"

#include "host/clip_run.h"
#include "host/interruption.h"
#include "host/plain_text.h"
#include "host/refusal.h"
#include "host/stack_table.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <system_error>

#include <CLI/CLI.hpp>

namespace vellumcaster {

namespace {

constexpr const char* pszDescription =
    "Draws a stack of items on every frame of a YUV4MPEG2 clip, in the clip's own pixel format.\n"
    "Stands in a pipe between any decoder and encoder: 8-bit 4:2:0 and 4:2:2.";

constexpr const char* pszPanelHelp =
    "A flat panel: X,Y,W,H,#RRGGBB[,alpha=0..255][,dx=N][,dy=N][,wrap]. Position and size in pixels, sizes rounded "
    "down to even ones; dx, dy in pixels a frame; wrap brings it in again at the opposite edge. Again for more, of "
    "panels and images together the last on top.";

constexpr const char* pszImageHelp =
    "A bitmap file of 24 or 32 bits: "
    "FILE.bmp[,x=N][,y=N][,w=N][,h=N][,alpha=0..255][,key=topleft|MIN-MAX][,dx=N][,dy=N]"
    "[,wrap]. w and h scale it, one alone in proportion. key makes the colour of the first pixel transparent, or gives "
    "the colours from MIN to MAX (RRGGBB, or AARRGGBB for an edge whose alpha runs from MIN's to MAX's) that alpha.";

constexpr const char* pszPixelsHelp =
    "The pixel format to mix in: I420, YV12, YUY2, UYVY, YVYU, RGB32, RGB24 or ARGB32. Where it is not the clip's own "
    "sampling, each frame is converted and back.";

constexpr const char* pszSwitchHelp =
    "N:FORMAT: from frame N on the stream is in another pixel format. Again for more.";

constexpr const char* pszMemoryHelp =
    "Whose memory the frames are in: passed, one for both sides of the filter, so that nothing is copied; copied, the "
    "sink's own; read-only, the source's, which may not be drawn on; slow, so, and the sink's is slow to read. The "
    "pictures are the same.";

constexpr const char* pszStackHelp =
    "The items of a saved stack, on top of those before; a picture whose file is gone is left out. Again for more.";

constexpr const char* pszSaveStackHelp =
    "Keeps the stack in a file, its pictures by name; with no clip named, that is all. Panels cannot be kept.";

const char* CaptionHelp(ITEM_TYPE eType) {
    switch (eType) {
    case eText: return "A text: the words alone, or FIELDS,text=WORDS with all that follows";
    case eDate: return "The date: FIELDS[,picture=yyyy/MM/dd with all that follows]";
    case eTime: return "The time: FIELDS[,picture=HH:mm:ss with all that follows]";
    case eFrameNumber: return "The number of the frame: FIELDS";
    default: return "A SMPTE timecode, drop-frame at 29.97 and 59.94: FIELDS";
    }
}

/// An option that may come again, each time with one text; `take` is called in the order of the command line.
template <class Take>
void AddRepeated(CLI::App& app, const char* pszName, const char* pszHelp, Take take) {
    app.add_option_function<std::string>(pszName, take, pszHelp)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
        ->trigger_on_parse()
        ->type_name("TEXT ...");
}

/// What else the program is asked for.
struct Wishes {
    std::optional<std::string> saveStack;
    std::optional<std::string> showStack;
};

void Describe(CLI::App& app, ClipRun& run, Wishes& wishes) {
    app.set_version_flag("--version", "vellumcast " VELLUM_VERSION);
    app.add_option("input", run.input, "The clip; - or nothing: standard input");
    app.add_option("output", run.output, "Where it goes; - or nothing: standard output");
    AddRepeated(app, "--panel", pszPanelHelp,
                [&run](const std::string& text) { run.items.emplace_back(ParsePanel(text)); });
    AddRepeated(app, "--image", pszImageHelp,
                [&run](const std::string& text) { run.items.emplace_back(ParsePicture(text)); });
    for (const CaptionOption& option : captionOptions)
        AddRepeated(app, option.pszName, CaptionHelp(option.eType),
                    [&run, &option](const std::string& text) { run.items.emplace_back(ParseCaption(option, text)); });
    AddRepeated(app, "--stack", pszStackHelp,
                [&run](const std::string& text) { run.items.emplace_back(SavedStack{text}); });
    app.add_flag("--graph", run.bShowGraph,
                 "Says on standard error how the filters were connected, and whose memory the frames were in");
    app.add_option("--save-stack", wishes.saveStack, pszSaveStackHelp);
    app.add_option("--show-stack", wishes.showStack, "Prints a saved stack as a table, and does nothing else");
    app.footer(std::string("Fields of a text: ") + pszCaptionFields + ".");
    app.add_option("--pixels", run.stream.pixels, pszPixelsHelp);
    app.add_flag("--bottom-up", run.stream.bBottomUp, "Frames in RGB come with their bottom row first");
    AddRepeated(app, "--switch", pszSwitchHelp,
                [&run](const std::string& text) { run.stream.switches.push_back(ParsePixelSwitch(text)); });
    app.add_option_function<std::string>(
        "--memory", [&run](const std::string& text) { run.stream.memory = ParseFrameMemory(text); }, pszMemoryHelp);
    AddRepeated(app, "--snapshot", "N:FILE.png keeps frame N, counted from 0, as a picture",
                [&run](const std::string& text) { run.snapshots.push_back(ParseSnapshot(text)); });
}

/// A stack that takes the place of a clip would cost it.
void RefusePlaceOf(const std::string& clip, const std::string& stack) {
    std::error_code error;
    const auto place = [&error](const std::string& path) { return std::filesystem::weakly_canonical(path, error); };
    if (clip != "-" && place(clip) == place(stack))
        throw Refusal("--save-stack: the stack would overwrite the clip " + clip);
}

/// Says the sentence in one line: what it quotes of a clip or a command line may hold anything.
int Fail(const std::string& sentence) {
    static_cast<void>(std::fprintf(stderr, "vellumcast: %s\n", PlainText(sentence).c_str()));
    return 1;
}

} // namespace

int RunVellumcast(int argc, char** argv) {
    // A reader that goes away, or a file that may not grow, is an error of the write that meets it.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    WatchForInterruptions();
    CLI::App app(pszDescription, "vellumcast");
    ClipRun run;
    try {
        Wishes wishes;
        Describe(app, run, wishes);
        app.parse(argc, argv);
        if (wishes.showStack) {
            PrintStack(*wishes.showStack);
            return 0;
        }
        if (wishes.saveStack) {
            if (*wishes.saveStack == "-") throw Refusal("--save-stack -: a stack is kept in a file");
            for (const std::string& clip : {run.input, run.output})
                RefusePlaceOf(clip, *wishes.saveStack);
            SaveRunStack(run, *wishes.saveStack);
        }
        if (!wishes.saveStack || app.count("input") > 0) RunClip(run);
        return 0;
    } catch (const Interruption& interruption) {
        EndBy(interruption);
        return 1;
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return app.exit(error); // --help, --version
        return Fail(error.what());
    } catch (const std::bad_alloc&) {
        return Fail("there is not enough memory");
    } catch (const std::exception& error) {
        return Fail(error.what());
    }
}

} // namespace vellumcaster
