#pragma once

#include "base/reports.hpp"
#include "events/event_recorder.hpp"
#include "orbinel/value.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"

namespace orbinel {

/// Records in the session which pushes brought the person here, and what they did with one in the notification itself.
///
/// Threads: any. What the application's notification extension left is read from the app group, which may wait for the
/// disk.
class PushLog {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        EventRecorder& recorder;
    };

    explicit PushLog(const Needs& needs);

    /// Logs the push, unless its campaign is not wholly named ("camp_id", "camp_type", "variant_id").
    void setPushSessionLog(const Dictionary& pushInfo) noexcept;

    /// A log and its two events, once for each "camp_id" in a session.
    void addPushLogIfNotExists(const Dictionary& log) noexcept;
    [[nodiscard]] bool isAlreadyLogged(const Value& campId) const noexcept;

    /// Takes over the log that the extension left of a push that came while the application was not running.
    void setPlaceholderLog() noexcept;

    /// Logs what the person did in an interactive notification or a carousel, where the extension left anything of it,
    /// and forgets that.
    void trackInteractiveLogWithUserInfo(const Dictionary& userInfo) noexcept;

private:
    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    EventRecorder& recorder_;
};

}  // namespace orbinel
