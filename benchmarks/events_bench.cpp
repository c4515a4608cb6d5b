#include <chrono>
#include <mutex>
#include <string>
#include <vector>

#include "benchmarks/ratio_table.hpp"
#include "benchmarks/running_library.hpp"

namespace orbinel::bench {
namespace {

/// What an application would keep itself: a plain typed struct.
struct PlainEvent {
    std::string name;
    std::int64_t timestamp = 0;
    std::string sku;
    int quantity = 0;
    double price = 0;
};

void PlainAppends(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    std::mutex mutex;
    for (auto _ : state) {
        std::vector<PlainEvent> events;
        for (int i = 0; i < count; ++i) {
            const std::lock_guard lock(mutex);
            const auto now = std::chrono::system_clock::now().time_since_epoch().count();
            events.push_back({"inapp_seen", now, "summer-dress-42", i + 1, 19.99});
        }
        benchmark::DoNotOptimize(events.data());
    }
}

/// One iteration is a session's worth of events, from an empty record.
void Events(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    RunningLibrary library;
    for (auto _ : state) {
        for (int i = 0; i < count; ++i) tagTypicalEvent(i);
        library.world().session.update([](SessionRecord& record) {
            record.custom_events.clear();
            record.custom_events.shrink_to_fit();
            record.eventsBeforeInapp = {};
        });
    }
}

void PlainAppends100(benchmark::State& state) { PlainAppends(state); }
void Events100(benchmark::State& state) { Events(state); }
/// A hundredth of 10,000 events, so that it compares with 100.
void Events10000Hundredth(benchmark::State& state) {
    RunningLibrary library;
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        for (int i = 0; i < 10'000; ++i) tagTypicalEvent(i);
        library.world().session.update([](SessionRecord& record) {
            record.custom_events.clear();
            record.custom_events.shrink_to_fit();
            record.eventsBeforeInapp = {};
        });
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count() / 100);
    }
}

BENCHMARK(PlainAppends100)->Arg(100);
BENCHMARK(Events100)->Arg(100);
BENCHMARK(Events10000Hundredth)->UseManualTime();

const RatioLine event({"100 events with three parameters / (lock, clock read, append of a plain struct)", "Events100",
                       "PlainAppends100", 6.0});
const RatioLine manyEvents({"an event among 10,000 / among 100", "Events10000Hundredth", "Events100", 1.5});

}  // namespace
}  // namespace orbinel::bench
