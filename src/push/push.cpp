#include "push/push.hpp"

#include <string_view>
#include <utility>
#include <variant>

#include "base/guard.hpp"
#include "base/value_content.hpp"
#include "push/callback_payload.hpp"
#include "push/push_info.hpp"

namespace orbinel {

namespace {

constexpr std::string_view vendor = "Orbinel";
constexpr int pushWasOpened = 0;  // the callback's "type"

}  // namespace

OrbinelPush::OrbinelPush(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      device_(needs.device),
      automaticIntegration_(needs.automaticIntegration),
      contents_(needs.contents),
      campaigns_(needs.campaigns),
      carouselLink_(needs.carouselLink),
      links_(needs.links),
      log_(needs.log),
      json_(needs.json),
      pushCallback_({needs.reports, needs.lifetime, needs.scheduler}),
      foregroundCallback_({needs.reports, needs.lifetime, needs.scheduler}) {}

// --- What the delegates receive ---

void OrbinelPush::handlePushLog(const Dictionary& userInfo, bool shouldCheckInteractive) noexcept {
    guarded(reports_, {"OrbinelPush.m - handle push log", DescriptionForm::nameOnly}, [&] {
        if (!automaticIntegration_.isAutoIntegrationEnabled()) {
            return reports_.note("A push is left to the application: automatic integration is off.");
        }
        handlePushLogWithUserInfo(userInfo);
        const bool hasAppGroup = !helper_.getAppGroup().value_or("").empty();
        if (hasAppGroup && shouldCheckInteractive) log_.trackInteractiveLogWithUserInfo(userInfo);
    });
}

void OrbinelPush::willPresentNotification(const Dictionary& userInfo) noexcept {
    guarded(reports_, {"OrbinelPush - orbinelUserNotificationCenter", DescriptionForm::nameOnly}, [&] {
        setUserInfoProcessed(false);
        setForegroundPush(true);
        const bool isTest = isPresent(userInfo[push_keys::inappTest]);
        if (!isTest) {
            foregroundCallback_.performLater("-[OrbinelPush performForegroundPushCallback]", userInfo);
        }
        if (isTest || isActiveForegroundPushView_) carouselLink_.flushClickedDeepLink();
        handlePushLog(userInfo, true);
    });
}

// --- Handling ---

void OrbinelPush::handlePushLogWithUserInfo(const Dictionary& userInfo) noexcept {
    guarded(reports_, "+[Orbinel handlePushLogWithUserInfo:]", [&] {
        if (!helper_.shouldProceed()) return;
        const auto pushInfo = getPushInfo(userInfo);
        if (!pushInfo || keptForLater(*pushInfo)) return;
        forgetPendingPush();
        reports_.feedToPanel("handlePushLog", [&] { return *pushInfo; });
        serve(*pushInfo);
        setPushActionWithPushInfo(*pushInfo);
    });
}

/// What the panel sent for a try, and a message for later. An entry of which nothing can be made is passed over.
void OrbinelPush::serve(const Dictionary& pushInfo) {
    constexpr int testCampaign = 0;
    contents_.insertContentCampaigns(unpacked(pushInfo[push_keys::testContents]), testCampaign, testCampaign);
    if (isPresent(pushInfo[push_keys::inappTest])) return showTestInapp(pushInfo);
    auto inapp = unpacked(pushInfo[push_keys::pushInapp]);
    if (inapp.ifDictionary() != nullptr) campaigns_.inappToMemory({std::move(inapp)});
}

void OrbinelPush::showTestInapp(const Dictionary& pushInfo) {
    const auto inapp = unpacked(pushInfo[push_keys::inappTest]);
    if (inapp.ifDictionary() == nullptr) return reports_.note("A push brings a message for a try that cannot be read.");
    campaigns_.setTestInAppExistence(true);
    campaigns_.showTestInapp(*inapp.ifDictionary(), pushInfo);
}

/// What a push carries as JSON text; any other value as it is.
Value OrbinelPush::unpacked(const Value& value) const {
    const auto* text = value.ifString();
    if (text == nullptr) return value;
    auto parsed = json_.parse(*text);
    auto* content = std::get_if<Value>(&parsed);
    return content != nullptr ? std::move(*content) : Value();
}

void OrbinelPush::setPushActionWithPushInfo(const Dictionary& pushInfo) noexcept {
    static constexpr auto operation = "+[Orbinel setPushActionWithPushInfo:]";
    guarded(reports_, operation, [&] {
        const auto& source = pushInfo[push_keys::source];
        if (source.stringOrEmpty() != vendor) return reports_.note("Left a push: its source is another.");
        const auto chosen = carouselLink_.getAdvancedPushDeepLink(pushInfo);
        auto merged = pushInfo;
        for (const auto& [key, value] : chosen) merged.set(key, value);
        links_.openBrowser(merged);
        Dictionary callback{
            {"type", pushWasOpened}, {"data", purifyCallbackPayload(merged, chosen)}, {"source", source}};
        reports_.feedToPanel("pushReceived", [&] { return callback; });
        log_.setPushSessionLog(pushInfo);
        pushCallback_.performLater(operation, std::move(callback));
    });
}

// --- Waiting for the application to become active ---

/// A wrapper has its own part of the application ready only when the application has been active once.
bool OrbinelPush::keptForLater(const Dictionary& pushInfo) {
    if (!device_.isHybridSDK()) return false;
    auto kept = pushInfo;
    const MutexLock lock(mutex_);
    if (lifecycleOperationsHaveRun_) return false;
    std::swap(notificationUserInfo_, kept);
    return true;
}

void OrbinelPush::applicationDidBecomeActive() noexcept {
    guarded(reports_, "+[Orbinel handleApplicationDidBecomeActiveNotification]", [&] {
        Dictionary waiting;
        const bool isHybrid = device_.isHybridSDK();
        {
            const MutexLock lock(mutex_);
            lifecycleOperationsHaveRun_ = true;
            if (isHybrid) std::swap(notificationUserInfo_, waiting);
        }
        if (!waiting.empty()) handlePushLogWithUserInfo(waiting);
    });
}

void OrbinelPush::forgetPendingPush() noexcept {
    Dictionary forgotten;  // destroyed without the lock
    const MutexLock lock(mutex_);
    std::swap(notificationUserInfo_, forgotten);
}

}  // namespace orbinel
