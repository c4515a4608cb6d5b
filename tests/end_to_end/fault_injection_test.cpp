#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <set>

#include "inapp/view_tags.hpp"
#include "orbinel/orbinel.hpp"
#include "session/stored_keys.hpp"
#include "support/failing_services.hpp"
#include "support/scripted_backend.hpp"

// Whichever one call of the platform fails, the application goes on, no session is lost in silence, and who reads the
// development log finds one report.
namespace orbinel::testing {

namespace {

constexpr const char* startAnswer = R"({"session_id": "s", "is_logging_enabled": true, "log_flush_time_interval": 30,
    "smart_recommendations": {"1": "https://api.test/recommend/{currency}"},
    "contents": [{"content_id": 4, "variant_id": 2, "variables": [{"variable_name": "title", "new_value": "Hi"}]}],
    "passive_variables": ["old"],
    "inapps": [{"inapp_id": 5, "variant_id": 1, "priority": 1, "trigger": "seen", "delay": 0, "frequency": 60,
        "content": {"type": 4, "template_url": "https://pages.test/5", "template_layout": {"height": 0.5}}}]})";

/// What a page asks for in one breath: an action of every service that pages reach.
constexpr const char* pageActions =
    "orbinelurl://"
    R"(%7B"copy":"CODE","trigger_haptic_feedback":%7B"severity":1%7D,)"
    R"("native":"push_permission","retrieve_device_attributes":true,)"
    R"("init_shake_detector":%7B%7D,"event":%7B"event_name":"voted"%7D,)"
    R"("externalUrl":"https://shop.test/"%7D)";

/// Two launches of an application, with everything in them that reaches for the platform; then one over a platform that
/// is whole again.
class Visit {
public:
    explicit Visit(SharedFaults faults) : faults_(std::move(faults)) {
        host_.defaults->standard()->set(keys::gdprConsent, true);
        host_.application->setBackgroundMaySuspend(false);
        backend_.answer("/api/v3/session/start", {200, startAnswer});
        backend_.answer("/v1/privacy/gdpr/consent/get",
                        {200, R"({"gdpr_consent": true, "mobile_gdpr_consent": true})"});
    }

    void run() {
        launch(failing(host_.services(), faults_));
        visitShop();
        backend_.answer("/api/v3/session/stop", {503});
        refusedFrom_ = backend_.stops().size();
        background();  // its stop is queued
        active();      // and sent again, in vain
        Orbinel::tagEvent("visit_2").build();
        refusedUntil_ = backend_.stops().size();
        backend_.answer("/api/v3/session/stop", {});
        background();
        launch(failing(host_.services(), faults_));
        active();
        Orbinel::tagEvent("visit_3").build();
        background();
        launch(host_.services());
        active();
        Orbinel::tagEvent("visit_4").build();
        background();
        shutdown();
    }

    /// The visits in all stops that the backend has taken.
    std::set<std::string> delivered() const {
        std::set<std::string> visits;
        const auto stops = backend_.stops();
        for (std::size_t i = 0; i < stops.size(); ++i) {
            if (i >= refusedFrom_ && i < refusedUntil_) continue;
            for (const auto& name : eventNamesOf(stops[i])) {
                if (name.starts_with("visit")) visits.insert(name);
            }
        }
        return visits;
    }
    bool queueIsEmpty() const { return host_.defaults->standard()->value(keys::offlineQueue).isAbsent(); }

    std::vector<std::string> linesWith(std::string_view part) const {
        std::vector<std::string> found;
        for (const auto& line : host_.console->lines()) {
            if (line.find(part) != std::string::npos) found.push_back(line);
        }
        return found;
    }

private:
    void launch(const platform::Services& services) {
        shutdown();
        host_.settle();
        ASSERT_TRUE(start(services));
        Orbinel::setDevelopmentLog(true);
        Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme", "https://api.test");
    }
    void post(std::string_view name) {
        host_.notificationCentre->post(name, {});
        host_.settle();
    }
    void active() { post(platform::notification_names::didBecomeActive); }
    void background() { post(platform::notification_names::didEnterBackground); }

