#pragma once

#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "session/collaborators.hpp"
#include "session/endpoints.hpp"
#include "session/request_sender.hpp"
#include "session/session.hpp"

namespace orbinel {

/// Closes a session: takes the record, cleans it and sends it.
///
/// Threads: any; two stops never interleave.
class SessionStop {
public:
    struct Needs {
        Reports& reports;
        OrbinelSession& session;
        OrbinelRequest& sender;
        const OrbinelEndpoints& endpoints;
        SessionCollaborators& collaborators;
    };

    explicit SessionStop(const Needs& needs);

    /// The completion is called once the backend has answered or the stop is queued. After a failure on the way it is
    /// not called.
    void sendSessionStopRequestWithReason(int reason, Completion completion) noexcept;

private:
    [[nodiscard]] Dictionary makePayload(int reason);
    void send(Dictionary payload, Completion completion);

    Reports& reports_;
    OrbinelSession& session_;
    OrbinelRequest& sender_;
    const OrbinelEndpoints& endpoints_;
    SessionCollaborators& collaborators_;

    // Held from the first step of a stop to its last: the one lock under which other owners are called. Nothing that
    // they call takes it, and nobody waits for a stop's completion with it held.
    Mutex oneStopAtATime_;
};

}  // namespace orbinel
