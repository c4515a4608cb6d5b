#include "push/replaced_operations.hpp"

#include <array>
#include <string>

#include "push/configurations.hpp"
#include "tools/console_line.hpp"

namespace orbinel {

namespace {

using Arguments = Replacement::Arguments;

constexpr auto fixedText = DescriptionForm::nameOnly;

std::string firstContext(const Arguments& arguments) {
    return arguments.urlContexts.empty() ? std::string() : arguments.urlContexts.front();
}

Dictionary attributesOfUrl(const Arguments& arguments) { return {{"url", arguments.url}}; }
Dictionary attributesOfContext(const Arguments& arguments) { return {{"url", firstContext(arguments)}}; }
Dictionary attributesOfFailure(const Arguments& arguments) {
    return {{"error_code", std::to_string(arguments.failure.code)}};
}

}  // namespace

ReplacedOperations::ReplacedOperations(const Needs& needs)
    : reports_(needs.reports),
      automaticIntegration_(needs.automaticIntegration),
      toolLinks_(needs.toolLinks),
      deviceToken_(needs.deviceToken),
      universalLinks_(needs.universalLinks),
      push_(needs.push),
      console_(needs.console) {}

// --- The tables ---

std::span<const Replacement> ReplacedOperations::ofApplication() noexcept {
    namespace operations = platform::delegate_operations;
    using Self = ReplacedOperations;
    static const std::array table{
        Replacement{.operation = operations::didRegisterForRemoteNotifications,
                    .name = "OrbinelDidRegisterForRemoteNotifications:deviceToken:",
                    .swizzler = swizzlers::didRegisterForRemoteNotificationsWithDeviceToken,
                    .guard = "-[OrbinelPush OrbinelDidRegisterForRemoteNotifications:deviceToken:]",
                    .record = "didRegisterForRemoteNotificationsWithDeviceToken",
                    .forward = &Self::takeDeviceToken},
        Replacement{.operation = operations::didFailToRegisterForRemoteNotifications,
                    .name = "orbinelDidFailRegisterForRemoteNotification:error:",
                    .guard = "-[OrbinelPush orbinelDidFailRegisterForRemoteNotification:error:]",
                    .record = "didFailToRegisterForRemoteNotificationsWithError",
                    .level = LogLevel::error,
                    .attributes = &attributesOfFailure,
                    .forward = &Self::tellFailure},
        Replacement{.operation = operations::didReceiveRemoteNotificationFetching,
                    .name = "orbinelRemoteNotificationNew:UserInfo:fetchCompletionHandler:",
                    .guard = {"OrbinelPush - orbinelRemoteNotificationNew", fixedText},
                    .record = "didReceiveRemoteNotification:fetchCompletionHandler",
                    .forward = &Self::handlePush},
        Replacement{.operation = operations::didReceiveRemoteNotification,
                    .name = "OrbinelHandleNotification:UserInfo:",
                    .guard = {"OrbinelPush - OrbinelHandleNotification", fixedText},
                    .record = "didReceiveRemoteNotification",
                    .forward = &Self::handlePush},
        Replacement{.operation = operations::openUrlWithOptions,
                    .name = "OrbinelOpenUrl:openURL:options:",
                    .swizzler = swizzlers::openURLWithOptions,
                    .guard = {"OrbinelPush - OrbinelOpenUrl", fixedText},
                    .record = "openURL:options",
                    .answers = true,
                    .forward = &Self::handleUrl},
        Replacement{.operation = operations::handleOpenUrl,
                    .name = "OrbinelHandleUrl:handleOpenURL:",
                    .swizzler = swizzlers::handleOpenURL,
                    .guard = {"OrbinelPush - OrbinelHandleUrl", fixedText},
                    .record = "handleOpenURL",
                    .attributes = &attributesOfUrl,
                    .answers = true,
                    .forward = &Self::handleUrl},
        Replacement{.operation = operations::openUrlWithSourceApplication,
                    .name = "OrbinelSourceUrl:openURL:sourceApplication:annotation:",
                    .swizzler = swizzlers::openURLWithSourceApplication,
                    .guard = {"OrbinelPush - OrbinelSourceUrl", fixedText},
                    .record = "openURL:sourceApplication:annotation",
                    .answers = true,
                    .forward = &Self::handleUrl},
        Replacement{.operation = operations::continueUserActivity,
                    .name = "OrbinelUniversalLink:continueUserActivity:restorationHandler:",
                    .swizzler = swizzlers::continueUserActivity,
                    .guard = {"OrbinelPush - OrbinelUniversalLink", fixedText},
                    .record = "continueUserActivity:restorationHandler",
                    .answers = true,
                    .forward = &Self::handleActivity},
    };
    return table;
}

std::span<const Replacement> ReplacedOperations::ofNotificationCentre() noexcept {
    namespace operations = platform::delegate_operations;
    using Self = ReplacedOperations;
    static const std::array table{
        Replacement{.operation = operations::didReceiveNotificationResponse,
                    .name = "orbinelUserNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:",
                    .swizzler = swizzlers::didReceiveNotificationResponse,
                    .guard = {"OrbinelPush - orbinelUserNotificationCenter", fixedText},
                    .record = "didReceiveNotificationResponse:withCompletionHandler",
                    .recordFirst = true,
                    .forward = &Self::handlePush},
        Replacement{.operation = operations::willPresentNotification,
                    .name = "orbinelUserNotificationCenter:willPresentNotification:withCompletionHandler:",
                    .swizzler = swizzlers::willPresentNotification,
                    .guard = {"OrbinelPush - orbinelUserNotificationCenter", fixedText},
                    .record = "willPresentNotification:withCompletionHandler",
                    .recordFirst = true,
                    .forward = &Self::handleForegroundPush},
    };
    return table;
}

const Replacement& ReplacedOperations::ofScene() noexcept {
    static const Replacement openUrlContexts{.operation = platform::delegate_operations::openUrlContexts,
                                             .name = "OrbinelScene:openURLContexts:",
                                             .guard = {"OrbinelPush - openURLContexts", fixedText},
                                             .record = "openURLContexts",
                                             .attributes = &attributesOfContext,
                                             .forward = &ReplacedOperations::handleFirstContext};
    return openUrlContexts;
}

// --- Around the application's own implementation ---

void ReplacedOperations::beforeOwn(const Replacement& replacement, const Arguments& arguments) noexcept {
    if (!replacement.recordFirst) return;
    guarded(reports_, replacement.guard, [&] { leaveRecord(replacement, arguments); });
}

void ReplacedOperations::afterOwn(const Replacement& replacement, const Arguments& arguments,
                                  const std::exception_ptr& failure) noexcept {
    guarded(reports_, replacement.guard, [&] {
        if (failure != nullptr) std::rethrow_exception(failure);
        (this->*replacement.forward)(arguments);
        if (!replacement.recordFirst) leaveRecord(replacement, arguments);
    });
}

void ReplacedOperations::leaveRecord(const Replacement& replacement, const Arguments& arguments) {
    if (replacement.attributes == nullptr) {
        return reports_.log(LogType::push, replacement.level, replacement.record);
    }
    reports_.log(LogType::push, replacement.level, replacement.record,
                 [&] { return replacement.attributes(arguments); });
}

// --- Forwarding ---

void ReplacedOperations::takeDeviceToken(const Arguments& arguments) {
    if (automaticIntegration_.isAutoIntegrationEnabled()) deviceToken_.registerDeviceToken(arguments.deviceToken);
}

void ReplacedOperations::tellFailure(const Arguments& arguments) {
    const auto& description = arguments.failure.description;
    if (description.find("no valid 'aps-environment'") != std::string::npos) {
        return console_.writeLine(
            "'Push Notification' capability is not enabled on capability. Please make sure that it's enabled by "
            "clicking on your Project Target -> Capability ");
    }
    console_.writeLine("Orbinel failed to register the device to push notifications. Error: " + onOneLine(description));
}

void ReplacedOperations::handlePush(const Arguments& arguments) {
    constexpr bool shouldCheckInteractive = true;
    push_.handlePushLog(arguments.userInfo, shouldCheckInteractive);
}

void ReplacedOperations::handleForegroundPush(const Arguments& arguments) {
    push_.willPresentNotification(arguments.userInfo);
}

void ReplacedOperations::handleUrl(const Arguments& arguments) {
    if (automaticIntegration_.isAutoIntegrationEnabled()) toolLinks_.handleUrl(arguments.url);
}

void ReplacedOperations::handleFirstContext(const Arguments& arguments) {
    if (automaticIntegration_.isAutoIntegrationEnabled()) toolLinks_.handleUrl(firstContext(arguments));
}

void ReplacedOperations::handleActivity(const Arguments& arguments) {
    if (automaticIntegration_.isAutoIntegrationEnabled()) universalLinks_.handleUniversalLink(arguments.activity);
}

}  // namespace orbinel
