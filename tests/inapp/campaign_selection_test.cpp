#include <array>
#include <thread>

#include "tests/inapp/inapp_library.hpp"

namespace orbinel::testing {
namespace {

class CampaignSelectionTest : public InappLibraryTest {
protected:
    bool check(std::string_view event, std::int32_t count = 1, const Dictionary& parameters = {}) {
        return world().campaignSelection.checkInapp(event, parameters, count);
    }
    std::vector<std::int64_t> handedOverByTags(const std::string& event, int times) {
        std::vector<std::int64_t> ids;
        for (int i = 0; i < times; ++i) {
            Orbinel::tagEvent(event).build();
            ids.push_back(handedOver());
        }
        return ids;
    }
};

Dictionary campaign(Value id, const char* trigger, Dictionary more = {}) {
    more.set("inapp_id", std::move(id));
    more.set("variant_id", 7);
    more.set("trigger", trigger);
    return more;
}

Dictionary eventBased(Value id, const char* trigger, Dictionary more = {}) {
    more.set("show_type", "event");
    return campaign(std::move(id), trigger, std::move(more));
}

TEST_F(CampaignSelectionTest, TheSmallestPriorityWinsAndATieGoesToTheLaterAndToTheEventBasedOne) {
    deliver({campaign(1, "a", {{"priority", 3}}), campaign(2, "a", {{"priority", 3}}),
             campaign(3, "a", {{"priority", 4}})});
    EXPECT_TRUE(check("a"));
    EXPECT_EQ(handedOver(), 2);
    EXPECT_TRUE(check("a"));  // the chosen one is gone
    EXPECT_EQ(handedOver(), 1);

    deliver({eventBased(4, "b", {{"priority", 3}}), campaign(5, "b", {{"priority", "3"}}), campaign(6, "b")});
    EXPECT_TRUE(check("b"));
    EXPECT_EQ(handedOver(), 6);  // without a priority it has 0
    EXPECT_TRUE(check("b"));
    EXPECT_TRUE(check("b"));
    EXPECT_EQ(handedOver(), 4);  // an event-based one stays

    deliver({eventBased(7, "c", {{"priority", 70}})});
    EXPECT_FALSE(check("c"));
    deliver({campaign(8, "c", {{"priority", 80}})});
    EXPECT_TRUE(check("c"));
    EXPECT_EQ(handedOver(), 7);

    // Conditions come before priorities.
    const Array ofRed{Dictionary{{"key", "colour"}, {"op", "eq"}, {"value", "red"}}};
    deliver({campaign(9, "d", {{"priority", 9}}), eventBased(10, "d", {{"trigger_params", ofRed}})});
    EXPECT_TRUE(check("d", 1, {{"colour", "blue"}}));
    EXPECT_EQ(handedOver(), 9);
}

TEST_F(CampaignSelectionTest, CountsOccurrencesOfTheEventForEachCampaign) {
    deliver({campaign(1, "buy", {{"trigger_count", 3}}), campaign(2, "buy", {{"trigger_count", "2"}}),
             campaign(3, "Buy"), campaign(4, "buys"), Dictionary{{"inapp_id", 5}}, Value(7)});
    EXPECT_THAT(handedOverByTags("buy", 5), ElementsAre(0, 2, 1, 0, 0));

    deliver({eventBased(6, "seen", {{"trigger_count", 2}})});
    EXPECT_THAT(handedOverByTags("seen", 3), ElementsAre(0, 6, 6));
}

TEST_F(CampaignSelectionTest, AStartAnswerBringsCampaignsAndReplaysWhatCameBefore) {
    world().campaignSelection.inappToMemory({campaign(1, "session_start_from_push")});  // as a push does
    backend.answer("/session/start", {.body = R"({"inapps": [
        {"inapp_id": 2, "trigger": "early", "content": {"connected_inapps": [
            {"inapp_id": 3, "trigger": "session_start",
             "content": {"connected_inapps": [{"inapp_id": 4, "trigger": "late"}]}}]}}]})"});
    Orbinel::tagEvent("early").build();
    becomeActive();
    EXPECT_THAT(screen.built, SizeIs(1));  // the push's message takes the place of all others
    EXPECT_EQ(handedOver(), 1);

    enterBackground();  // forgets the campaigns
    Orbinel::tagEvent("early").build();
    becomeActive();
    EXPECT_THAT(screen.built, SizeIs(3));
    EXPECT_EQ(handedOver(), 3);
    EXPECT_THAT(handedOverByTags("late", 1), ElementsAre(0));  // connected to a connected one

