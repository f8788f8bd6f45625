#pragma once

#include "engine/overlay_engine.h"
#include "engine/stack_stream.h"

#include <functional>
#include <string>

namespace vellumcaster {

/// A file that holds a stack, as the command line asks for it.
struct SavedStack {
    std::string path;
};

/// Reads a saved stack record by record, without making its items.
/// \param take  is shown each record, from the bottom of the stack up, and may keep it.
/// A `Refusal` says what is wrong with the file; what stood before that was shown.
void ReadStack(const std::string& path, const std::function<void(StoredItem&)>& take);

/// Puts the items of a saved stack on top of an engine's, its pictures as those of the command line. Those that could not
/// be made, as a picture whose file is gone, are named on standard error. A `Refusal` says what is wrong with the file,
/// and nothing was added.
void AddSavedStack(COverlayEngine& engine, const SavedStack& stack);

/// Keeps an engine's stack in a file, whole or not at all. A `Refusal` says why that cannot be.
void SaveStack(COverlayEngine& engine, const std::string& path);

} // namespace vellumcaster
