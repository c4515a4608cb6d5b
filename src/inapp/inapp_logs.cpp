#include "inapp/inapp_logs.hpp"

#include <utility>

#include "base/guard.hpp"

namespace orbinel {

InappLogs::InappLogs(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      recorder_(needs.recorder),
      presented_(needs.presented) {}

void InappLogs::addInappLog(std::int32_t dismissType) noexcept {
    guarded(reports_, "+[OrbinelInapp addInappLog:]", [&] {
        if (auto* detector = shakeDetector.get()) detector->destroyShakeDetector();
        const auto inapp = presented_.activeInapp();
        if (inapp == nullptr) return;
        // The clicks are taken before the close is logged, because its event may bring the next message.
        if (presented_.takeShouldAddInappLog()) logClose(*inapp, dismissType, presented_.takeClicks());
    });
}

void InappLogs::addControlGroupLog(const Dictionary& inapp) noexcept {
    guarded(reports_, "+[OrbinelInapp addInappLog:]", [&] { logClose(inapp, kDISSMISSTYPECONTROL, {}); });
}

void InappLogs::logClose(const Dictionary& inapp, std::int32_t dismissType, Array clicks) {
    Dictionary log{{"inapp_id", inappFieldNumber(inapp, "inapp_id")},
                   {"variant_id", inappFieldNumber(inapp, "variant_id")},
                   {"dismiss_type", dismissType}};
    recorder_.recordInternalEvent("inapp_seen", log);
    if (!clicks.empty()) log.set("click_logs", std::move(clicks));
    session_.update([&](SessionRecord& record) { record.inapp_logs.emplace_back(std::move(log)); });
}

void InappLogs::addClickLog(const Dictionary& click) noexcept {
    guarded(reports_, "+[OrbinelInapp addClickLog:]", [&] {
        if (!presented_.mayKeep(click)) return reports_.note("Dropped a click: the message has sent too much.");
        auto log = click;
        log.set("timestamp", helper_.getNowAsTimestamp());
        if (!presented_.addClick(std::move(log))) reports_.note("Dropped a click: the message has too many.");
    });
}

void InappLogs::logBlockedInAppMessage(const Dictionary& inapp) noexcept {
    guarded(reports_, "-[OrbinelHelper logBlockedInAppMessage:]", [&] {
        auto blocked = inappIdentity(&inapp);
        blocked.set("timestamp", helper_.getNowAsTimestamp());
        session_.update([&](SessionRecord& record) { record.blocked_inapps.emplace_back(std::move(blocked)); });
        reports_.log(LogType::inapp, LogLevel::info, "BlockedInAppMessage.", [] {
            return Dictionary{{"reason", "inapp"}};
        });
    });
}

void InappLogs::logInAppMessageAction(std::string_view action) noexcept {
    guarded(reports_, "-[OrbinelHelper logInAppMessageAction:]", [&] {
        reports_.feed("logInAppMessageAction", [&] {
            return Dictionary{{"action", action}, {"description", "In-app message action"}};
        });
        reports_.log(LogType::inapp, LogLevel::info, "In-app message action.", [&] {
            return Dictionary{{"action", action}};
        });
    });
}

}  // namespace orbinel
