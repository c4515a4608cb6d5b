#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "orbinel/platform/layout.hpp"
#include "orbinel/value.hpp"

namespace orbinel::platform {

class View;

enum class NavigationPolicy { allow, cancel };

/// A navigation that is about to begin, or to go on elsewhere by a redirect, in any frame of the page.
struct NavigationAction {
    std::string url;             // absolute; with a scheme of the application's own, byte for byte as the page wrote it
    bool linkActivated = false;  // the person followed a link
    bool redirected = false;     // a server led here (HTTP 3xx): nothing tells that the page itself wants this
};

/// The answer to a navigation, before anything of it is shown.
struct NavigationResponse {
    std::string url;
    std::optional<std::int32_t> status;  // of HTTP; absent for other schemes
    bool mainFrame = true;               // false: a frame inside the page
};

/// Why a page could not be loaded.
struct LoadFailure {
    /// The domain of failures of loading a URL: no connection, no such host, time-out, TLS.
    static constexpr std::string_view urlLoading = "NSURLErrorDomain";
    /// The code of a failed TLS handshake in that domain.
    static constexpr std::int32_t secureConnectionFailed = -1200;

    std::string domain;
    std::int32_t code = 0;
    std::string description;   // one sentence for a log
    bool provisional = false;  // before the first byte of the page
};

/// What happens in a web view.
///
/// Threads: the main thread. Never called inside a method of the web view.
/// Order: a page is asked for (action), and again with the target of each redirect, also one to another scheme; then it
/// is answered (response) and finished or failed. What the delegate cancels is
/// neither: that is no failure, and a page that was there stays.
class WebViewDelegate {
public:
    virtual ~WebViewDelegate() = default;

    [[nodiscard]] virtual NavigationPolicy decidePolicyForNavigationAction(const NavigationAction& action) noexcept = 0;
    [[nodiscard]] virtual NavigationPolicy decidePolicyForNavigationResponse(
        const NavigationResponse& response) noexcept = 0;

    /// The page and all that belongs to it has been loaded. Not called after a failure.
    virtual void didFinishNavigation() noexcept = 0;
    virtual void didFailNavigation(const LoadFailure& failure) noexcept = 0;

    /// The process that drew the page has ended; the page stays blank.
    virtual void contentProcessDidTerminate() noexcept = 0;

    /// From 0 to 1; called at every change.
    virtual void estimatedProgressChanged(double progress) noexcept = 0;

    /// What the page posted to the message handler `orbinel`.
    virtual void didReceiveScriptMessage(const Value& body) noexcept = 0;

    /// The page has been drawn for the first time at this size, in points.
    virtual void wasDrawn(double width, double height) noexcept = 0;
};

struct WebViewSettings {
    bool inspectable = false;  // may be looked into with the engine's developer tools
    std::string startScript;   // run in every page before its own scripts; empty: none
};

/// Shows a page. Its background is clear where the page's is; it neither scrolls beyond the page nor bounces, and it
/// keeps no cookies, no cache and no storage beyond its own life. A page may post messages to
/// `webkit.messageHandlers.orbinel`.
///
/// Threads: main thread only.
/// Ending: destroying it stops loading and ends the page; the delegate hears nothing more.
class WebView {
public:
    virtual ~WebView() = default;

    /// The view that shows the page. It lives as long as the web view.
    [[nodiscard]] virtual std::shared_ptr<View> view() noexcept = 0;

    /// Begins to load a page. A text that is no absolute http or https URL is told as a provisional failure.
    virtual void load(const std::string& url) noexcept = 0;

    /// Runs a script in the page, after those handed over before it. Results and errors are dropped.
    virtual void evaluateJavaScript(const std::string& script) noexcept = 0;
};

/// A web view, or one sentence why no web engine can run here.
using WebViewOrReason = std::variant<std::unique_ptr<WebView>, std::string>;

}  // namespace orbinel::platform
