#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/late.hpp"
#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "inapp/main_thread.hpp"
#include "inapp/push_permission_request.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/haptics.hpp"
#include "orbinel/platform/notifications.hpp"
#include "orbinel/platform/pasteboard.hpp"
#include "orbinel/platform/review_prompt.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "session/helper.hpp"

namespace orbinel {

/// What a message may have the device do.
///
/// Threads: any; the platform is called on the main thread.
class NativeActions {
public:
    struct Needs {
        Reports& reports;
        const OrbinelHelper& helper;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
        platform::Application& application;
        platform::Notifications& notifications;
        platform::ReviewPrompt& reviewPrompt;
        platform::Pasteboard& pasteboard;
        platform::Haptics& haptics;
    };

    explicit NativeActions(const Needs& needs);

    Late<PushPermissionRequest> pushPermission;

    /// "settings" or "push_permission"; any other name does nothing.
    void perform(std::string_view name) noexcept;

    /// Opens the application's page in the platform's settings.
    void openSettings() noexcept;

    /// Opens the application's notification settings; before version 15.4 there is only the page above.
    void openPushPermissionSettings() noexcept;

    /// Asks the person to allow pushes.
    void registerPush() noexcept;

    /// Asks for a rating of the application.
    void showNativeAppReview() noexcept;

    /// Puts a text on the general pasteboard.
    void copy(const std::string& text) noexcept;

    /// One impact; the styles are the platform's (see platform/haptics.hpp).
    void triggerHapticFeedback(std::int32_t severity) noexcept;

private:
    void requestPushPermission();

    Reports& reports_;
    const OrbinelHelper& helper_;
    const Lifetime& lifetime_;
    const MainThread mainThread_;
    platform::Application& application_;
    platform::Notifications& notifications_;
    platform::ReviewPrompt& reviewPrompt_;
    platform::Pasteboard& pasteboard_;
    platform::Haptics& haptics_;
};

}  // namespace orbinel
