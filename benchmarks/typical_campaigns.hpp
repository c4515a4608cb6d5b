#pragma once

#include "base/reports.hpp"
#include "inapp/campaign_choice.hpp"

namespace orbinel::bench {

/// Campaigns as a backend delivers them; the first ten wait for the event "purchase", each other one for one of its
/// own.
[[nodiscard]] Array typicalCampaigns(int count);

/// Chooses among them for a purchase for which all ten are due.
[[nodiscard]] CampaignTriggers::Campaign chooseCampaign(OrbinelInapps& inapps, Reports& reports);

}  // namespace orbinel::bench
