#pragma once

#include <functional>

namespace orbinel::platform {

enum class NotificationPermission { notDetermined, denied, granted };

struct NotificationSettings {
    NotificationPermission permission = NotificationPermission::notDetermined;
    bool scheduledDelivery = false;  // the person has notifications delivered in a scheduled summary
};

/// The person's settings for notifications of this application.
///
/// Threads: callable from any thread. The completion runs exactly once, on any thread, possibly inside the call; a
/// platform service that does not answer within 500 ms counts as "not determined".
class Notifications {
public:
    virtual ~Notifications() = default;

    virtual void readSettings(std::function<void(NotificationSettings)> completion) noexcept = 0;
};

}  // namespace orbinel::platform
