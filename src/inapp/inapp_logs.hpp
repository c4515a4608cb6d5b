#pragma once

#include <cstdint>
#include <string_view>

#include "base/late.hpp"
#include "base/reports.hpp"
#include "events/event_recorder.hpp"
#include "inapp/collaborators.hpp"
#include "inapp/presented_inapp.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"

namespace orbinel {

/// What the session's record tells of messages: what was shown and how it was closed, what was clicked in it, and what
/// was blocked.
///
/// Threads: any; no state of its own.
class InappLogs final : public InappLogging {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        EventRecorder& recorder;
        PresentedInapp& presented;
    };

    explicit InappLogs(const Needs& needs);

    Late<InappShakeDetector> shakeDetector;

    /// Stops the shake detector, and logs the close once: where the message was shown, or its presenter wants it
    /// although it never could be (an open keyboard). The log is the event "inapp_seen" as well, without its clicks.
    void addInappLog(std::int32_t dismissType) noexcept override;

    /// The same log for a message that never becomes the active one.
    void addControlGroupLog(const Dictionary& inapp) noexcept override;

    /// Kept until the close is logged, with the moment it came. Beyond 1,000 clicks of one message they are dropped.
    void addClickLog(const Dictionary& click) noexcept override;

    void logBlockedInAppMessage(const Dictionary& inapp) noexcept override;
    void logInAppMessageAction(std::string_view action) noexcept override;

private:
    void logClose(const Dictionary& inapp, std::int32_t dismissType, Array clicks);

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    EventRecorder& recorder_;
    PresentedInapp& presented_;
};

}  // namespace orbinel
