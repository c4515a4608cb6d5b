#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "inapp/campaign_store.hpp"

namespace orbinel {

/// Picks the one campaign that an occurrence of an event is to show.
///
/// The smallest "priority" wins (an integer, 0 where there is none); among equal ones the later campaign, and an
/// event-based one before a count-based one. An event-based campaign beyond priority 50 is chosen only where a
/// count-based one of a still higher number is due: a kind without a campaign counts as 50.
///
/// Threads: any; no state. Two threads never choose the same count-based campaign.
class CampaignChoice {
public:
    using Campaign = CampaignTriggers::Campaign;

    struct Needs {
        Reports& reports;
        OrbinelInapps& inapps;
    };

    explicit CampaignChoice(const Needs& needs) : reports_(needs.reports), inapps_(needs.inapps) {}

    /// The campaign, or nothing. A count-based one is taken out of the store; an event-based one stays.
    [[nodiscard]] Campaign getInapp(std::string_view eventName, const Dictionary& parameters, std::int32_t occurrence);

private:
    struct Pick {
        Campaign campaign;
        std::int64_t priority = 50;
    };

    [[nodiscard]] static std::vector<Campaign> parameterBasedInAppFilter(const Dictionary& parameters,
                                                                         std::vector<Campaign> campaigns);
    [[nodiscard]] Pick fillInappObjects(const std::vector<Campaign>& matching) noexcept;
    [[nodiscard]] std::size_t getInappIndexWithMaxPriority(const std::vector<Campaign>& matching) noexcept;
    void reportChosen(const Campaign& campaign) noexcept;

    Reports& reports_;
    OrbinelInapps& inapps_;
};

}  // namespace orbinel
