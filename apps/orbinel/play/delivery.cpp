#include "apps/orbinel/play/delivery.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>

#include "base/special_objects.hpp"

namespace orbinel::tool {

namespace {

namespace operations = platform::delegate_operations;

/// A word of "via", and the operation by which it arrives.
using Way = std::pair<std::string_view, std::string_view>;

constexpr std::array<Way, 4> waysOfPushes{{{"response", operations::didReceiveNotificationResponse},
                                           {"present", operations::willPresentNotification},
                                           {"remote", operations::didReceiveRemoteNotification},
                                           {"remote_fetch", operations::didReceiveRemoteNotificationFetching}}};

constexpr std::array<Way, 4> waysOfUrls{{{"openURLWithOptions", operations::openUrlWithOptions},
                                         {"handleOpenURL", operations::handleOpenUrl},
                                         {"openURLWithSourceApplication", operations::openUrlWithSourceApplication},
                                         {"scene", operations::openUrlContexts}}};

std::string_view readVia(Fields& step, std::span<const Way> ways) {
    const auto& via = requireText(step.require("via"), "\"via\"");
    const auto way = std::find_if(ways.begin(), ways.end(), [&](const Way& one) { return one.first == via; });
    if (way != ways.end()) return way->second;
    std::string known;
    for (const auto& [word, operation] : ways) known += (known.empty() ? "" : ", ") + inQuotes(word);
    throw Unusable("\"via\" cannot be " + inQuotes(via) + ", only one of " + known);
}

}  // namespace

Delivery readPush(Fields& step, ArgumentReader& arguments) {
    Delivery delivery;
    for (const auto& [key, value] : requireDictionary(step.require("push"), "\"push\"")) {
        delivery.arguments.userInfo.set(key, arguments.element(value));
    }
    delivery.operation = readVia(step, waysOfPushes);
    return delivery;
}

Delivery readOpenUrl(Fields& step) {
    Delivery delivery;
    const auto& url = requireText(step.require("open_url"), "\"open_url\"");
    delivery.operation = readVia(step, waysOfUrls);
    if (delivery.operation == operations::openUrlContexts) {
        delivery.arguments.urlContexts = {url};
    } else {
        delivery.arguments.url = url;
    }
    return delivery;
}

Delivery readUserActivity(Fields& step) {
    Delivery delivery{operations::continueUserActivity, {}};
    delivery.arguments.activity.webpageUrl = requireText(step.require("user_activity"), "\"user_activity\"");
    return delivery;
}

Delivery readDeviceToken(Fields& step, ArgumentReader& arguments) {
    Delivery delivery{operations::didRegisterForRemoteNotifications, {}};
    const auto& json = step.require("device_token");
    // A text of digits would otherwise be taken for the bytes of its characters.
    if (onlySpecialEntry(json) == nullptr) throw Unusable("\"device_token\" must be a {\"$bytes\"}");
    const auto bytes = arguments.element(json);
    const auto& token = requireText(bytes, "\"device_token\"");
    delivery.arguments.deviceToken.assign(token.begin(), token.end());
    return delivery;
}

}  // namespace orbinel::tool
