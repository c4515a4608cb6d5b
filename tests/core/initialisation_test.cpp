#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

using InitialisationTest = LibraryTest;

TEST_F(InitialisationTest, AcceptsPartnerNamesByTheirForm) {
    const std::string notText = "Partner name is invalid. Is not a String.";
    const std::string tooShort = "Partner name is invalid. Must have more than 1 character.";
    const std::string badForm = "Partner name is invalid. Contains invalid characters.";
    const std::vector<std::pair<std::string, Array>> cases{{"", {"ab", "a_", "9lives"}},
                                                           {tooShort, {"a", "", "\xC3\xA4", "a\0b"}},
                                                           {badForm, {"_ab", "aB", "a-b", "ab\n", "\xC3\xA4z"}},
                                                           {notText, {Value(7), Value(), Null{}}}};
    for (const auto& [refusal, names] : cases) {
        for (const auto& name : names) {
            sinks.clear();
            EXPECT_EQ(Orbinel::partnerNameIsValid(name), refusal.empty());
            const std::vector<std::string> said(refusal.empty() ? 0 : 1, refusal);
            EXPECT_EQ(sinks.messages({"Partner name"}), said);
        }
    }
    EXPECT_EQ(sinks.records().at(0).type, LogType::reinit);
    EXPECT_EQ(textOf(LogType::reinit), "");
}

TEST_F(InitialisationTest, ARefusedPartnerNameStillStoresGroupAndEndpointButStaysUninitialised) {
    Orbinel::initWithLaunchOptions(std::nullopt, "Bad", "group.bad", "https://other.test");
    EXPECT_EQ(stored(keys::appGroup), "group.bad");
    EXPECT_EQ(world().endpoints.getConfig(), "https://other.test/api/v3/session/start");
    const auto fed = sinks.feeds("initSDK");
    ASSERT_THAT(fed, SizeIs(1));
    EXPECT_EQ(fed[0].data, (Dictionary{{"partnerName", "Bad"},
                                       {"launchOptions", ""},
                                       {"appGroup", "group.bad"},
                                       {"customEndpoint", "https://other.test"}}));
    becomeActive();
    EXPECT_THAT(backend.paths(), IsEmpty());
    Orbinel::reinitWithPartnerName("good");
    EXPECT_EQ(sinks.count("Reinit returned. Regular init is not done."), 1U);
}

TEST_F(InitialisationTest, SwitchesThePartnerByAChainOfRequests) {
    initialise("acme");
    becomeActive();
    host.defaults->standard()->set(keys::orbinelId, "id-1");
    EXPECT_FALSE(world().frequencyCap.isFreqCapped({{"inapp_id", 1}, {"frequency", -1}}));
    Orbinel::tagEvent("before").build();
    Orbinel::reinitWithPartnerName("acme");
    EXPECT_EQ(sinks.count("Reinit returned. Partner name is the same."), 1U);
    Orbinel::reinitWithPartnerName("Bad");
    backend.clear();
    sinks.clear();

    Orbinel::reinitWithPartnerName("globex");
    host.settle();
    EXPECT_THAT(backend.paths(), ElementsAre("/api/v3/session/stop", "/api/wizard/v1/disconnect",
                                             "/api/identity/v3/get", "/api/v3/session/start"));
    EXPECT_EQ(backend.stops().at(0).payload["partner_name"], "acme");
    EXPECT_EQ(backend.stops().at(0).payload["reason"], "reinit");
    EXPECT_EQ(backend.starts().at(0).payload["partner_name"], "globex");
    EXPECT_EQ(backend.starts().at(0).payload["reason"], "reinit");
    EXPECT_THAT(
        sinks.messages({"Reinit", "Cached"}),
        ElementsAre("Reinit called.", "Reinit session stop completed.", "Cached SDK data flushed.",
                    "Reinit OrbinelID reset completed.", "Reinit session start completed.", "Reinit completed."));
    EXPECT_TRUE(stored(keys::orbinelId).isAbsent());
    EXPECT_TRUE(stored(keys::inappFrequency).isAbsent());
    EXPECT_FALSE(world().frequencyCap.isFreqCapped({{"inapp_id", 1}, {"frequency", -1}}));
}

TEST_F(InitialisationTest, SwitchesThePartnerWithoutRequestsWhileConsentIsWithheld) {
    initialise("acme");
    world().helper.setMobileSessionGdprConsent(false);
    Orbinel::reinitWithPartnerName("globex");
    host.settle();
    EXPECT_THAT(backend.paths(), ElementsAre("/api/wizard/v1/disconnect"));
    EXPECT_EQ(world().session.partnerName(), "globex");
    EXPECT_EQ(sinks.count("Reinit GDPR false. Skipping session stop/start."), 1U);
}

// The queue of the old partner is not waited for: three passes, two seconds longer apart each.
TEST_F(InitialisationTest, RetriesTheQueueAfterASwitch) {
    initialise("acme");
    becomeActive();
    backend.answer("/session/stop", {.status = 503});
    Orbinel::reinitWithPartnerName("globex");
    host.settle();
    ASSERT_EQ(queuedStops(), 1U);
    EXPECT_THAT(backend.starts(), SizeIs(2));
    backend.clear();

    host.advance(30);
    std::vector<double> passes;
    for (const auto& stop : backend.stops()) passes.push_back(stop.at - begin);
    EXPECT_THAT(passes, ElementsAre(2, 6, 12));
    EXPECT_EQ(sinks.count("Retried queued requests."), 3U);
    EXPECT_EQ(sinks.count("Flushing operation finished for Queued requests."), 1U);
    EXPECT_EQ(queuedStops(), 1U);
}

}  // namespace
}  // namespace orbinel::testing
