#pragma once

#include <optional>
#include <string>

#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "inapp/push_permission_request.hpp"
#include "orbinel/platform/notifications.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "session/helper.hpp"

namespace orbinel {

/// Asks the person to allow pushes, and then the platform for a device token.
///
/// Threads: any; the platform is asked for the token on the main thread.
class PushPermission final : public PushPermissionRequest {
public:
    struct Needs {
        Reports& reports;
        const OrbinelHelper& helper;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
        platform::Notifications& notifications;
    };

    explicit PushPermission(const Needs& needs);

    /// Quietly: pushes are delivered without the person being asked first, from version 12.0 on; before, and otherwise,
    /// the person is asked. A token is asked for whatever the person decides: pushes without anything to show need none
    /// of their permission. Nothing happens while the library is switched off.
    void registerWithQuietPermission(bool quiet) noexcept override;

private:
    void requestProvisionally();
    void request();
    void requestWithoutAnswer();
    void reportFailure(const std::string& failure);
    void registerForRemoteNotifications();

    Reports& reports_;
    const OrbinelHelper& helper_;
    const Lifetime& lifetime_;
    platform::Scheduler& scheduler_;
    platform::Notifications& notifications_;
};

}  // namespace orbinel
