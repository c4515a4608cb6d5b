#include "push/push_info.hpp"

#include <algorithm>
#include <utility>

#include "base/value_content.hpp"
#include "orbinel/launch_options.hpp"

namespace orbinel {

namespace {

bool isShallowEnough(const Dictionary& payload) {
    return std::all_of(payload.begin(), payload.end(),
                       [](const auto& entry) { return isWithinDepth(entry.second, maximumValueDepth - 1); });
}

}  // namespace

Dictionary payloadOf(const Dictionary& userInfo) {
    const auto* launchedBy = userInfo.find(launchOptionsRemoteNotificationKey);
    const auto* payload = launchedBy != nullptr ? launchedBy->ifDictionary() : &userInfo;
    return payload != nullptr && isShallowEnough(*payload) ? *payload : Dictionary();
}

std::optional<Dictionary> getPushInfo(const Dictionary& userInfo) {
    auto payload = payloadOf(userInfo);
    return isPresent(payload[push_keys::aps]) ? std::optional(std::move(payload)) : std::nullopt;
}

}  // namespace orbinel
