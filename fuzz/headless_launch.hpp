#pragma once

#include <algorithm>
#include <atomic>
#include <string>

#include "base/reports.hpp"
#include "fuzz/input.hpp"
#include "orbinel/headless/headless_host.hpp"
#include "orbinel/orbinel.hpp"
#include "session/encryptor.hpp"

namespace orbinel::fuzz {

/// An application over a headless host, and the backend that it talks to.
class HeadlessLaunch {
public:
    explicit HeadlessLaunch(std::string startAnswer = "{}") : startAnswer_(std::move(startAnswer)) {
        host.application->setBackgroundMaySuspend(false);
        host.http->setHandler([this](const platform::HttpRequest& request) { return answerTo(request); });
    }
    ~HeadlessLaunch() {
        shutdown();
        host.http->waitUntilIdle();
        host.http->setHandler({});
    }
    HeadlessLaunch(const HeadlessLaunch&) = delete;
    HeadlessLaunch& operator=(const HeadlessLaunch&) = delete;

    /// Ends what runs, as the platform does, and starts anew over the same stores.
    void launch() const {
        shutdown();
        host.settle();
        start(host.services());
        Orbinel::initWithLaunchOptions(std::nullopt, "acme", appGroup, "https://backend.test");
    }
    void becomeActive() const { post(platform::notification_names::didBecomeActive); }
    void enterBackground() const { post(platform::notification_names::didEnterBackground); }

    /// Of the events by this name in all stops that were delivered.
    [[nodiscard]] bool hasReceived(std::string_view event) const {
        const auto sent = host.http->sent();
        return std::any_of(sent.begin(), sent.end(), [&](const auto& request) {
            return request.url.ends_with("/session/stop") &&
                   textOf(request).find("\"" + std::string(event) + "\"") != std::string::npos;
        });
    }

    static constexpr const char* appGroup = "group.acme";
    const headless::HeadlessHost host;
    std::atomic<bool> answersProperly{false};  // instead of what is to be tried

private:
    void post(std::string_view name) const {
        host.notificationCentre->post(name, {});
        host.settle();
    }

    std::optional<platform::HttpOutcome> answerTo(const platform::HttpRequest& request) const {
        const bool tried = request.url.ends_with("/session/start") && !answersProperly;
        return platform::HttpResponse{200, {}, tried ? startAnswer_ : "{}", request.url};
    }

    /// The plain text of a request's envelope.
    [[nodiscard]] std::string textOf(const platform::HttpRequest& request) const {
        const auto body = dictionaryOf(request.body);
        require(body.has_value());
        std::string timestamp;
        for (const auto& [name, value] : request.headers) {
            if (name == "ts") timestamp = value;
        }
        Reports silent(*host.console);
        const OrbinelEncryptor encryptor(silent, *host.base64);
        return encryptor.decryptPayload((*body)["payload"].stringOrEmpty(), timestamp).value_or("");
    }

    const std::string startAnswer_;
};

}  // namespace orbinel::fuzz
