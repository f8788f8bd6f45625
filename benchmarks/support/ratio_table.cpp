#include "support/ratio_table.h"

#include <algorithm>
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

double Quantile(const std::vector<double>& sorted, double part) {
    return sorted[static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1))];
}

/// The processor's time, unless the benchmark measured by itself.
double TimeOf(const benchmark::BenchmarkReporter::Run& run) {
    return run.run_name.time_type.empty() ? run.GetAdjustedCPUTime() : run.GetAdjustedRealTime();
}

} // namespace

bool CRatioTable::ReportContext(const Context& /*context*/) {
    std::printf("compiled for %s\n", pszInstructions);
    std::fflush(stdout);
    return true;
}

void CRatioTable::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        const std::string& name = run.run_name.function_name;
        if (run.error_occurred)
            std::printf("%s: %s\n", name.c_str(), run.error_message.c_str());
        else if (run.run_type == Run::RT_Iteration)
            m_Times[name].push_back(TimeOf(run));
    }
}

void CRatioTable::Finalize() {
    std::printf("%-28s %-9s %-9s %6s  %-15s %s\n", "", "", "against", "ratio", "goal", "by medians");
    for (auto& [name, times] : m_Times)
        std::sort(times.begin(), times.end());
    for (const RatioLine& line : m_Lines)
        PrintLine(line);
}

void CRatioTable::PrintLine(const RatioLine& line) const {
    const auto ours = m_Times.find(line.row + '/' + line.pszOurs);
    const auto rival = m_Times.find(line.row + '/' + line.pszRival);
    if (ours == m_Times.end() || rival == m_Times.end()) return;

    const auto ratioAt = [&](double part) { return Quantile(ours->second, part) / Quantile(rival->second, part); };
    const double ratio = ratioAt(0.25);
    std::printf("%-28s %-9s %-9s %6.3f  ", line.row.c_str(), line.pszOurs, line.pszRival, ratio);
    if (line.goal)
        std::printf("<= %.2f  %-7s", *line.goal, ratio <= *line.goal ? "met" : "missed");
    else
        std::printf("%-16s", "");
    std::printf("%6.3f\n", ratioAt(0.5));
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
