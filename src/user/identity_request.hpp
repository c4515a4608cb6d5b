#pragma once

#include <functional>
#include <optional>
#include <string>

#include "base/reports.hpp"
#include "orbinel/value.hpp"
#include "session/endpoints.hpp"
#include "session/request_sender.hpp"
#include "session/session.hpp"

namespace orbinel {

/// The Orbinel ID that the backend answered; the empty text where it gave none.
using IdentityAnswer = std::function<void(const std::string& orbinelId)>;

/// Asks the backend who the person with some identifiers is.
///
/// Threads: any; the answer comes on a background thread, once.
class IdentityRequest {
public:
    struct Needs {
        Reports& reports;
        OrbinelSession& session;
        OrbinelRequest& sender;
        const OrbinelEndpoints& endpoints;
    };

    explicit IdentityRequest(const Needs& needs);

    /// `validOrbinelId`: the ID in force, where it may be sent. `identifiers` are texts.
    void send(const Dictionary& identifiers, const std::optional<std::string>& validOrbinelId, IdentityAnswer success);

private:
    Reports& reports_;
    OrbinelSession& session_;
    OrbinelRequest& sender_;
    const OrbinelEndpoints& endpoints_;
};

}  // namespace orbinel
