#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <future>
#include <vector>

#include "benchmarks/ratio_table.hpp"
#include "benchmarks/running_library.hpp"
#include "hosts/linux/sqlite_defaults.hpp"

namespace orbinel::bench {
namespace {

/// One table, one prepared statement, in the same mode as the store.
class BareSqlite {
public:
    BareSqlite() {
        sqlite3_open((folder_.path() / "bare.sqlite").c_str(), &database_);
        sqlite3_exec(database_, "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL; CREATE TABLE rows(json TEXT)",
                     nullptr, nullptr, nullptr);
        sqlite3_prepare_v2(database_, "INSERT INTO rows VALUES(?)", -1, &insert_, nullptr);
    }
    ~BareSqlite() {
        sqlite3_finalize(insert_);
        sqlite3_close(database_);
    }
    void add(const std::string& text) {
        sqlite3_bind_text(insert_, 1, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
        sqlite3_step(insert_);
        sqlite3_reset(insert_);
    }

private:
    TemporaryFolder folder_;
    sqlite3* database_ = nullptr;
    sqlite3_stmt* insert_ = nullptr;
};

using Clock = std::chrono::steady_clock;

/// The median of many timings, so that a checkpoint of the database now and then does not count. The work says when it
/// was done: that the benchmark is woken, to begin with the next, is no part of it.
template <typename Work, typename After>
void timeMedian(benchmark::State& state, Work&& work, After&& after) {
    constexpr std::size_t timings = 101;
    for (auto _ : state) {
        std::vector<double> seconds(timings);
        for (auto& one : seconds) {
            const auto begin = Clock::now();
            const Clock::time_point done = work();
            one = std::chrono::duration<double>(done - begin).count();
            after();
        }
        std::nth_element(seconds.begin(), seconds.begin() + timings / 2, seconds.end());
        state.SetIterationTime(seconds[timings / 2]);
    }
}

void serialiseAndInsert(benchmark::State& state, int events) {
    RunningLibrary library;
    const auto& json = *library.world().services.json;
    const auto stop = typicalStop(events);
    BareSqlite sqlite;
    timeMedian(
        state,
        [&] {
            sqlite.add(*json.serialise(stop, platform::JsonStyle::compact));
            return Clock::now();
        },
        [] {});
}

constexpr int eventsOfTenKilobytes = 80;

void SerialiseAndInsertStop(benchmark::State& state) { serialiseAndInsert(state, 100); }
void SerialiseAndInsertTenKilobytes(benchmark::State& state) { serialiseAndInsert(state, eventsOfTenKilobytes); }
BENCHMARK(SerialiseAndInsertStop)->Iterations(1)->UseManualTime();
BENCHMARK(SerialiseAndInsertTenKilobytes)->Iterations(1)->UseManualTime();

/// Until the stop survives a kill.
void HandOver(benchmark::State& state) {
    RunningLibrary library;
    auto& world = library.world();
    auto& stores = static_cast<hosts::SqliteDefaults&>(*world.services.defaults);
    const auto stop = typicalStop(100);
    std::optional<OfflineQueue::Element> last;
    const auto handOver = [&] {
        std::promise<Clock::time_point> committed;
        world.offlineQueue.handOver(*world.services.json->serialise(stop, platform::JsonStyle::compact),
                                    [&](std::optional<OfflineQueue::Element> element) {
                                        last = element;
                                        committed.set_value(Clock::now());
                                    });
        return committed.get_future().get();
    };
    timeMedian(state, handOver, [&] {
        world.offlineQueue.delivered(*last);
        stores.waitUntilWritten();
    });
}
BENCHMARK(HandOver)->Iterations(1)->UseManualTime();

/// Until the stop is in the file: the next in line for it is told right after.
void append(benchmark::State& state, int queued) {
    RunningLibrary library;
    auto& world = library.world();
    auto& stores = static_cast<hosts::SqliteDefaults&>(*world.services.defaults);
    for (int i = 0; i < queued; ++i) world.offlineQueue.addStopRequestToQueue({{"n", i}});
    const auto stop = typicalStop(eventsOfTenKilobytes);
    stores.waitUntilWritten();
    timeMedian(
        state,
        [&] {
            std::promise<Clock::time_point> written;
            world.offlineQueue.addStopRequestToQueue(stop);
            world.offlineQueue.count([&](std::size_t) { written.set_value(Clock::now()); });
            return written.get_future().get();
        },
        [] {});
}
void AppendAt10(benchmark::State& state) { append(state, 10); }
void AppendAt10000(benchmark::State& state) { append(state, 10'000); }
BENCHMARK(AppendAt10)->Iterations(1)->UseManualTime();
BENCHMARK(AppendAt10000)->Iterations(1)->UseManualTime();

const RatioLine handOver({"hand-over of a stop to the store / (serialise, one SQLite insert)", "HandOver",
                          "SerialiseAndInsertStop", 2.0});
const RatioLine appendLine({"appending a failed stop of 10 KB / (serialise, one SQLite insert)", "AppendAt10",
                            "SerialiseAndInsertTenKilobytes", 2.0});
const RatioLine appendGrowth({"the same at 10,000 queued / at 10", "AppendAt10000", "AppendAt10", 1.3});

}  // namespace
}  // namespace orbinel::bench
