#include <array>
#include <map>
#include <mutex>
#include <string>

#include "benchmarks/ratio_table.hpp"
#include "benchmarks/running_library.hpp"

namespace orbinel::bench {
namespace {

/// What an application usually tells of a user.
constexpr std::array<std::pair<const char*, const char*>, 8> attributes{{{"tier", "gold"},
                                                                         {"favourite_category", "summer dresses"},
                                                                         {"city", "Istanbul"},
                                                                         {"loyalty_number", "0049-1234-5678-90"},
                                                                         {"segment", "returning"},
                                                                         {"store", "Kadikoy"},
                                                                         {"newsletter", "weekly"},
                                                                         {"size", "medium"}}};

/// One iteration sets each of them, over those of the iteration before.
void PlainAttributes(benchmark::State& state) {
    std::mutex mutex;
    std::map<std::string, std::string> stored;
    for (auto _ : state) {
        for (const auto& [name, value] : attributes) {
            const std::lock_guard lock(mutex);
            stored.insert_or_assign(name, value);
        }
        benchmark::DoNotOptimize(stored);
    }
}

void UserAttributes(benchmark::State& state) {
    RunningLibrary library;
    OrbinelUser user = Orbinel::getCurrentUser();
    for (auto _ : state) {
        for (const auto& [name, value] : attributes) user.setCustomAttributeWithString(name, value);
    }
}

BENCHMARK(PlainAttributes);
BENCHMARK(UserAttributes);

const RatioLine userAttribute({"8 user attributes / (lock, insert into a map)", "UserAttributes", "PlainAttributes",
                               4.0});

}  // namespace
}  // namespace orbinel::bench
