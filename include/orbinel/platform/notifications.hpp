#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "orbinel/platform/delegate.hpp"

namespace orbinel::platform {

enum class NotificationPermission { notDetermined, denied, granted };

struct NotificationSettings {
    NotificationPermission permission = NotificationPermission::notDetermined;
    bool scheduledDelivery = false;  // the person has notifications delivered in a scheduled summary
};

/// What an application asks to be allowed, as bits that are added.
namespace authorization_options {
inline constexpr std::int32_t badge = 1;
inline constexpr std::int32_t sound = 2;
inline constexpr std::int32_t alert = 4;
inline constexpr std::int32_t providesAppNotificationSettings = 32;
inline constexpr std::int32_t provisional = 64;  // delivered quietly, without asking the person
}  // namespace authorization_options

/// Notifications of this application: what the person allows, and being reachable for pushes.
///
/// Threads: callable from any thread. A completion runs exactly once, on any thread, possibly inside the call.
class Notifications {
public:
    virtual ~Notifications() = default;

    /// A platform service that does not answer within 500 ms counts as "not determined".
    virtual void readSettings(std::function<void(NotificationSettings)> completion) noexcept = 0;

    /// Asks the person, unless they have decided before. The completion gets a sentence only where asking failed; a
    /// refusal is no failure.
    virtual void requestAuthorization(std::int32_t options,
                                      std::function<void(std::optional<std::string> failure)> completion) noexcept = 0;

    /// Asks the push service for a device token, which reaches the application's delegate. Main thread.
    virtual void registerForRemoteNotifications() noexcept = 0;

    /// Makes the object the one that is told, on the main thread, of notifications that arrive or are opened; null:
    /// nobody is. It is kept until another one takes its place.
    virtual void setDelegate(std::shared_ptr<Delegate> delegate) noexcept = 0;

    [[nodiscard]] virtual std::shared_ptr<Delegate> delegate() const noexcept = 0;
};

}  // namespace orbinel::platform
