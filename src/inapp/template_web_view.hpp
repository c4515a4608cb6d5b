#pragma once

#include <memory>
#include <string>
#include <variant>

#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "orbinel/platform/web_view.hpp"

namespace orbinel {

/// What happens in the page of a message. Main thread.
class TemplateNavigation {
public:
    virtual ~TemplateNavigation() = default;
    [[nodiscard]] virtual platform::NavigationPolicy decidePolicyForNavigationAction(
        const platform::NavigationAction& action) = 0;
    [[nodiscard]] virtual platform::NavigationPolicy decidePolicyForNavigationResponse(
        const platform::NavigationResponse& response) = 0;
    virtual void didFinishNavigation() = 0;
    virtual void didFailNavigation(const platform::LoadFailure& failure) = 0;
    virtual void webContentProcessDidTerminate() = 0;
    virtual void didReceiveScriptMessage(const Value& body) = 0;
};

/// The web view of a message, which tells the diagnostic log what becomes of it.
///
/// Threads: main. What it tells its owner, it tells only while the world lives, and under the exception guard.
class OrbinelWKWebView final : public platform::WebViewDelegate {
public:
    struct Needs {
        Reports& reports;
        const Lifetime& lifetime;
        TemplateNavigation& owner;  // outlives it
    };

    explicit OrbinelWKWebView(const Needs& needs);
    ~OrbinelWKWebView() override;

    /// Takes the platform's view, whose delegate this object is.
    void initWithWebView(std::unique_ptr<platform::WebView> webView);

    void load(const std::string& url) { webView_->load(url); }
    void evaluateJavaScript(const std::string& script) { webView_->evaluateJavaScript(script); }
    void addTo(platform::View& superview);
    void removeFromSuperview();

    /// Ends the platform's view; nothing is told any more. The destructor does the same.
    void end();

    // The platform's telling.
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
    const Needs needs_;
    std::unique_ptr<platform::WebView> webView_;
    int percentage_ = 0;
};

}  // namespace orbinel
