#include "support/ratio_table.h"

#include <cstdio>

namespace vellumcaster::bench {

namespace {

#if defined(__AVX2__)
constexpr const char* pszInstructions = "AVX2, vectors of 32 bytes";
#elif defined(__SSE2__)
constexpr const char* pszInstructions = "SSE2, vectors of 16 bytes";
#else
constexpr const char* pszInstructions = "the compiler's default, vectors of 16 bytes";
#endif

} // namespace

bool CRatioTable::ReportContext(const Context& /*context*/) {
    std::printf("compiled for %s\n", pszInstructions);
    std::fflush(stdout);
    return true;
}

void CRatioTable::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        const std::string& name = run.run_name.function_name;
        if (run.error_occurred) std::printf("%s: %s\n", name.c_str(), run.error_message.c_str());
        if (run.aggregate_name == "median") m_Measured[name].median = run.GetAdjustedCPUTime();
        if (run.aggregate_name == "cv") m_Measured[name].spread = run.cpu_accumulated_time;
    }
}

void CRatioTable::Finalize() {
    std::printf("%-28s %-10s %-10s %6s  %-8s %-8s %s\n", "", "", "against", "ratio", "goal", "", "spread");
    for (const RatioLine& line : m_Lines)
        PrintLine(line);
}

void CRatioTable::PrintLine(const RatioLine& line) const {
    const auto ours = m_Measured.find(line.row + '/' + line.pszOurs);
    const auto rival = m_Measured.find(line.row + '/' + line.pszRival);
    if (ours == m_Measured.end() || rival == m_Measured.end()) return;

    const double ratio = ours->second.median / rival->second.median;
    std::printf("%-28s %-10s %-10s %6.3f  ", line.row.c_str(), line.pszOurs, line.pszRival, ratio);
    if (line.goal)
        std::printf("<= %.2f  %-8s ", *line.goal, ratio <= *line.goal ? "met" : "missed");
    else
        std::printf("%-8s %-8s ", "", "");
    std::printf("%3.0f %% / %.0f %%\n", 100 * ours->second.spread, 100 * rival->second.spread);
}

int RunAndPrintTable(int argc, char** argv, std::vector<RatioLine> lines) {
    std::vector<std::string> arguments{argv[0], "--benchmark_repetitions=31", "--benchmark_min_time=0.03",
                                       "--benchmark_enable_random_interleaving=true"};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);

    auto nArguments = static_cast<int>(arguments.size());
    benchmark::Initialize(&nArguments, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(nArguments, pointers.data())) return 1;
    CRatioTable table(std::move(lines));
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}

} // namespace vellumcaster::bench
