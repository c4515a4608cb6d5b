#pragma once

#include <functional>
#include <string_view>

#include "orbinel/platform/ticket.hpp"
#include "orbinel/value.hpp"

namespace orbinel::platform {

/// The notifications that the library listens to. Hosts post them on the main thread.
namespace notification_names {
inline constexpr std::string_view didBecomeActive = "UIApplicationDidBecomeActiveNotification";
inline constexpr std::string_view didEnterBackground = "UIApplicationDidEnterBackgroundNotification";
inline constexpr std::string_view willTerminate = "UIApplicationWillTerminateNotification";
/// With "height", the keyboard's height in points.
inline constexpr std::string_view keyboardWillShow = "UIKeyboardWillShowNotification";
inline constexpr std::string_view keyboardWillHide = "UIKeyboardWillHideNotification";
inline constexpr std::string_view orientationDidChange = "UIDeviceOrientationDidChangeNotification";
}  // namespace notification_names

/// Named notifications from the platform to observers within the process.
///
/// Threads: callable from any thread; observers run on the poster's thread, inside `post`.
/// Order: observers run in the order in which they were added. One that is added or dropped during a post takes no
/// part in that post, or no further part in it.
class NotificationCentre {
public:
    using Observer = std::function<void(const Dictionary& info)>;

    virtual ~NotificationCentre() = default;

    /// Tells every observer of the name. An observer that throws is the observer's mistake.
    virtual void post(std::string_view name, const Dictionary& info) noexcept = 0;

    /// Observes until the ticket is gone. Dropping it inside an observer is allowed.
    [[nodiscard]] virtual Ticket addObserver(std::string_view name, Observer observer) noexcept = 0;
};

}  // namespace orbinel::platform
