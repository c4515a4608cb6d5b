#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/late.hpp"
#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "session/helper.hpp"
#include "session/session_start.hpp"
#include "session/session_stop.hpp"
#include "user/displayed_inapp.hpp"
#include "user/identity.hpp"
#include "user/user_attributes.hpp"

namespace orbinel {

/// Logs the user in: asks the backend who the person with the identifiers is, and where that is somebody else than
/// before, closes the running session and opens one under the new ID.
///
/// A login goes on to its end in the background too: nothing of it waits for the application to be active. Only where
/// the gate is closed meanwhile, no session is closed or opened, and none is opened where the application's own has
/// ended since. Of two logins under way, the later one prevails, whichever is answered first.
///
/// Threads: any. A different person's session is closed from the main queue; the result comes there, or, where the
/// session goes on, on the thread of the answer.
class Login {
public:
    using OrbinelIDResult = std::function<void(const std::string& orbinelId)>;

    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelIdentity& identity;
        OrbinelUserInternal& user;
        const OrbinelSession& session;
        SessionStop& stop;
        OrbinelConfig& start;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
    };

    explicit Login(const Needs& needs);

    /// The message on screen, once core has bound it.
    Late<DisplayedInapp> displayedInapp;

    /// Gated. Identifiers that are those of the last login send nothing: the result is the current ID, at once, unless
    /// the backend still owes an ID for them.
    void login(Dictionary identifiers, OrbinelIDResult result) noexcept;

    /// The same without gate and without regard to the last login. The result is called at most once: not when the
    /// backend gave no ID, nor, for a different person, when the new session's start was not answered.
    void startUnificationProcessWithSessionProcess(Dictionary identifiers, OrbinelIDResult result) noexcept;

private:
    struct Attempt;
    using AttemptPointer = std::shared_ptr<Attempt>;

    void startUnificationProcess(const AttemptPointer& attempt);
    void answered(const AttemptPointer& attempt);
    void switchPerson(const AttemptPointer& attempt) noexcept;
    void postpone(const Attempt& attempt) noexcept;
    void removeDisplayedInapp();
    void startNewSession(const AttemptPointer& attempt);
    void apply(const Attempt& attempt) noexcept;
    void giveResultIfInEffect(const Attempt& attempt) noexcept;
    void giveResult(const OrbinelIDResult& result, const std::string& orbinelId) noexcept;

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelIdentity& identity_;
    OrbinelUserInternal& user_;
    const OrbinelSession& session_;
    SessionStop& stop_;
    OrbinelConfig& start_;
    const Lifetime& lifetime_;
    platform::Scheduler& scheduler_;
};

}  // namespace orbinel
