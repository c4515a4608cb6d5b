#pragma once

#include <string>

#include "orbinel/platform/web_view.hpp"
#include "orbinel/value.hpp"

namespace orbinel::tool {

/// Stands for the page of a message and for the person in front of it. What cannot be carried out throws
/// `NotCarriedOut`.
///
/// Threads: main.
class PlayedPage {
public:
    virtual ~PlayedPage() = default;

    /// The page has been loaded.
    virtual void finish() = 0;
    virtual void fail(const platform::LoadFailure& failure) = 0;
    virtual void progress(double progress) = 0;

    /// The page navigates; `link`: because the person followed a link.
    virtual void navigate(const std::string& url, bool link) = 0;

    /// The page posts to the message handler.
    virtual void message(const Value& body) = 0;

    /// The process that draws the page ends.
    virtual void terminate() = 0;

    // What the person presses.
    virtual void tapClose() = 0;
    virtual void tapBrowserClose() = 0;
};

}  // namespace orbinel::tool
