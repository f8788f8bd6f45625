#include "platform/kernel/trace.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace vellumcaster {
namespace {

template <class... Arguments>
std::string Format(std::string_view format, const Arguments&... arguments) {
    const std::vector<TraceArgument> all{ToTraceArgument(arguments)...};
    return FormatTraceLine(format, all);
}

TEST(Trace, PrintsAsTheFormatsOfTheSystemMean) {
    EXPECT_EQ(Format("no conversion\n"), "no conversion\n");
    EXPECT_EQ(Format("hr = 0x%08X\n", std::int32_t{-2147024809}), "hr = 0x80070057\n");
    EXPECT_EQ(Format("hr = 0x%08X\n", std::int32_t{1}), "hr = 0x00000001\n");
    EXPECT_EQ(Format("%s: %d of %u", "[Out]", -3, 7u), "[Out]: -3 of 7");
    EXPECT_EQ(Format("%I64d %lld %hd", std::int64_t{-5000000000}, std::int64_t{1} << 40, 2),
              "-5000000000 1099511627776 2");
    EXPECT_EQ(Format("0x%X", reinterpret_cast<void*>(std::uintptr_t{0x7F0012345678})), "0x7F0012345678");
    EXPECT_EQ(Format("%.3f|%5d|%-5d|%03u|%c", 1.25, 42, 42, 7u, 'x'), "1.250|   42|42   |007|x");
    EXPECT_EQ(Format("%s", std::string("name")), "name");
}

TEST(Trace, SurvivesAFormatThatDoesNotFitItsArguments) {
    EXPECT_EQ(Format("%d and %s", 1), "1 and ?");
    EXPECT_EQ(Format("%s %d %f", 5, "text", 3), "? 0 3.000000");
    EXPECT_EQ(Format("100 %"), "100 ?");
    EXPECT_EQ(Format("%n", 1), "?");
    EXPECT_EQ(Format("%%", 1), "%");
    EXPECT_LT(Format("%09999d", 1).size(), 512u);
}

TEST(Trace, EvaluatesItsArgumentsOnlyWhereItIsBuiltIn) {
    static std::string written;
    const TraceSink earlier = SetTraceSink([](TraceCategory, TraceLevel, std::string_view line) { written += line; });
    int nEvaluated = 0;
    VELLUM_TRACE_LINE(TraceCategory::General, TraceLevel::Error, "line %d\n", ++nEvaluated);
    SetTraceSink(earlier);
    EXPECT_EQ(nEvaluated, bTracing ? 1 : 0);
    EXPECT_EQ(written, bTracing ? "line 1\n" : "");
}

} // namespace
} // namespace vellumcaster
