#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace {

namespace fs = std::filesystem;

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

/// Judges one line of a source file by the rules of the house: includes run downward only, applications' headers stand
/// alone, and the platform layer alone knows the system and the libraries behind it.
/// \param path  from the root of the project. \return what is wrong, or nothing.
std::optional<std::string> JudgeInclude(std::string_view path, std::string_view line) {
    constexpr std::string_view directive = "#include ";
    if (!line.starts_with(directive) || line.size() < directive.size() + 2) return std::nullopt;
    line.remove_prefix(directive.size());
    const bool bQuoted = line.front() == '"';
    const std::string_view name = line.substr(1, line.find_first_of("\">", 1) - 1);
    return bQuoted ? JudgeQuoted(path, name) : JudgeAngled(path, name);
}

TEST(IncludeDirection, IsJudgedByTheLayers) {
    const struct {
        const char* pszPath;
        const char* pszLine;
        bool bGood;
    } cases[] = {
        {"src/image/a.cpp", "#include \"platform/kernel/trace.h\"", true},
        {"src/image/a.cpp", "#include \"engine/b.h\"", false},
        {"src/image/primitives/a.cpp", "#include \"graph/b.h\"", false},
        {"src/platform/com/a.h", "#include \"image/b.h\"", false},
        {"src/ui/a.cpp", "#include \"server/b.h\"", false},
        {"src/engine/a.cpp", "#include \"host/b.h\"", false},
        {"src/engine/a.cpp", "#include \"b.h\"", false},
        {"src/engine/a.cpp", "#include <mutex>", false},
        {"src/platform/kernel/a.cpp", "#include <mutex>", true},
        {"src/image/a.cpp", "#include <cairo.h>", false},
        {"include/vellumcaster/a.h", "#include <vellumcaster/b.h>", true},
        {"include/vellumcaster/a.h", "#include \"platform/com/bstr.h\"", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(!JudgeInclude(c.pszPath, c.pszLine).has_value(), c.bGood) << c.pszPath << ": " << c.pszLine;
}

TEST(IncludeDirection, HoldsInTheWholeTree) {
    const fs::path root = VELLUM_SOURCE_DIR;
    int nIncludes = 0;
    for (const char* pszTop : {"include", "src", "host"}) {
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / pszTop)) {
            if (entry.path().extension() != ".h" && entry.path().extension() != ".cpp") continue;
            const std::string path = fs::relative(entry.path(), root).generic_string();
            std::ifstream file(entry.path());
            for (std::string line; std::getline(file, line);) {
                nIncludes += line.starts_with("#include");
                const auto wrong = JudgeInclude(path, line);
                EXPECT_FALSE(wrong.has_value()) << path << ": " << line << ": " << *wrong;
            }
        }
    }
    EXPECT_GT(nIncludes, 100) << "the tree was not found";
}

} // namespace
