#include "privacy/consent.hpp"

#include "support/library_test.hpp"

namespace orbinel::testing {
namespace {

class ConsentTest : public LibraryTest {
protected:
    ConsentTest() {
        forgetConsent();
        initialise();
    }
    void becomeActiveForConsent() {
        world().privacy.importOrResendConsent();
        host.settle();
    }
    std::vector<Received> sets() const { return backend.received(setPath); }
    std::vector<Received> gets() const { return backend.received(getPath); }
    bool gateIsOpen() { return world().helper.shouldProceed(); }

    static constexpr const char* setPath = "/v1/privacy/gdpr/consent/set";
    static constexpr const char* getPath = "/v1/privacy/gdpr/consent/get";
};

TEST_F(ConsentTest, SettingClosesTheGateAtOnceRemembersAndStillPosts) {
    world().privacy.setGDPRConsent(false);
    EXPECT_FALSE(gateIsOpen());
    Orbinel::tagEvent("dropped").build();
    host.settle();
    world().privacy.setGDPRConsent(true);
    world().privacy.setMobileGDPRConsent(false);
    EXPECT_FALSE(gateIsOpen());
    host.settle();

    const auto udid = world().helper.getUdid().value();
    const Dictionary target{{"udid", udid}};
    ASSERT_THAT(sets(), SizeIs(3));
    EXPECT_EQ(host.http->sent().at(0).body, R"({"partner_name":"acme","gdpr_consent":false,"target":{"udid":")" + udid +
                                                R"("},"orbinel_id":")" + udid + "\"}");
    EXPECT_EQ(sets()[1].payload["gdpr_consent"], true);
    EXPECT_EQ(sets()[2].payload,
              (Dictionary{
                  {"partner_name", "acme"}, {"mobile_gdpr_consent", false}, {"target", target}, {"orbinel_id", udid}}));
    EXPECT_EQ(stored(keys::gdprConsent), true);
    EXPECT_EQ(stored(keys::mobileConsent), false);
    EXPECT_EQ(sinks.feeds("setGDPRConsent").at(0).data, (Dictionary{{"value", false}}));

    relaunch();
    initialise();
    world().privacy.adoptRememberedConsents();
    EXPECT_TRUE(world().helper.sessionGdprConsent());
    EXPECT_FALSE(world().helper.mobileSessionGdprConsent());
}

TEST_F(ConsentTest, PostsOnceMoreWhereTwoPostsMayHaveOvertakenEachOther) {
    backend.answer(setPath, {.never = true});
    world().privacy.setGDPRConsent(true);
    world().privacy.setGDPRConsent(false);
    world().privacy.setMobileGDPRConsent(true);
    host.settle();
    ASSERT_THAT(sets(), SizeIs(3));
    backend.answer(setPath, {});
    host.advance(60);  // their time is up
    ASSERT_THAT(sets(), SizeIs(4));
    EXPECT_EQ(sets()[3].payload["gdpr_consent"], false);

    // Also where the first of them repeats a post that failed.
    backend.clear();
    host.defaults->standard()->set(keys::gdprConsent, true);
    host.defaults->standard()->set(keys::savedGdprConsent, true);
    backend.answer(setPath, {.never = true});
    becomeActiveForConsent();
    world().privacy.setGDPRConsent(false);
    host.settle();
    ASSERT_THAT(sets(), SizeIs(2));
    backend.answer(setPath, {});
    host.advance(60);
    ASSERT_THAT(sets(), SizeIs(3));
    EXPECT_EQ(sets()[2].payload["gdpr_consent"], false);
}

TEST_F(ConsentTest, ALaunchAdoptsWhatIsRememberedInItsOrder) {
    struct Case {
        Value stored, failed;
        bool disabled, expected;
    };
    for (const auto& [set, failed, disabled, expected] : std::vector<Case>{{{}, {}, false, true},
                                                                           {{}, false, false, false},
                                                                           {true, false, false, true},
                                                                           {false, true, false, false},
                                                                           {Dictionary{}, true, false, false},
                                                                           {false, false, true, true}}) {
        forgetConsent();
        host.defaults->standard()->set(keys::savedGdprConsent, {});
        relaunch();
        initialise();
        host.defaults->standard()->set(keys::gdprConsent, set);
        host.defaults->standard()->set(keys::savedGdprConsent, failed);
        world().helper.setSdkDisabled(disabled);
        world().privacy.adoptRememberedConsents();
        EXPECT_EQ(world().helper.sessionGdprConsent(), expected);
        EXPECT_TRUE(world().helper.mobileSessionGdprConsent());
    }
}