    enterBackground();
    world().campaignSelection.setTestInAppExistence(true);
    becomeActive();
    EXPECT_THAT(screen.built, SizeIs(3));
    EXPECT_THAT(handedOverByTags("early", 1), ElementsAre(2));  // stored all the same
}

TEST_F(CampaignSelectionTest, EveryOutcomeLeavesItsStatus) {
    deliver({campaign(Null(), "a"), eventBased(2, "b", {{"frequency", 60}})});
    screen.onScreen = true;
    EXPECT_FALSE(check("a"));
    EXPECT_THAT(statuses(), ElementsAre("Other app template on screen"));
    screen.onScreen = false;
    screen.portrait = false;
    EXPECT_FALSE(check("a"));
    EXPECT_THAT(statuses(), ElementsAre("Orientation is not portrait"));
    screen.portrait = true;

    world().presentedInapp.setTemplatesAreSetToBeHidden(true);
    EXPECT_FALSE(check("a"));
    EXPECT_EQ(record().blocked_inapps,
              (Array{Dictionary{{"inapp_id", ""}, {"variant_id", "7"}, {"timestamp", static_cast<int>(begin)}}}));
    EXPECT_EQ(sinks.count("BlockedInAppMessage."), 1U);
    EXPECT_THAT(statuses(), ElementsAre("App Template has been chosen.", "Blocked in-app message removed."));
    world().presentedInapp.setTemplatesAreSetToBeHidden(false);
    EXPECT_FALSE(check("a"));  // chosen, though blocked
    EXPECT_EQ(sinks.records().back().customAttributes, (Dictionary{{"event_name", "a"}}));
    EXPECT_EQ(sinks.records().back().level, LogLevel::error);
    EXPECT_THAT(statuses(), ElementsAre("App template not found"));

    EXPECT_TRUE(check("b"));
    EXPECT_THAT(statuses(), ElementsAre("App Template has been chosen.", "App template selected"));
    EXPECT_TRUE(check("b"));  // handed on, though capped
    EXPECT_EQ(sinks.records()[1].customAttributes, (Dictionary{{"inapp_id", "2"}, {"variant_id", "7"}}));
    EXPECT_THAT(statuses(),
                ElementsAre("App Template has been chosen.", "Frequency is capped", "App template selected"));
    EXPECT_THAT(screen.built, SizeIs(1));

    world().helper.setMobileSessionGdprConsent(false);
    host.advance(61);
    EXPECT_TRUE(check("b"));
    EXPECT_THAT(screen.built, SizeIs(1));
}

TEST_F(CampaignSelectionTest, HandsTheLayoutOverInWholeNumbers) {
    const Dictionary layout{{"height", 1.0}, {"position", "7"}};
    const Dictionary content{{"type", 4},
                             {"template_layout", layout},
                             {"layoutStyle", std::int64_t{4}},
                             {"inappType", 5e11},
                             {"buttonLayout", Array{Value("no")}}};
    deliver({campaign(1, "a", {{"delay", 2.9}, {"content", content}}), campaign(2, "b", {{"content", "none"}})});
    check("a");
    check("b");
    ASSERT_THAT(screen.built, SizeIs(2));
    EXPECT_EQ(screen.built[0].type, 2'147'483'647);
    EXPECT_EQ(screen.built[0].layoutStyle, 4);
    EXPECT_EQ(screen.built[0].buttonLayout, 0);
    EXPECT_EQ(screen.built[0].delay, 2);
    EXPECT_EQ(screen.built[0].position, 7);
    EXPECT_FALSE(screen.built[0].notFullHeight);
    EXPECT_TRUE(screen.built[1].notFullHeight);
}

TEST_F(CampaignSelectionTest, TheControlGroupIsLoggedOnceAndNeverAsItsOwnConsequence) {
    const Dictionary unseen{{"type", -1}};
    const Array afterAnother{Dictionary{{"key", "inapp_id"}, {"op", "ne"}, {"value", 0}}};
    deliver({campaign(1, "a", {{"content", unseen}}),
             eventBased(2, "inapp_seen", {{"content", unseen}, {"trigger_params", afterAnother}})});
    EXPECT_TRUE(check("a"));
    EXPECT_THAT(screen.built, IsEmpty());
    EXPECT_EQ(record().inapp_logs,
              (Array{Dictionary{{"inapp_id", 1}, {"variant_id", 7}, {"dismiss_type", kDISSMISSTYPECONTROL}}}));
    EXPECT_EQ(sinks.count("Can't show inapp."), 1U);
    check("inapp_seen", 2, {{"inapp_id", 3}});  // the next one of its own is logged again
    EXPECT_THAT(record().inapp_logs, SizeIs(2));
}

TEST_F(CampaignSelectionTest, TheControlGroupLeavesAMessageThatIsStillToBeBuilt) {
    deliver({campaign(1, "a"), campaign(2, "b", {{"content", Dictionary{{"type", -1}}}})});
    EXPECT_TRUE(check("a"));
    EXPECT_TRUE(check("b"));
    EXPECT_THAT(record().inapp_logs, SizeIs(1));
    EXPECT_FALSE(world().presentedInapp.shouldAddInappLog()) << "of the message";
    EXPECT_EQ(handedOver(), 1);
}

TEST_F(CampaignSelectionTest, ATemplateAtHandTakesThePlaceOfCountBasedCampaigns) {
    deliver({campaign(1, "a"), eventBased(2, "b")});
    world().campaignSelection.showCustomInapp({{"type", 4}}, "c");
    EXPECT_THAT(screen.built, IsEmpty());
    EXPECT_FALSE(check("a"));
    EXPECT_TRUE(check("b"));
    EXPECT_EQ(world().inapps.nonEventBasedInapps(),
              (Dictionary{{"c-1", Array{Dictionary{{"inapp_id", 0},
                                                   {"priority", 1},
                                                   {"trigger", "c"},
                                                   {"variant_id", 1},
                                                   {"delay", 0},
                                                   {"content", Dictionary{{"type", 4}}}}}}}));
    world().campaignSelection.showCustomInapp({{"type", 4}}, "test_inapp");
    EXPECT_THAT(screen.built, SizeIs(2));
    EXPECT_EQ(screen.shows, 1);
}

TEST_F(CampaignSelectionTest, TwoThreadsNeverChooseOneCampaign) {
    Array due;
    for (int i = 1; i <= 200; ++i) due.emplace_back(campaign(i, "a"));
    deliver(due);
    std::array<int, 2> chosen{};
    const auto chooseAll = [&](int& count) {
        CampaignChoice choice({world().reports, world().inapps});
        while (choice.getInapp("a", {}, 1) != nullptr) ++count;
    };
    std::thread other(chooseAll, std::ref(chosen[0]));
    chooseAll(chosen[1]);
    other.join();
    EXPECT_EQ(chosen[0] + chosen[1], 200);
}

}  // namespace
}  // namespace orbinel::testing
