#include <string>
#include <unordered_map>
#include <vector>

#include "benchmarks/ratio_table.hpp"
#include "benchmarks/running_library.hpp"

namespace orbinel::bench {
namespace {

constexpr int variables = 100;

std::vector<std::string> variableNames() {
    std::vector<std::string> names;
    for (int i = 0; i < variables; ++i) names.push_back("welcome_screen_title_" + std::to_string(i));
    return names;
}

std::string valueOf(const std::string& name) { return "What is shown for " + name; }

/// What an application would keep itself: texts by name.
void PlainLookUps100(benchmark::State& state) {
    const auto names = variableNames();
    std::unordered_map<std::string, std::string> texts;
    for (const auto& name : names) texts[name] = valueOf(name);
    for (auto _ : state) {
        for (const auto& name : names) {
            std::string text = texts.find(name)->second;
            benchmark::DoNotOptimize(text);
        }
    }
}

/// Every variable has been read before in the session, as it is when a screen is drawn again.
void ContentReads100(benchmark::State& state) {
    RunningLibrary library;
    const auto names = variableNames();
    Array delivered;
    for (const auto& name : names)
        delivered.emplace_back(Dictionary{{"variable_name", name}, {"new_value", valueOf(name)}});
    library.world().contentOptimizer.insertContentCampaigns(delivered, 7, 3);
    for (auto _ : state) {
        for (const auto& name : names) {
            auto text = Orbinel::getContentStringWithName(name, "Welcome", OrbinelVariableTypeContent);
            benchmark::DoNotOptimize(text);
        }
    }
}

BENCHMARK(PlainLookUps100);
BENCHMARK(ContentReads100);

const RatioLine contentRead({"100 reads of content texts / (hash-map look-up, copy of the text)", "ContentReads100",
                             "PlainLookUps100", 3.0});

}  // namespace
}  // namespace orbinel::bench
