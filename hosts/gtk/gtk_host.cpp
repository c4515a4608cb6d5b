#include "orbinel/gtk/gtk_host.hpp"

#include <utility>

#include "hosts/gtk/desktop_notifications.hpp"
#include "hosts/gtk/gtk_pasteboard.hpp"
#include "hosts/gtk/gtk_views.hpp"
#include "hosts/gtk/iio_accelerometer.hpp"
#include "hosts/gtk/windowed_application.hpp"

namespace orbinel::hosts {

struct GtkHost::Parts {
    LinuxHost system;
    platform::Services services;
    std::shared_ptr<DesktopNotifications> notifications;
};

GtkHost::GtkHost(_GtkWindow* window, LinuxHostOptions options)
    : parts_(new Parts{LinuxHost(std::move(options)), {}, {}}) {
    parts_->system.attachToGlibMainContext();
    auto& services = parts_->services;
    services = parts_->system.services();
    services.application =
        std::make_shared<WindowedApplication>(window, services.application, services.notificationCentre);
    parts_->notifications = std::make_shared<DesktopNotifications>(window, services);
    services.notifications = parts_->notifications;
    services.views = makeGtkViews(window);
    services.pasteboard = std::make_shared<GtkPasteboard>();
    services.accelerometer = std::make_shared<IioAccelerometer>(services.scheduler);
}

GtkHost::~GtkHost() = default;

const platform::Services& GtkHost::services() const noexcept { return parts_->services; }

void GtkHost::present(const DesktopNotification& notification,
                      std::function<void(std::optional<std::string> failure)> completion) noexcept {
    if (!completion) completion = [](const std::optional<std::string>&) {};
    parts_->notifications->present(notification, std::move(completion));
}

std::shared_ptr<platform::Views> makeGtkViews(_GtkWindow* window) { return std::make_shared<GtkViews>(window); }

}  // namespace orbinel::hosts
