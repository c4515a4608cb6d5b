#include <memory>

#include "hosts/common/glib_base64.hpp"
#include "hosts/common/in_process_notification_centre.hpp"
#include "hosts/common/rapidjson_json.hpp"
#include "hosts/common/without_window.hpp"
#include "orbinel/headless/headless_host.hpp"
#include "tests/port_contract/base64_contract.hpp"
#include "tests/port_contract/defaults_contract.hpp"
#include "tests/port_contract/delegates_contract.hpp"
#include "tests/port_contract/facts_contract.hpp"
#include "tests/port_contract/http_contract.hpp"
#include "tests/port_contract/json_contract.hpp"
#include "tests/port_contract/notification_centre_contract.hpp"
#include "tests/port_contract/scheduler_contract.hpp"
#include "tests/port_contract/secure_items_contract.hpp"
#include "tests/port_contract/touch_contract.hpp"
#include "tests/port_contract/views_contract.hpp"

// Every service of the headless host keeps the contract of its service.
namespace orbinel::contract {

namespace {

using headless::HeadlessScheduler;

double inSeconds(std::chrono::milliseconds time) { return std::chrono::duration<double>(time).count(); }

SchedulerUnderTest virtualScheduler() {
    const auto scheduler = std::make_shared<HeadlessScheduler>(1'767'225'600.25);
    return {scheduler, [raw = scheduler.get()](milliseconds time) { raw->advance(inSeconds(time)); }};
}

SchedulerUnderTest realScheduler() {
    const auto scheduler = std::make_shared<HeadlessScheduler>(HeadlessScheduler::RealClock{});
    return {scheduler, [raw = scheduler.get()](milliseconds time) {
                const auto end = std::chrono::steady_clock::now() + time;
                do {
                    const auto left = end - std::chrono::steady_clock::now();
                    if (raw->waitForWork(std::chrono::ceil<milliseconds>(left))) raw->runUntilIdle();
                } while (std::chrono::steady_clock::now() < end);
            }};
}

std::string scriptedUrl(Behaviour behaviour) {
    return "http://127.0.0.1/" + std::to_string(static_cast<int>(behaviour));
}

std::optional<platform::HttpOutcome> scripted(const platform::HttpRequest& request) {
    const auto asks = [&](Behaviour behaviour) { return request.url == scriptedUrl(behaviour); };
    const auto response = [](int status, std::string body, platform::HttpHeaders headers = {}) {
        return platform::HttpResponse{status, std::move(headers), std::move(body), ""};
    };
    if (asks(Behaviour::answer)) return response(200, "hello", {{"X-Answer", "yes"}});
    if (asks(Behaviour::noContent)) return response(204, "");
    if (asks(Behaviour::serverError)) return response(500, "broken");
    if (asks(Behaviour::redirect)) return response(302, "", {{"Location", scriptedUrl(Behaviour::answer)}});
    if (asks(Behaviour::seeOther)) return response(303, "", {{"Location", scriptedUrl(Behaviour::answer)}});
    if (asks(Behaviour::circle)) return response(302, "", {{"Location", scriptedUrl(Behaviour::circle)}});
    if (asks(Behaviour::hugeBody)) return response(200, std::string(16 * 1024 * 1024 + 1, 'x'));
    if (asks(Behaviour::close)) return platform::HttpFailure{"The connection was closed.", false};
    return std::nullopt;
}

HttpUnderTest scriptedHttp() {
    const auto clock = std::make_shared<HeadlessScheduler>(0);
    const auto http = std::make_shared<headless::HeadlessHttp>(clock);
    const auto arrived = std::make_shared<Gathered<ReceivedRequest>>();
    http->setHandler([arrived](const platform::HttpRequest& request) {
        arrived->add({request.method, request.headers, request.body});
        return scripted(request);
    });
    return {http, &scriptedUrl, [arrived] { return arrived->all(); },
            [clock](milliseconds time) { clock->advance(inSeconds(time)); }};
}

DefaultsUnderTest defaultsInMemory() {
    const auto defaults = std::make_shared<headless::HeadlessDefaults>(std::make_shared<hosts::RapidJson>());
    return {[defaults] {
        defaults->dropUnsynchronised();
        return defaults;
    }};
}

SecureItemsUnderTest secureItemsInMemory() {
    return {[items = std::make_shared<headless::HeadlessSecureItems>()] { return items; }};
}

DelegatesUnderTest headlessDelegates() {
    return {std::make_shared<headless::HeadlessApplication>(std::make_shared<HeadlessScheduler>(0)),
            std::make_shared<headless::HeadlessNotifications>()};
}

FactsUnderTest headlessFacts() {
    return {std::make_shared<headless::HeadlessDevice>(), std::make_shared<headless::HeadlessNotifications>()};
}

TouchUnderTest headlessTouch() {
    const auto host = std::make_shared<headless::HeadlessHost>();
    return {host->accelerometer, host->haptics, host->pasteboard, host->reviewPrompt, [host] {
                host->accelerometer->sample(0, 0, 1);
                host->settle();
            }};
}

TouchUnderTest absentTouch() {
    return {std::make_shared<hosts::NoAccelerometer>(), std::make_shared<hosts::NoHaptics>(),
            std::make_shared<hosts::NoPasteboard>(), std::make_shared<hosts::NoReviewPrompt>(), [] {}};
}

/// Plays what an engine does by itself.
class PlayedPages final : public PageDriver {
public:
    explicit PlayedPages(headless::HeadlessHost& host) : host_(host) {}

    std::string urlOf(Page page) override { return "https://pages.test/" + std::to_string(static_cast<int>(page)); }

    void arrive(Page page) override {
        host_.settle();
        const auto played = host_.views->page();
        if (page == Page::unreachable) {
            constexpr std::int32_t cannotConnect = -1004;
            const std::string domain(platform::LoadFailure::urlLoading);
            return played->fail({domain, cannotConnect, "Nobody listens.", true});
        }
        if (played->respond(page == Page::answer ? 200 : 404) == platform::NavigationPolicy::cancel) return;
        played->progress(0.5);
        played->progress(1);
        played->finish();
    }
    void navigate(const std::string& url, bool linkActivated) override {
        (void)host_.views->page()->navigate(url, linkActivated);
    }
    void post(const Value& message) override { host_.views->page()->message(message); }
    bool runsScripts() const override { return false; }
    void pressCloseButton() override { EXPECT_TRUE(host_.views->tap(0)); }

private:
    headless::HeadlessHost& host_;
};

ViewsUnderTest headlessViews() {
    const auto host = std::make_shared<headless::HeadlessHost>();
    const auto screen = *host->device->facts()->screen;
    const auto safe = *host->device->facts()->safeArea;
    return {host->views,
            std::make_shared<PlayedPages>(*host),
            {0, 0, screen.width, screen.height},
            safe.top,
            safe.bottom,
            [host](milliseconds time) { host->advance(inSeconds(time)); }};
}

INSTANTIATE_TEST_SUITE_P(HeadlessVirtual, SchedulerContract, testing::Values(&virtualScheduler));
INSTANTIATE_TEST_SUITE_P(HeadlessReal, SchedulerContract, testing::Values(&realScheduler));
INSTANTIATE_TEST_SUITE_P(Headless, HttpContract, testing::Values(&scriptedHttp));
INSTANTIATE_TEST_SUITE_P(Headless, DefaultsContract, testing::Values(&defaultsInMemory));
INSTANTIATE_TEST_SUITE_P(Headless, SecureItemsContract, testing::Values(&secureItemsInMemory));
INSTANTIATE_TEST_SUITE_P(Headless, FactsContract, testing::Values(&headlessFacts));
INSTANTIATE_TEST_SUITE_P(Headless, DelegatesContract, testing::Values(&headlessDelegates));
INSTANTIATE_TEST_SUITE_P(Headless, TouchContract, testing::Values(&headlessTouch));
INSTANTIATE_TEST_SUITE_P(WithoutWindow, TouchContract, testing::Values(&absentTouch));
INSTANTIATE_TEST_SUITE_P(Headless, ViewsContract, testing::Values(&headlessViews));
INSTANTIATE_TEST_SUITE_P(Common, JsonContract, testing::Values([] { return std::make_shared<hosts::RapidJson>(); }));
INSTANTIATE_TEST_SUITE_P(Common, Base64Contract, testing::Values([] { return std::make_shared<hosts::GlibBase64>(); }));
INSTANTIATE_TEST_SUITE_P(Common, NotificationCentreContract,
                         testing::Values([] { return std::make_shared<hosts::InProcessNotificationCentre>(); }));

}  // namespace

}  // namespace orbinel::contract
