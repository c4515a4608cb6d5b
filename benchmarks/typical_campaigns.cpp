#include "benchmarks/typical_campaigns.hpp"

#include <string>

namespace orbinel::bench {

namespace {

constexpr int due = 10;

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

const Dictionary& purchase() {
    static const Dictionary parameters{{"product_sku", "summer-dress-42"}, {"quantity", 1}, {"unit_price", 19.99}};
    return parameters;
}

}  // namespace

Array typicalCampaigns(int count) {
    Array campaigns;
    for (int i = 0; i < count; ++i) campaigns.emplace_back(typicalCampaign(i));
    return campaigns;
}

CampaignTriggers::Campaign chooseCampaign(OrbinelInapps& inapps, Reports& reports) {
    CampaignChoice choice({reports, inapps});
    return choice.getInapp("purchase", purchase(), 1);
}

}  // namespace orbinel::bench
