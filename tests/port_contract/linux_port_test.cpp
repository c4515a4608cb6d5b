#include <glib.h>

#include <memory>

#include "hosts/common/rapidjson_json.hpp"
#include "hosts/linux/curl_http.hpp"
#include "hosts/linux/file_secure_items.hpp"
#include "hosts/linux/linux_application.hpp"
#include "hosts/linux/linux_device.hpp"
#include "hosts/linux/linux_notifications.hpp"
#include "hosts/linux/sqlite_defaults.hpp"
#include "hosts/linux/system_scheduler.hpp"
#include "tests/linux/linux_loopback_server.hpp"
#include "tests/linux/temporary_directory.hpp"
#include "tests/port_contract/defaults_contract.hpp"
#include "tests/port_contract/delegates_contract.hpp"
#include "tests/port_contract/facts_contract.hpp"
#include "tests/port_contract/http_contract.hpp"
#include "tests/port_contract/scheduler_contract.hpp"
#include "tests/port_contract/secure_items_contract.hpp"

// Every service of the Linux host keeps the contract of its service.
namespace orbinel::contract {

namespace {

using hosts::LoopbackServer;
using hosts::TemporaryDirectory;

SchedulerUnderTest schedulerWithItsOwnLoop() {
    const auto scheduler = std::make_shared<hosts::SystemScheduler>();
    return {scheduler, [raw = scheduler.get()](milliseconds time) { raw->runUntil([] { return false; }, time); }};
}

SchedulerUnderTest schedulerInGlibsLoop() {
    const auto scheduler = std::make_shared<hosts::SystemScheduler>();
    scheduler->attachToGlibMainContext();
    return {scheduler, [](milliseconds time) {
                bool over = false;
                const auto end = [](gpointer flag) -> gboolean {
                    *static_cast<bool*>(flag) = true;
                    return G_SOURCE_REMOVE;
                };
                g_timeout_add(static_cast<guint>(time.count()), end, &over);
                while (!over) g_main_context_iteration(nullptr, TRUE);
            }};
}

/// In the order of the behaviours; `close` has a port of its own.
constexpr const char* paths[] = {"/answer", "/no-content", "/broken", "/redirect", "/see-other",
                                 "/circle", "/hang",       "",        "/huge"};

HttpUnderTest curlHttp() {
    const auto server = std::make_shared<LoopbackServer>();
    // The server goes last, so that it need not wait for connections that are kept alive.
    const std::shared_ptr<hosts::CurlHttp> http(new hosts::CurlHttp, [server](auto* raw) { delete raw; });
    return {http,
            [server](Behaviour behaviour) {
                return behaviour == Behaviour::close ? server->closingUrl()
                                                     : server->url(paths[static_cast<int>(behaviour)]);
            },
            [server] {
                std::vector<ReceivedRequest> received;
                for (auto& one : server->received()) received.push_back({one.method, one.headers, one.body});
                return received;
            },
            [](milliseconds) {}};
}

DefaultsUnderTest sqliteDefaults() {
    return {[directory = std::make_shared<TemporaryDirectory>()] {
        return std::make_shared<hosts::SqliteDefaults>(directory->path(), std::make_shared<hosts::RapidJson>());
    }};
}

SecureItemsUnderTest fileSecureItems() {
    return {[directory = std::make_shared<TemporaryDirectory>()] {
        return std::make_shared<hosts::FileSecureItems>(directory->path() / "secure");
    }};
}

DelegatesUnderTest linuxDelegates() {
    const auto scheduler = std::make_shared<hosts::SystemScheduler>();
    return {std::make_shared<hosts::LinuxApplication>(platform::ApplicationBundle(), false, scheduler),
            std::make_shared<hosts::LinuxNotifications>()};
}

FactsUnderTest linuxFacts() {
    const auto directory = std::make_shared<TemporaryDirectory>();
    const std::shared_ptr<hosts::LinuxDevice> device(
        new hosts::LinuxDevice(directory->path(), std::make_shared<hosts::SystemScheduler>()),
        [directory](auto* raw) { delete raw; });
    return {device, std::make_shared<hosts::LinuxNotifications>()};
}

INSTANTIATE_TEST_SUITE_P(LinuxOwnLoop, SchedulerContract, testing::Values(&schedulerWithItsOwnLoop));
INSTANTIATE_TEST_SUITE_P(LinuxGlibLoop, SchedulerContract, testing::Values(&schedulerInGlibsLoop));
INSTANTIATE_TEST_SUITE_P(Linux, HttpContract, testing::Values(&curlHttp));
INSTANTIATE_TEST_SUITE_P(Linux, DefaultsContract, testing::Values(&sqliteDefaults));
INSTANTIATE_TEST_SUITE_P(Linux, SecureItemsContract, testing::Values(&fileSecureItems));
INSTANTIATE_TEST_SUITE_P(Linux, FactsContract, testing::Values(&linuxFacts));
INSTANTIATE_TEST_SUITE_P(Linux, DelegatesContract, testing::Values(&linuxDelegates));

}  // namespace

}  // namespace orbinel::contract
