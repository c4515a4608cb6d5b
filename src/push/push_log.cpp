#include "push/push_log.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "base/guard.hpp"
#include "base/value_content.hpp"
#include "base/whole_number.hpp"
#include "push/push_info.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

constexpr std::string_view sessionStartFromPush = "session_start_from_push";
constexpr std::array campaignKeys{push_keys::campId, push_keys::campType, push_keys::variantId};
constexpr std::array interactiveKeys{keys::interactivePushSeen, keys::carouselId, keys::carouselCampId};

/// What names the push's campaign, as it was delivered. A journey that is no whole number is left out.
Dictionary campaignOf(const Dictionary& pushInfo) {
    Dictionary campaign;
    for (const auto key : campaignKeys) {
        if (isPresent(pushInfo[key])) campaign.set(key, pushInfo[key]);
    }
    if (const auto journey = leadingWholeNumberOf(pushInfo[push_keys::journeyId])) {
        campaign.set(push_keys::journeyId, *journey);
    }
    return campaign;
}

/// Moves what the extension left into the log; false where it left nothing. It belongs to this push: the next one must
/// not find it.
bool takeInteraction(platform::DefaultsStore& store, Dictionary& log) {
    bool found = false;
    for (const auto key : interactiveKeys) {
        auto left = store.value(key);
        if (left.isAbsent()) continue;
        found = true;
        if (isPresent(left)) log.set(key, std::move(left));
        store.set(key, {});
    }
    if (found) store.synchronize();
    return found;
}

bool isNamed(const Dictionary& campaign) {
    return std::all_of(campaignKeys.begin(), campaignKeys.end(),
                       [&](std::string_view key) { return campaign.contains(key); });
}

bool holds(const Array& logs, const Value& campId) {
    return std::any_of(logs.begin(), logs.end(), [&](const Value& log) {
        const auto* dictionary = log.ifDictionary();
        return dictionary != nullptr && (*dictionary)[push_keys::campId] == campId;
    });
}

}  // namespace

PushLog::PushLog(const Needs& needs)
    : reports_(needs.reports), helper_(needs.helper), session_(needs.session), recorder_(needs.recorder) {}

void PushLog::setPushSessionLog(const Dictionary& pushInfo) noexcept {
    guarded(reports_, "+[Orbinel setPushSessionLog:]", [&] {
        const auto log = campaignOf(pushInfo);
        if (!isNamed(log)) return reports_.note("A push leaves no log: it does not name its campaign.");
        addPushLogIfNotExists(log);
    });
}

/// The log is put down together with the look whether there is one, so that two threads with one push log it once.
void PushLog::addPushLogIfNotExists(const Dictionary& log) noexcept {
    guarded(reports_, "-[OrbinelHelper addPushLogIfNotExists:]", [&] {
        const bool added = session_.update([&](SessionRecord& record) {
            if (holds(record.push_logs, log[push_keys::campId])) return false;
            record.push_logs.emplace_back(log);
            return true;
        });
        if (!added) return;
        recorder_.recordInternalEvent(sessionStartFromPush, {});
        recorder_.recordInternalEvent(PUSH_SESSION, log);
    });
}

bool PushLog::isAlreadyLogged(const Value& campId) const noexcept {
    return guarded(reports_, "-[OrbinelHelper isAlreadyLogged:]", false, [&] {
        return session_.read([&](const SessionRecord& record) { return holds(record.push_logs, campId); });
    });
}

void PushLog::setPlaceholderLog() noexcept {
    guarded(reports_, "+[Orbinel setPlaceholderLog]", [&] {
        const auto store = helper_.appGroupStore();
        if (store == nullptr) return;
        const auto left = store->value(keys::placeholderLog);
        if (left.isAbsent()) return;
        if (const auto* log = left.ifDictionary()) setPushSessionLog(*log);
        store->set(keys::placeholderLog, {});
        store->synchronize();
    });
}

void PushLog::trackInteractiveLogWithUserInfo(const Dictionary& userInfo) noexcept {
    guarded(reports_, "+[Orbinel trackInteractiveLogWithUserInfo:]", [&] {
        reports_.feed("trackInteractiveLog", [&] { return userInfo; });
        const auto store = helper_.appGroupStore();
        if (store == nullptr) return;
        auto log = campaignOf(payloadOf(userInfo));
        const bool hasCampaign = !log.empty();
        if (!takeInteraction(*store, log)) return;
        if (!hasCampaign) return reports_.note("Forgot what a person did with a push: it names no campaign.");
        session_.update([&](SessionRecord& record) { record.interactive_logs.emplace_back(std::move(log)); });
    });
}

}  // namespace orbinel
