#include "benchmarks/ratio_table.hpp"
#include "benchmarks/running_library.hpp"
#include "benchmarks/typical_campaigns.hpp"
#include "hosts/common/rapidjson_json.hpp"

namespace orbinel::bench {
namespace {

constexpr int answered = 100;

void ParseAnswer(benchmark::State& state) {
    const hosts::RapidJson json;
    const auto text = *json.serialise(Dictionary{{"inapps", typicalCampaigns(answered)}}, platform::JsonStyle::compact);
    for (auto _ : state) {
        auto parsed = json.parse(text);
        benchmark::DoNotOptimize(parsed);
    }
}
/// What the main queue does with an answer once it has been parsed.
void StoreAnswerAndChoose(benchmark::State& state) {
    RunningLibrary library;
    const auto campaigns = typicalCampaigns(answered);
    for (auto _ : state) {
        OrbinelInapps inapps(library.world().reports);
        inapps.inappToMemory(campaigns);
        benchmark::DoNotOptimize(chooseCampaign(inapps, library.world().reports));
    }
}

BENCHMARK(ParseAnswer);
BENCHMARK(StoreAnswerAndChoose);

const RatioLine storing({"storing 100 campaigns and choosing one / parsing their JSON", "StoreAnswerAndChoose",
                         "ParseAnswer", 5.0});

}  // namespace
}  // namespace orbinel::bench
