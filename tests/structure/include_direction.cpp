#include "structure/include_direction.h"

#include <algorithm>
#include <array>

namespace vellumcaster::testing_support {

namespace {

struct Layer {
    std::string_view folder;
    int rank;
};

constexpr std::array<Layer, 7> layers{{
    {"platform", 1},
    {"image", 2},
    {"graph", 3},
    {"engine", 4},
    {"ui", 5},
    {"server", 5},
    {"host", 6},
}};

/// Headers of the system and of libraries; a header's name starts with one of them.
constexpr std::array<std::string_view, 13> platformsOwn{"cairo",   "pango",    "Q",         "sqlite3", "gst/",
                                                        "sys/",    "unistd.h", "pthread",   "thread",  "mutex",
                                                        "fstream", "csignal",  "filesystem"};

constexpr const Layer* FindLayer(std::string_view folder) {
    const auto* layer = std::find_if(layers.begin(), layers.end(), [&](const Layer& l) { return l.folder == folder; });
    return layer == layers.end() ? nullptr : layer;
}

std::string_view FirstFolder(std::string_view path) { return path.substr(0, path.find('/')); }

/// The layer that a file belongs to: src/NAME/... or host/...
const Layer* LayerOf(std::string_view path) {
    if (path.starts_with("src/")) path.remove_prefix(4);
    return FindLayer(FirstFolder(path));
}

bool StartsWithOneOf(std::string_view name, const auto& starts) {
    return std::any_of(starts.begin(), starts.end(), [&](std::string_view s) { return name.starts_with(s); });
}

std::optional<std::string> JudgeQuoted(std::string_view path, std::string_view name) {
    if (path.starts_with("include/")) return "a public header includes one that is not installed";
    const Layer* own = LayerOf(path);
    const Layer* other = FindLayer(FirstFolder(name));
    if (!own) return std::nullopt;
    if (!other) return "the name does not start with a folder of the house";
    if (other->rank > own->rank) return "the include runs upward";
    if (other->rank == own->rank && other != own) return "the include runs sideways";
    return std::nullopt;
}

std::optional<std::string> JudgeAngled(std::string_view path, std::string_view name) {
    const Layer* own = LayerOf(path);
    const bool bOfTheFilter =
        path.starts_with("include/") || (own && own->rank >= 2 && own->folder != "host" && own->folder != "ui");
    if (bOfTheFilter && StartsWithOneOf(name, platformsOwn)) return "this belongs behind the platform layer";
    return std::nullopt;
}

} // namespace

std::optional<std::string> JudgeInclude(std::string_view path, std::string_view line) {
    constexpr std::string_view directive = "#include ";
    if (!line.starts_with(directive) || line.size() < directive.size() + 2) return std::nullopt;
    line.remove_prefix(directive.size());
    const bool bQuoted = line.front() == '"';
    const std::string_view name = line.substr(1, line.find_first_of("\">", 1) - 1);
    return bQuoted ? JudgeQuoted(path, name) : JudgeAngled(path, name);
}

} // namespace vellumcaster::testing_support