TEST_F(ConsentTest, ImportsTheBackendsConsentUntilOneIsSetOnTheDevice) {
    backend.answer(getPath, {.body = R"({"gdpr_consent": "true"})"});
    becomeActiveForConsent();
    ASSERT_THAT(gets(), SizeIs(1));
    EXPECT_FALSE(gets()[0].payload.contains("gdpr_consent"));
    EXPECT_EQ(gets()[0].payload["partner_name"], "acme");
    EXPECT_TRUE(world().helper.sessionGdprConsent());
    EXPECT_FALSE(world().helper.mobileSessionGdprConsent());
    ASSERT_THAT(sets(), SizeIs(2));
    EXPECT_EQ(sets()[0].payload["gdpr_consent"], true);
    EXPECT_EQ(sets()[1].payload["mobile_gdpr_consent"], false);

    becomeActiveForConsent();
    EXPECT_THAT(gets(), SizeIs(1));
}

TEST_F(ConsentTest, AnswersThatAreNoDictionaryChangeNothing) {
    const Scripted none{.status = 204, .body = std::nullopt};
    const std::string large(1 << 20, 'x');
    for (const auto& answer :
         {Scripted{.body = "7"}, Scripted{.body = "[true]"}, Scripted{.body = large}, Scripted{.body = "\xFF\xFE"},
          Scripted{.body = ""}, none, Scripted{.status = 500}, Scripted{.status = std::nullopt}}) {
        backend.answerOnce(getPath, answer);
        becomeActiveForConsent();
    }
    EXPECT_TRUE(gateIsOpen());
    EXPECT_THAT(sets(), IsEmpty());
    EXPECT_TRUE(stored(keys::gdprConsent).isAbsent());

    backend.answerOnce(getPath, {.body = R"({"gdpr_consent": {"deep": []}, "mobile_gdpr_consent": "no"})"});
    becomeActiveForConsent();
    EXPECT_EQ(stored(keys::gdprConsent), false);
    EXPECT_EQ(stored(keys::mobileConsent), false);
}

// A person's refusal must not be undone by an older answer that was still on its way.
TEST_F(ConsentTest, AnImportNeverOverridesWhatTheApplicationSetMeanwhile) {
    backend.answer(getPath, {.body = R"({"gdpr_consent": true, "mobile_gdpr_consent": true})"});
    world().privacy.importOrResendConsent();
    world().privacy.setGDPRConsent(false);
    host.settle();
    EXPECT_FALSE(gateIsOpen());
    EXPECT_EQ(stored(keys::gdprConsent), false);
}

TEST_F(ConsentTest, SendsAFailedConsentAgainUntilItIsTaken) {
    backend.answerOnce(setPath, {.status = std::nullopt});
    world().privacy.setGDPRConsent(true);
    host.settle();
    EXPECT_EQ(stored(keys::savedGdprConsent), true);

    host.defaults->standard()->set(keys::savedGdprConsent, false);  // what is sent is the consent in force
    for (const auto& untaken : std::vector<Scripted>{{.status = 500}, {.status = std::nullopt}}) {
        backend.clear();
        backend.answerOnce(setPath, untaken);
        becomeActiveForConsent();
        ASSERT_THAT(sets(), SizeIs(1));
        EXPECT_EQ(sets()[0].payload["gdpr_consent"], true);
        EXPECT_FALSE(stored(keys::savedGdprConsent).isAbsent());
    }
    for (const auto& taken : std::vector<Scripted>{{.status = 204, .body = std::nullopt}, {.body = ""}, {}}) {
        host.defaults->standard()->set(keys::savedGdprConsent, true);
        backend.answerOnce(setPath, taken);
        becomeActiveForConsent();
        EXPECT_TRUE(stored(keys::savedGdprConsent).isAbsent());
    }
}

TEST_F(ConsentTest, AFailedPostOfTheMobileConsentCountsAsWithheld) {
    backend.answerOnce(setPath, {.status = std::nullopt});
    world().privacy.setMobileGDPRConsent(true);
    host.settle();
    EXPECT_EQ(stored(keys::savedGdprConsent), false);
}

TEST_F(ConsentTest, APayloadEndsAtTheFirstMissingValue) {
    EXPECT_EQ(world().privacy.getMobileGDPRPayload(), (Dictionary{{"partner_name", "acme"}}));
    world().session.setPartnerName("");
    EXPECT_EQ(world().privacy.getGDPRPayload(), Dictionary());
}

}  // namespace
}  // namespace orbinel::testing
