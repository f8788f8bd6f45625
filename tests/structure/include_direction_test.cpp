#include "structure/include_direction.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace vellumcaster::testing_support {
namespace {

namespace fs = std::filesystem;

TEST(IncludeDirection, IsJudgedByTheLayers) {
    const struct {
        const char* pszPath;
        const char* pszLine;
        bool bGood;
    } cases[] = {
        {"src/image/a.cpp", "#include \"platform/kernel/trace.h\"", true},
        {"src/image/a.cpp", "#include \"image/b.h\"", true},
        {"src/image/a.cpp", "#include \"engine/b.h\"", false},
        {"src/image/primitives/a.cpp", "#include \"graph/b.h\"", false},
        {"src/platform/com/a.h", "#include \"image/b.h\"", false},
        {"src/ui/a.cpp", "#include \"server/b.h\"", false},
        {"src/ui/a.cpp", "#include \"engine/b.h\"", true},
        {"host/a.cpp", "#include \"engine/b.h\"", true},
        {"src/engine/a.cpp", "#include \"host/b.h\"", false},
        {"src/engine/a.cpp", "#include \"b.h\"", false},
        {"src/engine/a.cpp", "#include <vellumcaster/item.h>", true},
        {"src/engine/a.cpp", "#include <mutex>", false},
        {"src/engine/a.cpp", "#include <sys/mman.h>", false},
        {"src/platform/kernel/a.cpp", "#include <mutex>", true},
        {"host/a.cpp", "#include <cairo.h>", true},
        {"src/image/a.cpp", "#include <cairo.h>", false},
        {"include/vellumcaster/a.h", "#include <vellumcaster/b.h>", true},
        {"include/vellumcaster/a.h", "#include \"platform/com/bstr.h\"", false},
        {"src/engine/a.cpp", "int include;", true},
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
} // namespace vellumcaster::testing_support
