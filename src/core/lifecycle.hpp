#pragma once

#include <cstdint>
#include <optional>

#include "base/lifetime.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "inapp/campaign_selection.hpp"
#include "inapp/presentation.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/notifications.hpp"
#include "personalisation/content_optimizer.hpp"
#include "privacy/consent.hpp"
#include "push/carousel_link.hpp"
#include "push/push.hpp"
#include "push/push_log.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"
#include "session/session_start.hpp"
#include "session/session_stop.hpp"
#include "tools/integration_wizard.hpp"
#include "tools/test_devices.hpp"
#include "user/device_attributes.hpp"
#include "user/identity.hpp"

namespace orbinel {

/// Turns the platform's lifecycle notifications into sessions: becoming active opens one, entering the background
/// closes it.
///
/// Threads: the handlers run on the main thread. Answers that a handler waits for come on any thread; one that comes
/// after its foreground period has ended is ignored.
class Lifecycle {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        SessionStop& stop;
        OrbinelConfig& start;
        OrbinelPrivacy& privacy;
        OrbinelIdentity& identity;
        OrbinelDeviceAttributes& device;
        TestDevices& testDevices;
        IntegrationWizard& wizard;
        OrbinelContentOptimizer& contents;
        CampaignSelection& campaigns;
        InappPresentation& inapp;
        OrbinelPush& push;
        PushLog& pushLog;
        CarouselLink& carouselLink;
        const Lifetime& lifetime;
        platform::Application& application;
        platform::Notifications& notifications;
    };

    explicit Lifecycle(const Needs& needs);

    void handleApplicationDidBecomeActiveNotification() noexcept;
    void handleApplicationDidEnterBackgroundNotification() noexcept;
    void appWillTerminate() noexcept;
    void appDidChangeOrientation() noexcept;

    /// The first handler, for wrappers that deliver the notification themselves.
    void hybridApplicationDidBecomeActive(bool regularInitHasDone) noexcept;

    /// Whether the application has been in the foreground and left it. Threads: any.
    [[nodiscard]] bool isInBackground() const noexcept;

private:
    enum class Direction { none = 0, becameActive = 1, enteredBackground = 2 };

    /// A foreground period, counted from 1: tells late answers from timely ones.
    using Period = std::uint64_t;

    class Waiter;

    void runApplicationDidBecomeActiveOperations() noexcept;
    void runApplicationDidEnterBackgroundOperations() noexcept;
    void sendStartRequestAfterValidatingOrbinelId(Period period) noexcept;
    void startRequest(Period period) noexcept;
    void startSession(Period period, const platform::NotificationSettings& settings) noexcept;
    void assureSendingSession() noexcept;
    /// False where no stop was handed over: then the completion will not be called.
    [[nodiscard]] bool sendSessionData(const Completion& completion) noexcept;

    [[nodiscard]] bool isCurrent(Period period) const;
    [[nodiscard]] bool claimStart(Period period);

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    SessionStop& stop_;
    OrbinelConfig& start_;
    OrbinelPrivacy& privacy_;
    OrbinelIdentity& identity_;
    OrbinelDeviceAttributes& device_;
    TestDevices& testDevices_;
    IntegrationWizard& wizard_;
    OrbinelContentOptimizer& contents_;
    CampaignSelection& campaigns_;
    InappPresentation& inapp_;
    OrbinelPush& push_;
    PushLog& pushLog_;
    CarouselLink& carouselLink_;
    const Lifetime& lifetime_;
    platform::Application& application_;
    platform::Notifications& notifications_;

    struct State {
        Direction latestRanLifecycleOperations = Direction::none;
        Period period = 0;
        bool didActive = false;        // a start was sent for this foreground period, and the library is not disabled
        bool sessionDataSent = false;  // the stop of this session has been handed over
        int stopFunctionRunningCount = 0;
        bool isStopLifecycle = false;  // from entering the background until the stop has been handed over
    };
    mutable Mutex mutex_;
    State state_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel
