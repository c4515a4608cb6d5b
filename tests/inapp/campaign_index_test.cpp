#include "inapp/campaign_index.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orbinel::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::int64_t> idsOf(const std::vector<CampaignIndex::Campaign>& campaigns) {
    std::vector<std::int64_t> ids;
    for (const auto& campaign : campaigns) ids.push_back((*campaign)["inapp_id"].integer().value_or(-1));
    return ids;
}

Dictionary campaign(int id, Value trigger, const char* showType = "") {
    return {{"inapp_id", id}, {"trigger", std::move(trigger)}, {"show_type", showType}};
}

TEST(CampaignIndex, FindsCampaignsByTheExactNameCountBasedOnesFirst) {
    CampaignIndex index;
    const Array arrived{campaign(1, "seen", "event"), campaign(2, "seen"), campaign(3, "seen_twice"),
                        campaign(4, "seen"),          campaign(2, "seen"), campaign(5, 7),
                        Value("no campaign"),         campaign(6, "Seen"), Dictionary{{"inapp_id", 7}}};
    EXPECT_EQ(index.add(arrived), 6U);
    EXPECT_THAT(idsOf(index.triggeredBy("seen")), ElementsAre(2, 4, 2, 1));
    EXPECT_EQ(index.add({campaign(8, "seen")}), 1U);
    const auto kept = index.triggeredBy("seen");
    index.clear();
    EXPECT_THAT(idsOf(kept), ElementsAre(2, 4, 2, 8, 1));  // a campaign in hand outlives the session's
    EXPECT_THAT(index.triggeredBy("seen"), IsEmpty());
}

}  // namespace
}  // namespace orbinel::testing
