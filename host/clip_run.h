#pragma once

#include "host/caption.h"
#include "host/panel.h"
#include "host/picture.h"
#include "host/saved_stack.h"
#include "host/snapshot.h"
#include "host/stream_shape.h"

#include <string>
#include <variant>
#include <vector>

namespace vellumcaster {

/// What a run is asked to do.
struct ClipRun {
    std::string input = "-";                                              ///< "-" is standard input
    std::string output = "-";                                             ///< "-" is standard output
    std::vector<std::variant<Panel, Picture, Caption, SavedStack>> items; ///< from the bottom up
    std::vector<Snapshot> snapshots;
    bool bShowGraph = false; ///< on standard error, when the clip has run
    StreamShape stream;
};

/// Keeps the stack of a run in a file, without a clip. A `Refusal` says why that cannot be, as for a panel, which is
/// neither a picture nor a text.
void SaveRunStack(const ClipRun& run, const std::string& path);

/// Takes a clip through the filter, frame by frame. A `Refusal` ends it, and then nothing stands under the
/// output's name that did not stand there before. A snapshot of a frame that the clip does not have is refused when
/// the output is complete.
void RunClip(const ClipRun& run);

} // namespace vellumcaster
