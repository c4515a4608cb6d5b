#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "inapp/collaborators.hpp"
#include "inapp/main_thread.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel {

/// Opens what a message or a push asks for, and decides what that may be: web pages, "mailto", "tel", and the schemes
/// that open this very application. Neither is trusted with any other: another application's scheme would let it act
/// there, "file" and "javascript" here.
///
/// Threads: any, where nothing else is said; the platform is called on the main thread.
class UrlOpener final : public UrlOpening {
public:
    struct Needs {
        Reports& reports;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
        platform::Application& application;
    };

    explicit UrlOpener(const Needs& needs);

    void openUrl(const std::string& url, std::function<void()> completion) noexcept override;

    /// Opens a web page in the library's own browser, and any other URL that is permitted outside the application: it
    /// belongs to whatever the person uses for it. Main thread.
    void openInternally(const std::string& url, InappScreen& screen) noexcept;

    /// The URL as it may be opened: what RFC 3986 does not allow in it is percent-escaped. Nothing where it is refused.
    [[nodiscard]] std::optional<std::string> permitted(std::string_view url) const;

private:
    void openOnMain(const std::string& url, std::function<void()> completion);

    Reports& reports_;
    const Lifetime& lifetime_;
    platform::Scheduler& scheduler_;
    const MainThread mainThread_;
    platform::Application& application_;
};

}  // namespace orbinel