    void visitShop() {
        active();
        Orbinel::tagEvent("visit_1").build();
        Orbinel::getCurrentUser().setName("Ada").login(OrbinelIdentifiers().addEmail("ada@acme.com"));
        host_.settle();
        (void)Orbinel::getContentStringWithName("title", "Welcome", OrbinelVariableTypeContent);
        (void)Orbinel::getContentStringWithoutCache("title", "Welcome", OrbinelVariableTypeContent);
        const auto shoe = Orbinel::createNewProductWithID("shoe", "Shoe", {"Shoes"}, "https://img.test", 9.5, "EUR");
        Orbinel::getSmartRecommendationWithProduct(shoe, 1, "en", [](const Dictionary&) {});
        Orbinel::itemPurchasedWithSaleID("sale", shoe);
        Orbinel::getMessageCenterDataWithLimit(3, Date{1'767'000'000}, Date{1'767'200'000}, [](const Array&) {});
        seeMessage();
        Orbinel::registerWithQuietPermission(false);
        Orbinel::setPushToken("0102");
        Orbinel::handlePushLogWithUserInfo(Dictionary{
            {"aps", Dictionary()}, {"source", "Orbinel"}, {"camp_id", 1}, {"orb_dl_external", "https://shop.test/"}});
        host_.advance(31);  // a push's address is opened and the log flushed
    }
    void seeMessage() {
        Orbinel::tagEvent("seen").build();
        host_.settle();
        if (const auto page = host_.views->page(); page != nullptr && page->isAlive()) {
            page->respond();
            page->finish();
            host_.advance(1);
            page->navigate(pageActions);
            host_.advance(1);
        }
        host_.accelerometer->sample(3, 0, 0);
        host_.settle();
        (void)host_.views->tap(kBUTTONVIEWTAG);
        Orbinel::removeInapp();
        host_.advance(1);
    }

    const SharedFaults faults_;
    headless::HeadlessHost host_;
    ScriptedBackend backend_{host_};
    std::size_t refusedFrom_ = 0;  // among the stops
    std::size_t refusedUntil_ = 0;
};

/// The calls to fail: each, or where a method is called often so many that are spread evenly over all.
std::vector<int> callsToFail(int calls) {
    const int most = std::getenv("ORBINEL_EVERY_FAULT") != nullptr ? calls : 16;
    std::vector<int> chosen;
    for (int i = 0; i < std::min(calls, most); ++i) chosen.push_back(1 + i * calls / std::min(calls, most));
    return chosen;
}

TEST(FaultInjection, EachCallOfThePlatformMayFailOnce) {
    const auto none = std::make_shared<Faults>();
    Visit whole(none);
    ASSERT_NO_FATAL_FAILURE(whole.run());
    const std::set<std::string> all{"visit_1", "visit_2", "visit_3", "visit_4"};
    ASSERT_EQ(whole.delivered(), all);

    int runs = 0;
    for (const auto& [method, calls] : none->calls()) {
        for (const int call : callsToFail(calls)) {
            SCOPED_TRACE(method + ", call " + std::to_string(call) + " of " + std::to_string(calls));
            const auto faults = std::make_shared<Faults>(method, call);
            Visit visit(faults);
            ASSERT_NO_FATAL_FAILURE(visit.run());
            EXPECT_TRUE(faults->haveStruck());
            // What is no text or no JSON any more can not be sent, and says so.
            const auto lost = all.size() - visit.delivered().size();
            EXPECT_EQ(visit.linesWith("/session/stop can not be sent").size() +
                          visit.linesWith("Dropped a queued request that can not be sent.").size(),
                      lost);
            EXPECT_TRUE(lost == 0 || method == "json parse" || method == "json serialise" || method == "base64 decode");
            EXPECT_TRUE(visit.queueIsEmpty());
            EXPECT_LE(visit.linesWith("crash report").size(), 1u);
            ++runs;
        }
    }
    std::cout << none->calls().size() << " methods, " << runs << " runs with one failure each" << std::endl;
}

}  // namespace

}  // namespace orbinel::testing
