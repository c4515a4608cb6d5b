#include <mutex>

#include "base/reports.hpp"
#include "benchmarks/ratio_table.hpp"
#include "orbinel/headless/headless_console.hpp"

namespace orbinel::bench {
namespace {

headless::HeadlessConsole console;
Reports reports(console);

void UncontendedLock(benchmark::State& state) {
    std::mutex mutex;
    for (auto _ : state) {
        const std::lock_guard lock(mutex);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(UncontendedLock);

void RecordThatNobodyTakes(benchmark::State& state) {
    for (auto _ : state) {
        reports.log(LogType::common, LogLevel::info, "Request is added to Queue.", [] {
            return Dictionary{{"request_type", "STOP"}};
        });
        benchmark::ClobberMemory();
    }
}
BENCHMARK(RecordThatNobodyTakes);

void FeedThatNobodyTakes(benchmark::State& state) {
    for (auto _ : state) {
        reports.feed(
            "tagEvent",
            [] {
                return Dictionary{{"event_name", "seen"}};
            },
            false, true);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(FeedThatNobodyTakes);

const RatioLine records({"a diagnostic record that nobody takes / an uncontended lock", "RecordThatNobodyTakes",
                         "UncontendedLock", 2.0});
const RatioLine feeds({"a wizard feed that nobody takes / an uncontended lock", "FeedThatNobodyTakes",
                       "UncontendedLock", 2.0});

}  // namespace
}  // namespace orbinel::bench
