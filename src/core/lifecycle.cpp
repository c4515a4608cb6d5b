#include "core/lifecycle.hpp"

#include <chrono>
#include <memory>

#include "base/guard.hpp"
#include "session/session_reason.hpp"

namespace orbinel {

namespace {

/// How long the main thread may wait for a stop before the platform suspends the process. Always real time.
constexpr std::chrono::milliseconds longestWait{300};

}  // namespace

/// Lets the main thread wait for the completion of a stop, which may also come after the wait is over.
class Lifecycle::Waiter {
public:
    void signal() {
        {
            const MutexLock lock(mutex_);
            signalled_ = true;
        }
        changed_.notifyAll();
    }

    void waitAtMost(std::chrono::milliseconds limit) {
        const auto deadline = std::chrono::steady_clock::now() + limit;
        const MutexLock lock(mutex_);
        while (!signalled_ && changed_.waitUntil(mutex_, deadline)) {
        }
    }

private:
    Mutex mutex_;
    ConditionVariable changed_;
    bool signalled_ ORBINEL_GUARDED_BY(mutex_) = false;
};

Lifecycle::Lifecycle(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      session_(needs.session),
      stop_(needs.stop),
      start_(needs.start),
      privacy_(needs.privacy),
      identity_(needs.identity),
      device_(needs.device),
      testDevices_(needs.testDevices),
      wizard_(needs.wizard),
      contents_(needs.contents),
      campaigns_(needs.campaigns),
      inapp_(needs.inapp),
      push_(needs.push),
      pushLog_(needs.pushLog),
      carouselLink_(needs.carouselLink),
      lifetime_(needs.lifetime),
      application_(needs.application),
      notifications_(needs.notifications) {}

// --- Becoming active ---

void Lifecycle::handleApplicationDidBecomeActiveNotification() noexcept {
    guarded(reports_, "+[Orbinel handleApplicationDidBecomeActiveNotification]", [&] {
        bool turned = false;
        {
            const MutexLock lock(mutex_);
            turned = state_.latestRanLifecycleOperations != Direction::becameActive;
            state_.latestRanLifecycleOperations = Direction::becameActive;
            if (turned) ++state_.period;
        }
        if (turned) runApplicationDidBecomeActiveOperations();
        push_.applicationDidBecomeActive();
    });
}

void Lifecycle::hybridApplicationDidBecomeActive(bool regularInitHasDone) noexcept {
    if (device_.isHybridSDK() && regularInitHasDone) handleApplicationDidBecomeActiveNotification();
}

void Lifecycle::runApplicationDidBecomeActiveOperations() noexcept {
    guarded(reports_, "+[Orbinel runApplicationDidBecomeActiveOperations]", [&] {
        reports_.log(LogType::lifecycle, LogLevel::info, "resumeSession");
        reports_.feed("resumeSession", [&] { return Dictionary{{"sdk_version", device_.getSDKVersion()}}; });
        testDevices_.addWaitingTestDevice();
        privacy_.importOrResendConsent();
        session_.emptyReceivedInappData();

        Period period = 0;
        bool active = false;
        {
            const MutexLock lock(mutex_);
            period = state_.period;
            active = state_.didActive;
        }
        if (!identity_.shouldRetryIdentification()) return sendStartRequestAfterValidatingOrbinelId(period);
        if (!active) {
            return identity_.sendIdentityRequestWithCachedIdentifiers(
                lifetime_.whileAlive([this, period] { sendStartRequestAfterValidatingOrbinelId(period); }));
        }
        const MutexLock lock(mutex_);
        state_.stopFunctionRunningCount = 0;
    });
}

void Lifecycle::sendStartRequestAfterValidatingOrbinelId(Period period) noexcept {
    guarded(reports_, "+[Orbinel sendStartRequestAfterValidatingOrbinelId]", [&] {
        const auto stored = identity_.storedOrbinelId();
        reports_.log(LogType::inapp, LogLevel::info, "Started with orbinel id.", [&] {
            return Dictionary{{"orbinel_id", stored.isNumber() ? stored : Value(stored.stringOrEmpty())}};
        });
        if (identity_.isOrbinelIdValid(stored)) return startRequest(period);
        identity_.resetOrbinelIdWithCompletionBlock(lifetime_.whileAlive([this, period] {
            if (!identity_.isOrbinelIdValid(identity_.storedOrbinelId())) {
                reports_.log(LogType::inapp, LogLevel::info, "Received corrupted orbinel_id from ovd.");
            }
            startRequest(period);
        }));
    });
}

void Lifecycle::startRequest(Period period) noexcept {
    guarded(reports_, "+[Orbinel startRequest]", [&] {
        if (!isCurrent(period)) {
            return reports_.note("The application left the foreground before its session could start.");
        }
        session_.startTimer();
        {
            const MutexLock lock(mutex_);
            state_.sessionDataSent = false;
        }
        notifications_.readSettings(lifetime_.whileAlive(
            [this, period](const platform::NotificationSettings& settings) { startSession(period, settings); }));
    });
}

void Lifecycle::startSession(Period period, const platform::NotificationSettings& settings) noexcept {
    guarded(reports_, "+[Orbinel startRequest]", [&] {
        session_.setPushPermissions(settings.permission == platform::NotificationPermission::granted);
        if (!helper_.consentsAreGiven()) return reports_.note("No session start: a consent is withheld.");
        if (!claimStart(period)) return;
        start_.sendStartRequestWithReasonAndFlushQueuedRequests(session_reason::standard, [] {});
    });
}

bool Lifecycle::isCurrent(Period period) const {
    const MutexLock lock(mutex_);
    return state_.period == period && state_.latestRanLifecycleOperations == Direction::becameActive;
}

bool Lifecycle::isInBackground() const noexcept {
    const MutexLock lock(mutex_);
    return state_.latestRanLifecycleOperations == Direction::enteredBackground;
}

/// At most one start for a foreground period; a disabled library may try again, so that the backend can switch it on.
bool Lifecycle::claimStart(Period period) {
    const bool disabled = helper_.sdkDisabled();
    const MutexLock lock(mutex_);
    const bool current = state_.period == period && state_.latestRanLifecycleOperations == Direction::becameActive;
    if (!current || state_.didActive) return false;
    state_.didActive = !disabled;
    return true;
}

// --- Entering the background ---

void Lifecycle::handleApplicationDidEnterBackgroundNotification() noexcept {
    guarded(reports_, "+[Orbinel handleApplicationDidEnterBackgroundNotification]", [&] {
        bool turned = false;
        {
            const MutexLock lock(mutex_);
            turned = state_.latestRanLifecycleOperations != Direction::enteredBackground;
            state_.latestRanLifecycleOperations = Direction::enteredBackground;
        }
        if (turned) runApplicationDidEnterBackgroundOperations();
    });
}

void Lifecycle::runApplicationDidEnterBackgroundOperations() noexcept {
    guarded(reports_, "+[Orbinel runApplicationDidEnterBackgroundOperations]", [&] {
        reports_.log(LogType::lifecycle, LogLevel::info, "appDidEnterBackground");
        const bool proceed = helper_.shouldProceed();
        {
            const MutexLock lock(mutex_);
            state_.isStopLifecycle = true;
            if (!proceed) state_.didActive = false;
        }
        if (!proceed) return;
        campaigns_.setTestInAppExistence(false);
        inapp_.cancelScheduledInapps();
        inapp_.removeInapp({});
        contents_.removeTestVariables();
        assureSendingSession();
    });
}

void Lifecycle::assureSendingSession() noexcept {
    guarded(reports_, "+[Orbinel assureSendingSession]", [&] {
        if (!helper_.shouldProceed()) return;
        const auto waiter = std::make_shared<Waiter>();
        const bool handedOver = sendSessionData([waiter] { waiter->signal(); });
        if (handedOver && application_.backgroundMaySuspend()) waiter->waitAtMost(longestWait);
    });
}

bool Lifecycle::sendSessionData(const Completion& completion) noexcept {
    bool handedOver = false;
    const bool ran = guarded(reports_, "+[Orbinel sendSessionData:]", [&] {
        bool alreadySent = false;
        {
            const MutexLock lock(mutex_);
            ++state_.stopFunctionRunningCount;
            state_.didActive = false;
            alreadySent = state_.sessionDataSent;
        }
        push_.setUserInfoProcessed(false);
        push_.setForegroundPush(false);
        carouselLink_.flushClickedDeepLink();
        if (alreadySent) return;
        pushLog_.setPlaceholderLog();
        {
            const MutexLock lock(mutex_);
            state_.sessionDataSent = true;
        }
        if (!helper_.shouldProceed()) return;
        handedOver = true;
        stop_.sendSessionStopRequestWithReason(session_reason::standard, completion);
        push_.forgetPendingPush();
        const MutexLock lock(mutex_);
        state_.isStopLifecycle = false;
    });
    if (!ran) guarded(reports_, "+[Orbinel sendSessionData:]", [&] { completion(); });
    return handedOver && ran;
}

// --- Terminating and turning ---

void Lifecycle::appWillTerminate() noexcept {
    guarded(reports_, "+[Orbinel appWillTerminate]", [&] {
        reports_.log(LogType::lifecycle, LogLevel::info, "appWillTerminate");
        wizard_.terminateConnection();
    });
}

void Lifecycle::appDidChangeOrientation() noexcept {
    guarded(reports_, "+[Orbinel appDidChangeOrientation]", [&] {
        if (!application_.isPortrait()) inapp_.removeInapp({});
    });
}

}  // namespace orbinel
