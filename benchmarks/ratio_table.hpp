#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace orbinel::bench {

/// One line of the table: a benchmark, the floor that it is measured against in the same run, and the goal.
struct Ratio {
    std::string what;
    std::string measured;  // benchmark names
    std::string floor;
    double goal;  // the largest ratio of their medians that is good enough
};

/// Registers a line; to be called before the benchmarks run.
void addRatio(Ratio ratio);

/// Registers lines at static initialisation, beside their benchmarks.
struct RatioLine {
    explicit RatioLine(Ratio ratio) { addRatio(std::move(ratio)); }
};

/// Gathers the medians of all repetitions and prints the table at the end.
class RatioTable final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    std::vector<std::pair<std::string, double>> medians_;  // nanoseconds
};

/// Runs all benchmarks, interleaved, and prints the table. Arguments are Google Benchmark's own. The exit status.
int runBenchmarks(int count, char** words);

}  // namespace orbinel::bench
