#include "apps/orbinel/play/host_description.hpp"

#include <algorithm>
#include <string_view>

#include "apps/orbinel/play/fields.hpp"
#include "orbinel/platform/delegate.hpp"

namespace orbinel::tool {

namespace {

namespace operations = platform::delegate_operations;

bool isOnNotificationCentre(std::string_view name) {
    return name == operations::didReceiveNotificationResponse || name == operations::willPresentNotification;
}

bool isOnApplication(std::string_view name) {
    const auto& known = operations::onApplication;
    return std::find(known.begin(), known.end(), name) != known.end() || name == operations::openUrlContexts;
}

std::vector<std::string> readOperations(const Value& json, std::string_view what,
                                        bool (*isKnown)(std::string_view name)) {
    auto names = requireTexts(json, what);
    for (const auto& name : names) {
        if (isKnown(name)) continue;
        throw Unusable(std::string(what) + " of \"host\" has no operation " + inQuotes(name));
    }
    return names;
}

}  // namespace

HostDescription readHost(const Value& json) {
    HostDescription host;
    Fields fields(json, "\"host\"");
    if (const auto* application = fields.find("application")) {
        host.application = readOperations(*application, "\"application\"", &isOnApplication);
    }
    if (const auto* notifications = fields.find("notifications")) {
        if (notifications->stringOrEmpty() != "application") {
            host.notifications = readOperations(*notifications, "\"notifications\"", &isOnNotificationCentre);
        }
    }
    if (const auto* twice = fields.find("set_twice")) host.setTwice = requireBoolean(*twice, "\"set_twice\"");
    if (const auto* hybrid = fields.find("hybrid")) host.isHybrid = requireBoolean(*hybrid, "\"hybrid\"");
    fields.expectNoOthers();
    return host;
}

}  // namespace orbinel::tool
