#pragma once

#include <functional>
#include <memory>

#include "base/lifetime.hpp"
#include "inapp/inapp_layout.hpp"
#include "orbinel/platform/notification_centre.hpp"
#include "orbinel/platform/views.hpp"

namespace orbinel {

/// Keeps a message that is docked to the bottom above the keyboard.
///
/// Threads: main.
class KeyboardPusher {
public:
    struct Needs {
        const Lifetime& lifetime;
        platform::NotificationCentre& notificationCentre;
    };

    explicit KeyboardPusher(const Needs& needs) : needs_(needs) {}

    [[nodiscard]] static bool shouldKeyboardPushInAppForInAppType(const InappLayout& layout) noexcept;

    /// From now on the view moves with the keyboard; `moving` is called when it begins to.
    void registerForInAppPusherKeyboardNotifications(std::shared_ptr<platform::View> view,
                                                     std::function<void()> moving);
    /// It stays where it is.
    void unregisterForInAppPusherKeyboardNotifications();

private:
    void pushInAppUp(double keyboardHeight);
    void pullInAppBack();
    void moveTo(double offset);

    const Needs needs_;
    std::shared_ptr<platform::View> view_;
    std::function<void()> moving_;
    platform::Ticket willShow_;
    platform::Ticket willHide_;
};

}  // namespace orbinel
