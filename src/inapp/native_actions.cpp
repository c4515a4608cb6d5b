#include "inapp/native_actions.hpp"

#include "base/guard.hpp"

namespace orbinel {

namespace {

constexpr float firstVersionWithNotificationSettings = 15.4F;

}  // namespace

NativeActions::NativeActions(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      lifetime_(needs.lifetime),
      mainThread_({needs.reports, needs.lifetime, needs.scheduler}),
      application_(needs.application),
      notifications_(needs.notifications),
      reviewPrompt_(needs.reviewPrompt),
      pasteboard_(needs.pasteboard),
      haptics_(needs.haptics) {}

void NativeActions::perform(std::string_view name) noexcept {
    guarded(reports_, "+[OrbinelTemplateStore nativeAction:]", [&] {
        if (name == "settings") return openSettings();
        if (name == "push_permission") return requestPushPermission();
        reports_.note([&] { return "Ignored the page's native action \"" + std::string(name) + "\"."; });
    });
}

/// Who has decided before is not asked again by the platform: the settings are where they can change their mind.
void NativeActions::requestPushPermission() {
    notifications_.readSettings(lifetime_.whileAlive([this](const platform::NotificationSettings& settings) {
        if (settings.permission == platform::NotificationPermission::notDetermined) return registerPush();
        openPushPermissionSettings();
    }));
}

void NativeActions::registerPush() noexcept {
    guarded(reports_, "-[OrbinelInapp registerPush]", [&] { pushPermission->registerWithQuietPermission(false); });
}

void NativeActions::openSettings() noexcept {
    mainThread_.run("-[OrbinelInapp openSettings]", [this] { application_.openSettings(); });
}

void NativeActions::openPushPermissionSettings() noexcept {
    if (!helper_.isIOSVersionGreaterOrEqual(firstVersionWithNotificationSettings)) return openSettings();
    mainThread_.run("-[OrbinelInapp openPushPermissionSettings]", [this] { application_.openNotificationSettings(); });
}

void NativeActions::showNativeAppReview() noexcept {
    mainThread_.run("+[Orbinel showNativeAppReview]", [this] { reviewPrompt_.requestReview(); });
}

void NativeActions::copy(const std::string& text) noexcept {
    mainThread_.run("-[OrbinelInapp copy:]", [this, text] { pasteboard_.setText(text); });
}

void NativeActions::triggerHapticFeedback(std::int32_t severity) noexcept {
    mainThread_.run("-[OrbinelInapp triggerHapticFeedback:]", [this, severity] { haptics_.impact(severity); });
}

}  // namespace orbinel
