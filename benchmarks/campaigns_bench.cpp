#include <string>

#include "benchmarks/ratio_table.hpp"
#include "benchmarks/running_library.hpp"
#include "hosts/common/rapidjson_json.hpp"
#include "inapp/campaign_choice.hpp"

namespace orbinel::bench {
namespace {

constexpr int due = 10;
constexpr int answered = 100;

/// A campaign as a backend delivers it, for one of the first ten (and then waiting for "purchase") or for another
/// event.
Dictionary typicalCampaign(int number) {
    const Dictionary condition{{"key", "unit_price"}, {"op", "gt"}, {"value", 10}};
    const Dictionary layout{{"height", 0.5}, {"position", 7}, {"ignoreSafeZone", false}};
    return {{"inapp_id", number},
            {"variant_id", 1},
            {"priority", number % 5},
            {"trigger", number < due ? "purchase" : "event_" + std::to_string(number)},
            {"show_type", "event"},
            {"trigger_params", Array{condition}},
            {"frequency", 86'400},
            {"delay", 2},
            {"content", Dictionary{{"type", 4},
                                   {"template_url", "https://templates.test/summer/sale"},
                                   {"layoutStyle", 4},
                                   {"template_layout", layout}}}};
}

Array typicalCampaigns(int count) {
    Array campaigns;
    for (int i = 0; i < count; ++i) campaigns.emplace_back(typicalCampaign(i));
    return campaigns;
}

const Dictionary& purchase() {
    static const Dictionary parameters{{"product_sku", "summer-dress-42"}, {"quantity", 1}, {"unit_price", 19.99}};
    return parameters;
}

void choose(OrbinelInapps& inapps, Reports& reports) {
    CampaignChoice choice({reports, inapps});
    auto chosen = choice.getInapp("purchase", purchase(), 1);
    benchmark::DoNotOptimize(chosen);
}

void chooseAmong(benchmark::State& state, int campaigns) {
    RunningLibrary library;
    OrbinelInapps inapps(library.world().reports);
    inapps.inappToMemory(typicalCampaigns(campaigns));
    for (auto _ : state) choose(inapps, library.world().reports);
}
void ChooseAmong10(benchmark::State& state) { chooseAmong(state, due); }
void ChooseAmong10000(benchmark::State& state) { chooseAmong(state, 10'000); }

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
        choose(inapps, library.world().reports);
    }
}

BENCHMARK(ChooseAmong10);
BENCHMARK(ChooseAmong10000);
BENCHMARK(ParseAnswer);
BENCHMARK(StoreAnswerAndChoose);

const RatioLine amongMany({"choosing one of 10 due campaigns among 10,000 / among those 10", "ChooseAmong10000",
                           "ChooseAmong10", 1.2});
const RatioLine storing({"storing 100 campaigns and choosing one / parsing their JSON", "StoreAnswerAndChoose",
                         "ParseAnswer", 5.0});

}  // namespace
}  // namespace orbinel::bench
