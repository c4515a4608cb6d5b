#pragma once

#include <string>
#include <string_view>

#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "base/ticket_box.hpp"
#include "orbinel/platform/http.hpp"
#include "orbinel/user_activity.hpp"
#include "orbinel/value.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"

namespace orbinel {

/// Notes for the session by which link of the vendor's the person came. Such a link may be a short one: where it leads
/// is found out by following it.
///
/// Threads: any; where the link leads is noted on the network thread.
class UniversalLinks {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        const Lifetime& lifetime;
        platform::Http& http;
    };

    explicit UniversalLinks(const Needs& needs);

    /// Follows the page of an activity that goes on in a browser; every other activity is left. Asks the gate.
    void handleUniversalLink(const UserActivity& activity) noexcept;

    /// Follows no link any more.
    void cancelAll() { requests_.cancelAll(); }

private:
    void follow(std::string url);
    void complete(const platform::HttpOutcome& outcome);

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    const Lifetime& lifetime_;
    platform::Http& http_;
    TicketBox requests_;
};

/// The items of a URL's query (RFC 3986), names and values without their percent-encoding. Of equal names the last one
/// counts; an item without "=" has the null marker.
[[nodiscard]] Dictionary queryParametersFromURL(std::string_view url);

}  // namespace orbinel
