#pragma once

#include <atomic>
#include <optional>

#include "base/lifetime.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "inapp/application_callback.hpp"
#include "inapp/campaign_selection.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/value.hpp"
#include "personalisation/content_optimizer.hpp"
#include "push/carousel_link.hpp"
#include "push/push_links.hpp"
#include "push/push_log.hpp"
#include "session/helper.hpp"
#include "tools/auto_integration.hpp"
#include "user/device_attributes.hpp"

namespace orbinel {

/// What happens when a person opens a push, or one arrives while the application is in the foreground: the session
/// notes it, its address is opened, the application is told, and what the vendor's panel sent for a try is served.
///
/// Threads: any; the application is told on the main queue. What the application's notification extension left is read
/// from the app group, which may wait for the disk.
class OrbinelPush {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        const OrbinelDeviceAttributes& device;
        const AutoIntegration& automaticIntegration;
        OrbinelContentOptimizer& contents;
        CampaignSelection& campaigns;
        CarouselLink& carouselLink;
        PushLinks& links;
        PushLog& log;
        const Lifetime& lifetime;
        const platform::Json& json;
        platform::Scheduler& scheduler;
    };

    explicit OrbinelPush(const Needs& needs);

    // --- What the delegates of the platform receive. ---

    /// Handles a push, and what the person did with it in an interactive notification. Left to the application itself
    /// while it does not have the library integrate by itself.
    void handlePushLog(const Dictionary& userInfo, bool shouldCheckInteractive) noexcept;

    /// Handles a push that arrives in the foreground, where the application may show it in a view of its own.
    void willPresentNotification(const Dictionary& userInfo) noexcept;

    // --- What an application calls itself. ---

    /// Handles a push, given by its payload or the launch options. Asks the gate.
    void handlePushLogWithUserInfo(const Dictionary& userInfo) noexcept;

    /// Opens, logs and tells of a push that the vendor sent; another's is left.
    void setPushActionWithPushInfo(const Dictionary& pushInfo) noexcept;

    /// The application's callback for a push that was opened: {"type": 0, "data", "source"}.
    void setPushCallback(ApplicationCallback::Action callback) noexcept { pushCallback_.set(std::move(callback)); }

    /// The application's callback for a push that arrives in the foreground: its payload as it came.
    void setForegroundPushCallback(ApplicationCallback::Action callback) noexcept {
        foregroundCallback_.set(std::move(callback));
    }

    /// The application shows pushes that arrive in the foreground in a view of its own.
    void setActiveForegroundPushView() noexcept { isActiveForegroundPushView_ = true; }

    // --- What the lifecycle tells. ---

    /// The application has become active. A push that waited for it is handled where a wrapper drives the library.
    void applicationDidBecomeActive() noexcept;

    /// Forgets a push that waits for the application to become active.
    void forgetPendingPush() noexcept;

    /// What is known of the push at hand. So far the lifecycle only clears it; wrappers and tests look at it.
    void setUserInfoProcessed(bool processed) noexcept { userInfoProcessed_ = processed; }
    [[nodiscard]] bool userInfoProcessed() const noexcept { return userInfoProcessed_; }
    void setForegroundPush(bool foreground) noexcept { foregroundPush_ = foreground; }
    [[nodiscard]] bool foregroundPush() const noexcept { return foregroundPush_; }

private:
    [[nodiscard]] bool keptForLater(const Dictionary& pushInfo);
    void serve(const Dictionary& pushInfo);
    void showTestInapp(const Dictionary& pushInfo);
    [[nodiscard]] Value unpacked(const Value& value) const;

    Reports& reports_;
    OrbinelHelper& helper_;
    const OrbinelDeviceAttributes& device_;
    const AutoIntegration& automaticIntegration_;
    OrbinelContentOptimizer& contents_;
    CampaignSelection& campaigns_;
    CarouselLink& carouselLink_;
    PushLinks& links_;
    PushLog& log_;
    const platform::Json& json_;
    ApplicationCallback pushCallback_;
    ApplicationCallback foregroundCallback_;

    std::atomic<bool> isActiveForegroundPushView_{false};
    std::atomic<bool> foregroundPush_{false};  // the push being handled came in the foreground
    std::atomic<bool> userInfoProcessed_{false};

    Mutex mutex_;
    bool lifecycleOperationsHaveRun_ ORBINEL_GUARDED_BY(mutex_) = false;
    Dictionary notificationUserInfo_ ORBINEL_GUARDED_BY(mutex_);  // the push that waits
};

}  // namespace orbinel
