#pragma once

#include <webkit/webkit.h>

#include <atomic>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "hosts/gtk/gobject.hpp"
#include "platform/forwarding_views.hpp"

namespace orbinel::tool {

/// What has happened in one web view of the library, to which everything is handed on.
///
/// Threads: main. It lives as long as the web view.
class LivePage final : public platform::WebViewDelegate {
public:
    enum class Load { running, refused, finished, failed };

    explicit LivePage(std::weak_ptr<platform::WebViewDelegate> library) : library_(std::move(library)) {}

    void attachTo(platform::WebView& webView);
    [[nodiscard]] WebKitWebView* widget() const { return widget_ != nullptr ? widget_->get() : nullptr; }

    [[nodiscard]] Load load() const { return load_; }
    [[nodiscard]] const std::string& failure() const { return failure_; }
    [[nodiscard]] int navigations() const { return navigations_; }  // of which the library was asked
    [[nodiscard]] int messages() const { return messages_; }

    platform::NavigationPolicy decidePolicyForNavigationAction(
        const platform::NavigationAction& action) noexcept override;
    platform::NavigationPolicy decidePolicyForNavigationResponse(
        const platform::NavigationResponse& response) noexcept override;
    void didFinishNavigation() noexcept override;
    void didFailNavigation(const platform::LoadFailure& failure) noexcept override;
    void contentProcessDidTerminate() noexcept override;
    void estimatedProgressChanged(double progress) noexcept override;
    void didReceiveScriptMessage(const Value& body) noexcept override;
    void wasDrawn(double width, double height) noexcept override;

private:
    const std::weak_ptr<platform::WebViewDelegate> library_;
    std::unique_ptr<hosts::WeakObject<WebKitWebView>> widget_;
    Load load_ = Load::running;
    std::string failure_;
    int navigations_ = 0;
    int messages_ = 0;
};

/// The views of a window, with an eye on the web view that was made last of those that still are, and a keyboard that
/// the scenario may open.
class WatchedViews final : public platform::ForwardingViews {
public:
    using ForwardingViews::ForwardingViews;

    /// Nothing where no web view is left.
    [[nodiscard]] std::shared_ptr<LivePage> page() const;
    void setKeyboardOpen(bool open) { keyboardOpen_ = open; }

    [[nodiscard]] bool isKeyboardOpen() const noexcept override {
        return keyboardOpen_ || ForwardingViews::isKeyboardOpen();
    }
    [[nodiscard]] platform::WebViewOrReason makeWebView(
        platform::WebViewSettings settings, std::weak_ptr<platform::WebViewDelegate> delegate) noexcept override;

private:
    std::vector<std::weak_ptr<LivePage>> pages_;  // as they were made
    std::atomic<bool> keyboardOpen_ = false;
};

}  // namespace orbinel::tool
