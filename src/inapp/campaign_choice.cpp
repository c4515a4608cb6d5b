#include "inapp/campaign_choice.hpp"

#include "base/guard.hpp"
#include "base/whole_number.hpp"
#include "inapp/condition_matching.hpp"
#include "inapp/presented_inapp.hpp"

namespace orbinel {

namespace {

std::int64_t priorityOf(const Dictionary& campaign) { return wholeNumberOf(campaign["priority"]).value_or(0); }

}  // namespace

CampaignChoice::Campaign CampaignChoice::getInapp(std::string_view eventName, const Dictionary& parameters,
                                                  std::int32_t occurrence) {
    for (;;) {  // again where another thread took the campaign: each time there is one less
        auto candidates = inapps_.candidatesFor(eventName, occurrence);
        const auto counted =
            fillInappObjects(parameterBasedInAppFilter(parameters, std::move(candidates.nonEventBased)));
        const auto eventBased =
            fillInappObjects(parameterBasedInAppFilter(parameters, std::move(candidates.eventBased)));
        const bool eventBasedWins = eventBased.campaign != nullptr && eventBased.priority <= counted.priority;
        const auto& chosen = eventBasedWins ? eventBased.campaign : counted.campaign;
        if (chosen == nullptr) return nullptr;
        if (!eventBasedWins && !inapps_.take(eventName, occurrence, chosen)) continue;
        reportChosen(chosen);
        return chosen;
    }
}

std::vector<CampaignChoice::Campaign> CampaignChoice::parameterBasedInAppFilter(const Dictionary& parameters,
                                                                                std::vector<Campaign> campaigns) {
    std::erase_if(campaigns, [&](const Campaign& campaign) {
        return !checkIfParamsAreMatching(parameters, (*campaign)["trigger_params"]);
    });
    return campaigns;
}

CampaignChoice::Pick CampaignChoice::fillInappObjects(const std::vector<Campaign>& matching) noexcept {
    return guarded(reports_, {"OrbinelInapp - fillInappObjects", DescriptionForm::nameOnly}, Pick(), [&] {
        if (matching.empty()) return Pick();
        const auto& best = matching[getInappIndexWithMaxPriority(matching)];
        return Pick{best, priorityOf(*best)};
    });
}

std::size_t CampaignChoice::getInappIndexWithMaxPriority(const std::vector<Campaign>& matching) noexcept {
    return guarded(reports_, {"OrbinelInapp - getInappIndexWithMaxPriority", DescriptionForm::nameOnly}, std::size_t{0},
                   [&] {
                       std::size_t best = 0;
                       for (std::size_t i = 1; i < matching.size(); ++i) {
                           if (priorityOf(*matching[i]) <= priorityOf(*matching[best])) best = i;
                       }
                       return best;
                   });
}

void CampaignChoice::reportChosen(const Campaign& campaign) noexcept {
    reports_.log(LogType::inapp, LogLevel::info, "App Template has been chosen.",
                 [&] { return inappIdentity(campaign.get()); });
}

}  // namespace orbinel
