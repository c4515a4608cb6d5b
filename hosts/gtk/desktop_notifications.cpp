#include "hosts/gtk/desktop_notifications.hpp"

#include <utility>
#include <variant>

namespace orbinel::hosts {

namespace {

namespace operations = platform::delegate_operations;

/// The bus closes the connection of whoever sends it other texts.
std::string validText(const std::string& text) {
    return TextPointer(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()))).get();
}

}  // namespace

DesktopNotifications::DesktopNotifications(GtkWindow* window, const platform::Services& services)
    : ForwardingNotifications(services.notifications),
      window_(window),
      application_(services.application),
      json_(services.json) {}

void DesktopNotifications::readSettings(std::function<void(platform::NotificationSettings)> completion) noexcept {
    portal_.look([completion = std::move(completion)](const std::optional<std::string>& failure) {
        platform::NotificationSettings settings;
        if (!failure) settings.permission = platform::NotificationPermission::granted;
        completion(settings);
    });
}

void DesktopNotifications::requestAuthorization(
    std::int32_t /*options*/, std::function<void(std::optional<std::string> failure)> completion) noexcept {
    portal_.look(std::move(completion));
}

void DesktopNotifications::present(const DesktopNotification& notification, NotificationPortal::Done done) {
    const bool inFront = application_->state() == platform::ApplicationState::active;
    if (inFront && tellDelegate(operations::willPresentNotification, notification.userInfo).value_or(false)) {
        return done(std::nullopt);
    }
    const auto token = json_->serialise(notification.userInfo, platform::JsonStyle::compact);
    if (!token) return done("The notification's user info holds what JSON cannot.");
    portal_.show(
        {validText(notification.identifier), validText(notification.title), validText(notification.body), *token},
        std::move(done));
}

void DesktopNotifications::opened(const std::string& token) {
    auto read = json_->parse(token);
    auto* value = std::get_if<Value>(&read);
    const auto* userInfo = value != nullptr ? value->ifDictionary() : nullptr;
    if (userInfo == nullptr) return;
    if (auto* window = window_.get()) gtk_window_present(window);
    tellDelegate(operations::didReceiveNotificationResponse, *userInfo);
}

platform::DelegateResult DesktopNotifications::tellDelegate(std::string_view operation, const Dictionary& userInfo) {
    const auto told = delegate();
    if (told == nullptr) return std::nullopt;
    platform::DelegateArguments arguments;
    arguments.userInfo = userInfo;
    return told->perform(operation, arguments);
}

}  // namespace orbinel::hosts
