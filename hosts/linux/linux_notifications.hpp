#pragma once

#include "orbinel/platform/notifications.hpp"

namespace orbinel::hosts {

/// No service of the desktop says whether notifications of an application are welcome: never determined, at once.
class LinuxNotifications final : public platform::Notifications {
public:
    void readSettings(std::function<void(platform::NotificationSettings)> completion) noexcept override {
        completion({});
    }
    void requestAuthorization(std::int32_t,
                              std::function<void(std::optional<std::string>)> completion) noexcept override {
        completion("No service of the desktop grants notifications.");
    }
    void registerForRemoteNotifications() noexcept override {}
};

}  // namespace orbinel::hosts
