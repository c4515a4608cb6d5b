#pragma once

#include <functional>

#include "base/lifetime.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "base/ticket_box.hpp"
#include "orbinel/platform/device.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/target_action.hpp"
#include "session/collaborators.hpp"
#include "session/endpoints.hpp"
#include "session/helper.hpp"
#include "session/offline_queue.hpp"
#include "session/request_sender.hpp"
#include "session/session.hpp"
#include "session/start_answer.hpp"

namespace orbinel {

/// Opens a session at the backend and applies the answer, which configures the library for the session.
///
/// Threads: any; the answer is applied on the main queue.
class OrbinelConfig {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        OrbinelRequest& sender;
        OfflineQueue& queue;
        const OrbinelEndpoints& endpoints;
        SessionCollaborators& collaborators;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
        platform::Device& device;
    };

    explicit OrbinelConfig(const Needs& needs);

    /// Deals with the offline queue first: for reason 1 its retry loop begins and the start is sent at once, for every
    /// other reason the queue is sent once and the start when that pass is over.
    ///
    /// The completion is called when an answer has come; not when there was none, not when it switched the library off,
    /// and not when a message took the place of the session start. Nothing is sent, and nothing called, where a consent
    /// is withheld or the session has ended by the time the start would leave. An answer that comes when its session
    /// has ended, or the partner has changed, is not applied: it says nothing of the session that is current then.
    void sendStartRequestWithReasonAndFlushQueuedRequests(int reason, Completion completion) noexcept;
    void sendStartRequestWithReason(int reason, Completion completion) noexcept;

    /// One step of the retry loop: sends the queue after step × 2 seconds, and goes on with the next step when that
    /// pass is over, up to three times.
    void flushQueueIfAppropriate(int retryStep) noexcept;

    [[nodiscard]] Dictionary getStartPayload();
    [[nodiscard]] Dictionary getDeviceData();
    /// "wifi", "celular" (with one l: so the backend knows it), "none" or "unknown".
    [[nodiscard]] std::string_view connectionType() const;

    /// Adopts an ID that the backend sent.
    void setNewIdForIdentication(const std::string& orbinelId);

    /// Performed with {"type": 6} on the turn of the main queue after a start completed. Replaces the one before.
    void setSessionStartedCallback(TargetAction<const Dictionary&> callback);

    /// Ends the retry loop.
    void cancelAll() { timers_.cancelAll(); }

private:
    void setFirstRun();
    void handleAnswer(const Value& answer, const SessionMark& session, const Completion& completion) noexcept;
    void leaveAnswer(const Value& answer, const Completion& completion);
    void recordAnswer(const Value& answer);
    [[nodiscard]] bool applyAnswer(const Value& answer);
    void applyLogSwitches(const StartAnswer& answer);
    void summariseReceivedInapps(const Array& inapps);
    void applyIdentity(const StartAnswer& answer);
    void applyRecommendations(const StartAnswer& answer);
    void applyContents(const StartAnswer& answer);
    [[nodiscard]] bool applyInapps(const Array& inapps);
    void replayEventsBeforeInapp();
    void performSessionStartedCallback() noexcept;
    void finish(const Completion& completion) noexcept;
    void complete(const Completion& completion) noexcept;
    void retryQueuedRequests(int retryStep);
    void reportFlushingFinished() noexcept;

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    OrbinelRequest& sender_;
    OfflineQueue& queue_;
    const OrbinelEndpoints& endpoints_;
    SessionCollaborators& collaborators_;
    const Lifetime& lifetime_;
    platform::Scheduler& scheduler_;
    platform::Device& device_;
    TicketBox timers_;

    Mutex callbackMutex_;
    TargetAction<const Dictionary&> sessionStartedCallback_ ORBINEL_GUARDED_BY(callbackMutex_);
};

}  // namespace orbinel
