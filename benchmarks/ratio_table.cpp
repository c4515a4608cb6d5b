#include "benchmarks/ratio_table.hpp"

#include <algorithm>
#include <cstdio>
#include <optional>

namespace orbinel::bench {

namespace {

std::vector<Ratio>& ratios() {
    static std::vector<Ratio> all;
    return all;
}

std::string readable(double nanoseconds) {
    char text[32];
    if (nanoseconds < 10'000) {
        std::snprintf(text, sizeof text, "%.0f ns", nanoseconds);
    } else {
        std::snprintf(text, sizeof text, "%.1f µs", nanoseconds / 1000);
    }
    return text;
}

}  // namespace

void addRatio(Ratio ratio) { ratios().push_back(std::move(ratio)); }

bool RatioTable::ReportContext(const Context&) { return true; }

void RatioTable::ReportRuns(const std::vector<Run>& runs) {
    for (const auto& run : runs) {
        if (run.error_occurred) {
            std::fprintf(stderr, "%s: %s\n", run.benchmark_name().c_str(), run.error_message.c_str());
        } else if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median") {
            medians_.emplace_back(run.run_name.function_name, run.GetAdjustedRealTime());
        }
    }
}

void RatioTable::Finalize() {
    const auto median = [&](const std::string& name) -> std::optional<double> {
        const auto found =
            std::find_if(medians_.begin(), medians_.end(), [&](const auto& one) { return one.first == name; });
        return found != medians_.end() ? std::optional(found->second) : std::nullopt;
    };
    std::printf("| what | measured | floor | ratio | goal | |\n|---|---|---|---|---|---|\n");
    for (const auto& ratio : ratios()) {
        const auto measured = median(ratio.measured);
        const auto floor = median(ratio.floor);
        if (!measured || !floor) continue;
        const double result = *measured / *floor;
        std::printf("| %s | %s | %s | %.2f | ≤ %.2f | %s |\n", ratio.what.c_str(), readable(*measured).c_str(),
                    readable(*floor).c_str(), result, ratio.goal, result <= ratio.goal ? "met" : "missed");
    }
}

int runBenchmarks(int count, char** words) {
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    std::string repeat = "--benchmark_repetitions=9";
    std::string shorten = "--benchmark_min_time=0.05";
    std::vector<char*> arguments{words[0], interleave.data(), repeat.data(), shorten.data()};
    arguments.insert(arguments.end(), words + 1, words + count);
    int argumentCount = static_cast<int>(arguments.size());
    benchmark::Initialize(&argumentCount, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments.data())) return 2;
    RatioTable table;
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}

}  // namespace orbinel::bench
