#include "push/carousel_link.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string_view>
#include <utility>

#include "base/guard.hpp"
#include "base/whole_number.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

constexpr std::int64_t longestAge = 5;  // seconds

void remove(platform::DefaultsStore& store, std::initializer_list<std::string_view> keys) {
    const auto isThere = [&](std::string_view key) { return !store.value(key).isAbsent(); };
    if (std::none_of(keys.begin(), keys.end(), isThere)) return;  // as at most times: no work for the disk
    for (const auto key : keys) store.set(key, {});
    store.synchronize();
}

}  // namespace

Dictionary CarouselLink::getAdvancedPushDeepLink(const Dictionary& pushInfo) noexcept {
    return guarded(reports_, "-[OrbinelHelper getAdvancedPushDeepLink:]", Dictionary(), [&] {
        const auto store = helper_.appGroupStore();
        if (store == nullptr) return Dictionary();
        auto stored = store->value(keys::carouselDeepLink);
        if (isStale(store->value(keys::carouselDeepLinkTimestamp))) {
            remove(*store, {keys::carouselId, keys::carouselDeepLink});
            return Dictionary();
        }
        auto* links = stored.ifDictionary();
        return links != nullptr && !pushInfo.empty() ? std::move(*links) : Dictionary();
    });
}

/// A choice without a moment is as good as a fresh one; one whose moment cannot be read is as old as can be.
bool CarouselLink::isStale(const Value& timestamp) const {
    if (timestamp.isAbsent()) return false;
    constexpr std::int64_t latest = std::numeric_limits<std::int32_t>::max();
    const auto moment = std::min(leadingWholeNumberOf(timestamp).value_or(0), latest);
    return moment + longestAge < std::llround(helper_.now());
}

void CarouselLink::flushClickedDeepLink() noexcept {
    guarded(reports_, "-[OrbinelHelper flushClickedDeepLink]", [&] {
        const auto store = helper_.appGroupStore();
        if (store == nullptr) return;
        remove(*store, {keys::carouselDeepLink, keys::carouselDeepLinkTimestamp});
    });
}

}  // namespace orbinel
