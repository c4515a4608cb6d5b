#include "fuzz/input.hpp"
#include "inapp/campaign_choice.hpp"
#include "inapp/condition_matching.hpp"

namespace {

using orbinel::Dictionary;
using orbinel::fuzz::require;

std::size_t campaignsIn(const Dictionary& lists) {
    std::size_t count = 0;
    for (const auto& [key, list] : lists) count += list.ifArray()->size();
    return count;
}

/// Chooses for one occurrence until nothing but event-based campaigns, which stay, is left.
void chooseAll(orbinel::OrbinelInapps& inapps, orbinel::CampaignChoice& choice, const std::string& event,
               const Dictionary& parameters) {
    auto left = campaignsIn(inapps.nonEventBasedInapps());
    for (;;) {
        const auto chosen = choice.getInapp(event, parameters, 1);
        if (chosen == nullptr) return;
        require((*chosen)["trigger"].stringOrEmpty() == event);
        require(checkIfParamsAreMatching(parameters, (*chosen)["trigger_params"]));
        const auto now = campaignsIn(inapps.nonEventBasedInapps());
        if (now == left) return require((*chosen)["show_type"].stringOrEmpty() == "event");
        require(now + 1 == left);
        left = now;
    }
}

}  // namespace

// Whatever {"inapps": [campaigns], "parameters": {of an event}} holds, it can be stored, and what is chosen is due, and
// a count-based campaign only once.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto input = orbinel::fuzz::dictionaryOf(orbinel::fuzz::textOf(data, size));
    const auto* campaigns = input ? (*input)["inapps"].ifArray() : nullptr;
    if (campaigns == nullptr) return 0;
    const auto* given = (*input)["parameters"].ifDictionary();
    const auto parameters = given != nullptr ? *given : Dictionary();

    orbinel::fuzz::NoConsole console;
    orbinel::Reports reports(console);
    orbinel::OrbinelInapps inapps(reports);
    orbinel::CampaignChoice choice({reports, inapps});
    inapps.inappToMemory(*campaigns);
    for (const auto& element : *campaigns) {
        const auto* campaign = element.ifDictionary();
        const auto* trigger = campaign != nullptr ? (*campaign)["trigger"].ifString() : nullptr;
        if (trigger == nullptr) continue;
        const bool eventBased = (*campaign)["show_type"].stringOrEmpty() == "event";
        require(!eventBased || campaigns->size() > 1000 || !inapps.triggeredBy(*trigger).empty());
        chooseAll(inapps, choice, *trigger, parameters);
    }
    inapps.forgetCampaigns();
    require(inapps.nonEventBasedInapps().empty() && inapps.eventBasedInapps().empty());
    return 0;
}
