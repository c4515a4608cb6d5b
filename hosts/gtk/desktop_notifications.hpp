#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hosts/gtk/gobject.hpp"
#include "hosts/gtk/notification_portal.hpp"
#include "orbinel/gtk/gtk_host.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/services.hpp"
#include "platform/forwarding_notifications.hpp"

namespace orbinel::hosts {

/// Notifications of a desktop, through its portal: where there is one they are granted, for nobody is asked, and the
/// desktop alone decides what it shows. No push service reaches a desktop, so there is no device token.
///
/// Threads: as the service promises; `present` and openings on the main thread, which has to run the main loop.
class DesktopNotifications final : public platform::ForwardingNotifications {
public:
    /// Stands in for a service without a desktop.
    DesktopNotifications(GtkWindow* window, const platform::Services& services);

    void readSettings(std::function<void(platform::NotificationSettings)> completion) noexcept override;
    void requestAuthorization(std::int32_t options,
                              std::function<void(std::optional<std::string> failure)> completion) noexcept override;

    void present(const DesktopNotification& notification, NotificationPortal::Done done);

private:
    void opened(const std::string& token);
    platform::DelegateResult tellDelegate(std::string_view operation, const Dictionary& userInfo);

    const WeakObject<GtkWindow> window_;
    const std::shared_ptr<const platform::Application> application_;
    const std::shared_ptr<const platform::Json> json_;
    NotificationPortal portal_{[this](const std::string& token) { opened(token); }};
};

}  // namespace orbinel::hosts
