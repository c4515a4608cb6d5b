#include "push/callback_payload.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "push/push_info.hpp"

namespace orbinel {

namespace {

constexpr std::array<std::string_view, 9> internalKeys{"orbinel_int_push", push_keys::inappTest, push_keys::aps,
                                                       push_keys::campId,  push_keys::campType,  push_keys::variantId,
                                                       "image_url",        push_keys::pushInapp, push_keys::source};

bool isInternal(std::string_view key) {
    return std::find(internalKeys.begin(), internalKeys.end(), key) != internalKeys.end();
}

}  // namespace

Dictionary purifyCallbackPayload(const Dictionary& payload, const Dictionary& advancedPushDeeplink) {
    auto told = payload;
    told.eraseIf([&](const Dictionary::Entry& entry) {
        const bool chosen = advancedPushDeeplink.empty() || advancedPushDeeplink.contains(entry.first);
        return !chosen || isInternal(entry.first);
    });
    return told;
}

}  // namespace orbinel
