#include "push/push_permission.hpp"

#include <cstdint>
#include <string_view>

#include "base/guard.hpp"

namespace orbinel {

namespace {

constexpr std::string_view methodType = "registerWithQuietPermission";

// The versions from which on the platform can be asked in this way.
constexpr float firstVersionWithQuietPermission = 12.0F;
constexpr float firstVersionWithAuthorization = 10.0F;
constexpr float firstVersionWithSettings = 8.0F;

namespace options = platform::authorization_options;
constexpr std::int32_t quietOptions = options::provisional + options::providesAppNotificationSettings;
constexpr std::int32_t usualOptions = options::badge + options::sound + options::alert;

}  // namespace

PushPermission::PushPermission(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      lifetime_(needs.lifetime),
      scheduler_(needs.scheduler),
      notifications_(needs.notifications) {}

void PushPermission::registerWithQuietPermission(bool quiet) noexcept {
    guarded(reports_, "+[Orbinel registerWithQuietPermission:]", [&] {
        if (helper_.sdkDisabled()) return;
        reports_.feedToPanel(methodType, [&] { return Dictionary{{"value", quiet}}; });
        const auto isAtLeast = [&](float version) { return helper_.isIOSVersionGreaterOrEqual(version); };
        if (quiet && isAtLeast(firstVersionWithQuietPermission)) return requestProvisionally();
        if (isAtLeast(firstVersionWithAuthorization)) return request();
        if (isAtLeast(firstVersionWithSettings)) requestWithoutAnswer();
        registerForRemoteNotifications();
    });
}

void PushPermission::requestProvisionally() {
    notifications_.requestAuthorization(quietOptions,
                                        lifetime_.whileAlive([this](const std::optional<std::string>& failure) {
                                            if (!failure) registerForRemoteNotifications();
                                        }));
}

void PushPermission::request() {
    notifications_.requestAuthorization(usualOptions,
                                        lifetime_.whileAlive([this](const std::optional<std::string>& failure) {
                                            if (failure) return reportFailure(*failure);
                                            registerForRemoteNotifications();
                                        }));
}

void PushPermission::reportFailure(const std::string& failure) {
    constexpr bool isError = true;
    const auto data = [&] { return Dictionary{{"error", failure}}; };
    reports_.feed(methodType, data, isError);
}

/// So old a platform tells nobody what became of the question.
void PushPermission::requestWithoutAnswer() {
    notifications_.requestAuthorization(usualOptions, [](const std::optional<std::string>&) {});
}

void PushPermission::registerForRemoteNotifications() {
    scheduler_.postMain(lifetime_.whileAlive([this] { notifications_.registerForRemoteNotifications(); }));
}

}  // namespace orbinel
