#include "benchmarks/running_library.hpp"

#include <httplib.h>

#include <thread>

#include "core/current_world.hpp"
#include "session/stored_keys.hpp"

namespace orbinel::bench {

TemporaryFolder::TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "orbinel-bench-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

namespace {

hosts::LinuxHostOptions optionsFor(const std::filesystem::path& folder) {
    hosts::LinuxHostOptions options;
    options.dataDirectory = folder;
    options.backgroundMaySuspend = true;
    return options;
}

}  // namespace

RunningLibrary::RunningLibrary(const std::string& endpoint) : host(optionsFor(folder.path())) {
    // As on a device that the backend knows; otherwise the first activation asks for both before it starts.
    host.services().defaults->standard()->set(keys::gdprConsent, true);
    host.services().defaults->standard()->set(keys::orbinelId, "known");
    start(host.services());
    Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme", endpoint);
}

RunningLibrary::~RunningLibrary() { shutdown(); }

World& RunningLibrary::world() { return *current_world::get(); }

void RunningLibrary::post(std::string_view notification) { host.services().notificationCentre->post(notification, {}); }

void RunningLibrary::runUntil(const std::function<bool()>& predicate) {
    host.runUntil(predicate, std::chrono::seconds(10));
}

struct AnsweringServer::Machinery {
    httplib::Server server;
    std::thread thread;
};

AnsweringServer::AnsweringServer() : machinery_(std::make_unique<Machinery>()) {
    auto& server = machinery_->server;
    server.set_tcp_nodelay(true);
    server.set_keep_alive_max_count(1'000'000);
    server.Post(".*", [](const httplib::Request&, httplib::Response& response) {
        response.set_content("{}", "application/json");
    });
    origin_ = "http://127.0.0.1:" + std::to_string(server.bind_to_any_port("127.0.0.1"));
    machinery_->thread = std::thread([&server] { server.listen_after_bind(); });
    while (!server.is_running()) std::this_thread::yield();
}

AnsweringServer::~AnsweringServer() {
    machinery_->server.stop();
    machinery_->thread.join();
}

void tagTypicalEvent(int number) {
    Orbinel::tagEvent("inapp_seen")
        .addParameterWithString("product_sku", "summer-dress-42")
        .addParameterWithInt("quantity", number + 1)
        .addParameterWithDouble("unit_price", 19.99)
        .build();
}

void campaignsOfOtherEventsArrive(World& world, int campaigns) {
    Array arrived;
    for (int i = 0; i < campaigns; ++i) {
        arrived.emplace_back(Dictionary{{"inapp_id", i}, {"trigger", "event_" + std::to_string(i)}});
    }
    world.inapps.inappToMemory(arrived);
    world.inapps.setStartRequestCompleted(true);
}

Dictionary typicalStop(int events) {
    Array custom;
    for (int i = 0; i < events; ++i) {
        custom.emplace_back(
            Dictionary{{"event_name", "inapp_seen"},
                       {"timestamp", 1'767'225'600 + i},
                       {"event_params",
                        Dictionary{{"product_sku", "summer-dress-42"}, {"quantity", i + 1}, {"unit_price", 19.99}}}});
    }
    return {{"partner_name", "acme"}, {"session_duration", 90}, {"custom_events", std::move(custom)}};
}

}  // namespace orbinel::bench
