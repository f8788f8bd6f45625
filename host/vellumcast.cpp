#include "host/vellumcast.h"

#include "host/clip_run.h"
#include "host/interruption.h"
#include "host/refusal.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace vellumcaster {

namespace {

constexpr const char* pszDescription =
    "Draws a stack of items on every frame of a YUV4MPEG2 clip, in the clip's own pixel format.\n"
    "Stands in a pipe between any decoder and encoder: 8-bit 4:2:0 and 4:2:2.";

constexpr const char* pszPanelHelp =
    "A flat panel: X,Y,W,H,#RRGGBB[,alpha=0..255][,dx=N][,dy=N][,wrap]. Position and size in pixels, sizes rounded "
    "down to even ones; dx, dy in pixels a frame; wrap brings it in again at the opposite edge. Again for more, the "
    "last on top.";

/// What the command line says, before it is looked at.
struct Words {
    std::string input = "-";
    std::string output = "-";
    std::optional<std::string> pixels;
    std::vector<std::string> panels;
    std::vector<std::string> snapshots;
};

void Describe(CLI::App& app, Words& words) {
    app.set_version_flag("--version", "vellumcast " VELLUM_VERSION);
    app.add_option("input", words.input, "The clip; - or nothing: standard input");
    app.add_option("output", words.output, "Where it goes; - or nothing: standard output");
    app.add_option("--panel", words.panels, pszPanelHelp)->allow_extra_args(false);
    app.add_option("--pixels", words.pixels,
                   "The pixel format to mix in: I420 or YV12 for 4:2:0; YUY2, UYVY or YVYU for 4:2:2");
    app.add_option("--snapshot", words.snapshots, "N:FILE.png keeps frame N, counted from 0, as a picture")
        ->allow_extra_args(false);
}

ClipRun ToRun(const Words& words) {
    ClipRun run;
    run.input = words.input;
    run.output = words.output;
    run.pixels = words.pixels;
    for (const std::string& text : words.panels)
        run.panels.push_back(ParsePanel(text));
    for (const std::string& text : words.snapshots)
        run.snapshots.push_back(ParseSnapshot(text));
    return run;
}

/// Says the sentence in one line: what it quotes of a clip or a command line may hold anything.
int Fail(std::string sentence) {
    std::replace_if(
        sentence.begin(), sentence.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, '?');
    static_cast<void>(std::fprintf(stderr, "vellumcast: %s\n", sentence.c_str()));
    return 1;
}

} // namespace

int RunVellumcast(int argc, char** argv) {
    // A reader that goes away, or a file that may not grow, is an error of the write that meets it.
    static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    WatchForInterruptions();
    CLI::App app(pszDescription, "vellumcast");
    Words words;
    try {
        Describe(app, words);
        app.parse(argc, argv);
        RunClip(ToRun(words));
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
