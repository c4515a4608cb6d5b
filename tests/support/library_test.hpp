#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "core/current_world.hpp"
#include "core/world.hpp"
#include "orbinel/orbinel.hpp"
#include "session/stored_keys.hpp"
#include "support/recording_sinks.hpp"
#include "support/scripted_backend.hpp"

namespace orbinel::testing {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

/// A started library over a headless host, a virtual clock and a scripted backend. Every record and feed is taken.
class LibraryTest : public ::testing::Test {
protected:
    LibraryTest() {
        // As on a device whose user was asked; without it, every first activation asks the backend for the consent.
        host.defaults->standard()->set(keys::gdprConsent, true);
        backend.answer("/v1/privacy/gdpr/consent/get",
                       {.body = R"({"gdpr_consent": true, "mobile_gdpr_consent": true})"});
        launch();
    }
    ~LibraryTest() override { shutdown(); }

    /// Starts the library over the host's services, or over ones that a test has changed.
    void launch(const std::function<void(platform::Services&)>& change = {}) {
        auto services = host.services();
        if (change) change(services);
        ASSERT_TRUE(start(services));
        reportTo(sinks, sinks);
    }
    void relaunch(const std::function<void(platform::Services&)>& change = {}) {
        shutdown();
        launch(change);
    }

    /// Takes back that the user was asked.
    void forgetConsent() { host.defaults->standard()->set(keys::gdprConsent, {}); }

    static void initialise(OptionalText partner = "acme") {
        Orbinel::initWithLaunchOptions(std::nullopt, partner, "group.acme", "https://api.test");
    }
    void becomeActive() {
        post(platform::notification_names::didBecomeActive);
        host.settle();
    }
    void enterBackground() {
        post(platform::notification_names::didEnterBackground);
        host.settle();
    }
    void post(std::string_view notification) { host.notificationCentre->post(notification, {}); }
    void runSession(const std::function<void()>& inside, double seconds = 60) {
        becomeActive();
        inside();
        host.advance(seconds);
        enterBackground();
    }

    static World& world() { return *current_world::get(); }

    /// Has records and feeds of the running library taken by others than its own log and wizard.
    static void reportTo(DiagnosticLog& log, WizardFeed& feed) {
        auto& reports = world().reports;
        reports.diagnosticLog.unbind();
        reports.diagnosticLog.bind(log);
        reports.wizardFeed.unbind();
        reports.wizardFeed.bind(feed);
    }
    static SessionRecord record() {
        return world().session.read([](const SessionRecord& all) { return all; });
    }
    static std::vector<std::string> eventNames() {
        std::vector<std::string> names;
        for (const auto& event : record().custom_events) names.push_back(event.event_name);
        return names;
    }
    Value stored(std::string_view key) { return host.defaults->standard()->value(key); }
    std::size_t queuedStops() {
        const auto queue = stored("orbinelQueue");
        return queue.ifArray() != nullptr ? queue.ifArray()->size() : 0;
    }

    static constexpr double begin = 1'767'225'600;  // 2026-01-01 00:00:00 UTC
    headless::HeadlessHost host{begin};
    ScriptedBackend backend{host};
    RecordingSinks sinks;
};

}  // namespace orbinel::testing
