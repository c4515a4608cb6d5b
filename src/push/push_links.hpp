#pragma once

#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "base/ticket_box.hpp"
#include "inapp/collaborators.hpp"
#include "inapp/url_opener.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// Opens the address that a push brings along, by the rules for what a page may open.
///
/// Threads: any, where nothing else is said.
class PushLinks {
public:
    struct Needs {
        Reports& reports;
        UrlOpener& urls;
        InappScreen& screen;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
    };

    explicit PushLinks(const Needs& needs);

    /// Opens the push's address a second later: by then the application has come to the foreground.
    void openBrowser(const Dictionary& pushInfo) noexcept;

    /// Opens one address: that for the library's own browser before that for the system, and a scheme's last. Main
    /// thread.
    void handlePushUrlType(const Dictionary& pushInfo) noexcept;

    /// Opens nothing any more.
    void cancelAll() { waiting_.cancelAll(); }

private:
    Reports& reports_;
    UrlOpener& urls_;
    InappScreen& screen_;
    const Lifetime& lifetime_;
    platform::Scheduler& scheduler_;
    TicketBox waiting_;
};

}  // namespace orbinel
