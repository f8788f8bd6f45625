#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vellumcaster::bench {

/// One line of the table: how long `row`/`pszOurs` takes by `row`/`pszRival`.
struct RatioLine {
    std::string row;
    const char* pszOurs;
    const char* pszRival;
    std::optional<double> goal; ///< the ratio is to be at most this
};

/// Prints a run as ratios. Times themselves belong to the machine and go to the JSON file alone. A disturbance from
/// outside can only slow a repetition down, so the goal is held against the lower quartiles; the medians stand beside.
class CRatioTable : public benchmark::BenchmarkReporter {
public:
    explicit CRatioTable(std::vector<RatioLine> lines) : m_Lines(std::move(lines)) {}

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    void PrintLine(const RatioLine& line) const;

    std::vector<RatioLine> m_Lines;
    std::map<std::string, std::vector<double>> m_Times; ///< of every repetition, by the benchmark's name
};

/// Registers `run` under `row`/`pszWho`.
template <class Run>
benchmark::internal::Benchmark* AddBenchmark(const std::string& row, const char* pszWho, Run run) {
    return benchmark::RegisterBenchmark((row + '/' + pszWho).c_str(), [run](benchmark::State& state) {
        for ([[maybe_unused]] auto _ : state)
            run();
    });
}

/// Registers what measures seconds by itself, once a repetition.
template <class Measure>
void AddMeasured(const std::string& row, const char* pszWho, Measure measure) {
    benchmark::RegisterBenchmark((row + '/' + pszWho).c_str(),
                                 [measure](benchmark::State& state) {
                                     for ([[maybe_unused]] auto _ : state)
                                         state.SetIterationTime(measure());
                                 })
        ->UseManualTime()
        ->Iterations(1);
}

/// Runs what is registered, repeated and in mixed order, so that a disturbance strikes all of them alike, and
/// prints the table. Flags of the benchmark library on the command line come before the defaults.
/// \return the program's exit code; a goal that is missed is no failure.
int RunAndPrintTable(int argc, char** argv, std::vector<RatioLine> lines);

} // namespace vellumcaster::bench
