#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "orbinel/linux/linux_host.hpp"
#include "orbinel/orbinel.hpp"
#include "platform/forwarding_http.hpp"
#include "session/stored_keys.hpp"
#include "tests/end_to_end/loopback_backend.hpp"

namespace orbinel::testing {

inline std::size_t fromEnvironment(const char* name, std::size_t otherwise) {
    const char* text = std::getenv(name);
    return text != nullptr ? std::stoul(text) : otherwise;
}

/// What a network did, and how it is.
struct Network {
    std::atomic<std::size_t> underWay{0};
    std::atomic<std::size_t> starts{0};  // completed, either way
    std::atomic<std::size_t> stops{0};
    std::atomic<std::size_t> others{0};
    std::atomic<std::chrono::milliseconds> timeout{std::chrono::minutes(1)};
    std::atomic<bool> gone{false};
};

/// Sends over a network that is watched. The main queue is woken after every completion, so that whoever runs it until
/// something holds looks again.
class WatchedHttp final : public platform::ForwardingHttp {
public:
    WatchedHttp(const platform::Services& services, std::shared_ptr<Network> network)
        : ForwardingHttp(services.http), scheduler_(services.scheduler), network_(std::move(network)) {}

    platform::Ticket send(platform::HttpRequest request, platform::HttpCompletion completion) noexcept override {
        auto* counter = request.url.ends_with(stopPath)    ? &network_->stops
                        : request.url.ends_with(startPath) ? &network_->starts
                                                           : &network_->others;
        request.timeout = network_->timeout;
        if (network_->gone) request.url = "http://127.0.0.1:1/";  // a port where nobody listens
        ++network_->underWay;
        return target_->send(std::move(request), [counter, network = network_, scheduler = scheduler_,
                                                  completion = std::move(completion)](platform::HttpOutcome outcome) {
            completion(std::move(outcome));
            ++*counter;
            --network->underWay;
            scheduler->postMain([] {});
        });
    }

private:
    const std::shared_ptr<platform::Scheduler> scheduler_;
    const std::shared_ptr<Network> network_;
};

/// The library over the Linux host and a data directory. Used on the main thread.
class LinuxLibrary {
public:
    LinuxLibrary(const std::filesystem::path& directory, std::string origin) : origin_(std::move(origin)) {
        hosts::LinuxHostOptions options;
        options.dataDirectory = directory;
        host.emplace(options);
        services = host->services();
        services.http = std::make_shared<WatchedHttp>(services, network);
        // As on a device that the backend knows; otherwise the first activation asks for both before it starts.
        services.defaults->standard()->set(keys::gdprConsent, true);
        services.defaults->standard()->set(keys::orbinelId, "known");
    }
    ~LinuxLibrary() {
        shutdown();
        host->runMainQueue();  // where the world ends if another thread was the last to hold it
    }

    /// Starts the library over `services` and initialises it; again after `orbinel::shutdown`.
    void launch() const {
        ASSERT_TRUE(start(services));
        Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme", origin_);
    }
    void becomeActive() const { post(platform::notification_names::didBecomeActive); }
    void enterBackground() const { post(platform::notification_names::didEnterBackground); }

    /// False where the condition still does not hold far beyond what any of these tests needs.
    [[nodiscard]] bool runUntil(const std::function<bool()>& condition) {
        return host->runUntil(condition, std::chrono::seconds(30));
    }
    [[nodiscard]] bool runUntilQuiet() {
        return runUntil([this] { return network->underWay == 0; });
    }

    /// A session with one event, from the end of the request that starts it to the end of the one that stops it.
    void runSession(std::int32_t number) {
        const auto starts = network->starts.load();
        becomeActive();
        ASSERT_TRUE(runUntil([&] { return network->starts > starts; }));
        host->runMainQueue();
        Orbinel::tagEvent("inapp_seen").addParameterWithInt(sessionNumber, number).build();
        const auto stops = network->stops.load();
        enterBackground();
        ASSERT_TRUE(runUntil([&] { return network->stops > stops; }));
    }

    const std::shared_ptr<Network> network = std::make_shared<Network>();
    std::optional<hosts::LinuxHost> host;
    platform::Services services;

private:
    void post(std::string_view name) const { services.notificationCentre->post(name, {}); }

    const std::string origin_;
};

}  // namespace orbinel::testing
