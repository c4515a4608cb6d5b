#pragma once

#include "orbinel/platform/notifications.hpp"

namespace orbinel::hosts {

/// No service of the desktop says whether notifications of an application are welcome: never determined, at once.
class LinuxNotifications final : public platform::Notifications {
public:
    void readSettings(std::function<void(platform::NotificationSettings)> completion) noexcept override {
        completion({});
    }
};

}  // namespace orbinel::hosts
