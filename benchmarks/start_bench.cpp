#include <sqlite3.h>

#include <chrono>

#include "benchmarks/ratio_table.hpp"
#include "benchmarks/running_library.hpp"
#include "hosts/linux/sqlite_defaults.hpp"

namespace orbinel::bench {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begin) { return std::chrono::duration<double>(Clock::now() - begin).count(); }

/// A store as a running application leaves it.
void fill(const std::filesystem::path& folder) {
    RunningLibrary library;
    const auto store = library.host.services().defaults->standard();
    for (int i = 0; i < 20; ++i) store->set("key" + std::to_string(i), "value");
    store->synchronize();
    shutdown();
    std::static_pointer_cast<hosts::SqliteDefaults>(library.host.services().defaults)->waitUntilWritten();
    std::filesystem::copy(library.folder.path(), folder, std::filesystem::copy_options::recursive);
}

void OpeningTheStore(benchmark::State& state) {
    const TemporaryFolder folder;
    fill(folder.path() / "data");
    const auto file = (folder.path() / "data" / "standard.sqlite").string();
    for (auto _ : state) {
        sqlite3* database = nullptr;
        sqlite3_open(file.c_str(), &database);
        sqlite3_stmt* rows = nullptr;
        sqlite3_prepare_v2(database, "SELECT * FROM stored_values", -1, &rows, nullptr);
        while (sqlite3_step(rows) == SQLITE_ROW) benchmark::DoNotOptimize(sqlite3_column_text(rows, 0));
        sqlite3_finalize(rows);
        sqlite3_close(database);
    }
}
BENCHMARK(OpeningTheStore);

void StartAndInitialise(benchmark::State& state) {
    const TemporaryFolder folder;
    fill(folder.path() / "data");
    for (auto _ : state) {
        hosts::LinuxHostOptions options;
        options.dataDirectory = folder.path() / "data";
        hosts::LinuxHost host(options);
        (void)host.services().defaults->standard()->value("key0");  // the services have loaded
        const auto begin = Clock::now();
        start(host.services());
        Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme", "http://127.0.0.1:1");
        state.SetIterationTime(secondsSince(begin));
        shutdown();
    }
}
BENCHMARK(StartAndInitialise)->UseManualTime()->Iterations(20);

const RatioLine line({"start and initialisation on the calling thread / opening the SQLite file and reading its rows",
                      "StartAndInitialise", "OpeningTheStore", 0.5});

}  // namespace
}  // namespace orbinel::bench
