#include "apps/orbinel/play/host_description.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "apps/orbinel/play/fields.hpp"
#include "orbinel/platform/delegate.hpp"

namespace orbinel::tool {

namespace {

namespace operations = platform::delegate_operations;

constexpr std::array notificationOperations{operations::didReceiveNotificationResponse,
                                            operations::willPresentNotification};

constexpr std::array applicationOperations{operations::didRegisterForRemoteNotifications,
                                           operations::didFailToRegisterForRemoteNotifications,
                                           operations::didReceiveRemoteNotificationFetching,
                                           operations::didReceiveRemoteNotification,
                                           operations::openUrlWithOptions,
                                           operations::handleOpenUrl,
                                           operations::openUrlWithSourceApplication,
                                           operations::continueUserActivity,
                                           operations::didReceiveNotificationResponse,
                                           operations::willPresentNotification,
                                           operations::openUrlContexts};

std::vector<std::string> readOperations(const Value& json, std::string_view what,
                                        std::span<const std::string_view> known) {
    auto names = requireTexts(json, what);
    for (const auto& name : names) {
        if (std::find(known.begin(), known.end(), name) != known.end()) continue;
        throw Unusable(std::string(what) + " of \"host\" has no operation " + inQuotes(name));
    }
    return names;
}

}  // namespace

HostDescription readHost(const Value& json) {
    HostDescription host;
    Fields fields(json, "\"host\"");
    if (const auto* application = fields.find("application")) {
        host.application = readOperations(*application, "\"application\"", applicationOperations);
    }
    if (const auto* notifications = fields.find("notifications")) {
        if (notifications->stringOrEmpty() != "application") {
            host.notifications = readOperations(*notifications, "\"notifications\"", notificationOperations);
        }
    }
    if (const auto* twice = fields.find("set_twice")) host.setTwice = requireBoolean(*twice, "\"set_twice\"");
    if (const auto* hybrid = fields.find("hybrid")) host.isHybrid = requireBoolean(*hybrid, "\"hybrid\"");
    fields.expectNoOthers();
    return host;
}

}  // namespace orbinel::tool
