#include "inapp/template_web_view.hpp"

#include <algorithm>
#include <utility>

#include "base/guard.hpp"
#include "inapp/inapp_status.hpp"
#include "orbinel/platform/views.hpp"

namespace orbinel {

using platform::NavigationPolicy;

OrbinelWKWebView::OrbinelWKWebView(const Needs& needs) : needs_(needs) {}

OrbinelWKWebView::~OrbinelWKWebView() { end(); }

void OrbinelWKWebView::end() {
    if (webView_ == nullptr) return;
    webView_.reset();
    logStatus(needs_.reports, InappStatus::webViewReleased, LogLevel::info);
}

void OrbinelWKWebView::initWithWebView(std::unique_ptr<platform::WebView> webView) {
    webView_ = std::move(webView);
    logStatus(needs_.reports, InappStatus::webViewInitialised, LogLevel::info);
}

void OrbinelWKWebView::addTo(platform::View& superview) {
    superview.addChild(webView_->view());
    logStatus(needs_.reports, InappStatus::subviewAdded, LogLevel::info);
}

void OrbinelWKWebView::removeFromSuperview() {
    webView_->view()->removeFromParent();
    logStatus(needs_.reports, InappStatus::removedFromSuperview, LogLevel::info);
}

NavigationPolicy OrbinelWKWebView::decidePolicyForNavigationAction(const platform::NavigationAction& action) noexcept {
    auto policy = NavigationPolicy::cancel;
    needs_.lifetime.whileAlive([&] { policy = needs_.owner.decidePolicyForNavigationAction(action); })();
    return policy;
}

NavigationPolicy OrbinelWKWebView::decidePolicyForNavigationResponse(
    const platform::NavigationResponse& response) noexcept {
    auto policy = NavigationPolicy::cancel;
    needs_.lifetime.whileAlive([&] { policy = needs_.owner.decidePolicyForNavigationResponse(response); })();
    return policy;
}

void OrbinelWKWebView::didFinishNavigation() noexcept {
    needs_.lifetime.whileAlive([this] { needs_.owner.didFinishNavigation(); })();
}

void OrbinelWKWebView::didFailNavigation(const platform::LoadFailure& failure) noexcept {
    needs_.lifetime.whileAlive([&] { needs_.owner.didFailNavigation(failure); })();
}

void OrbinelWKWebView::contentProcessDidTerminate() noexcept {
    needs_.lifetime.whileAlive([this] { needs_.owner.webContentProcessDidTerminate(); })();
}

void OrbinelWKWebView::didReceiveScriptMessage(const Value& body) noexcept {
    needs_.lifetime.whileAlive([&] { needs_.owner.didReceiveScriptMessage(body); })();
}

void OrbinelWKWebView::estimatedProgressChanged(double progress) noexcept {
    const auto percentage = progress > 0 ? static_cast<int>(std::min(progress, 1.0) * 100) : 0;
    if (std::exchange(percentage_, percentage) == percentage) return;
    logStatus(
        needs_.reports, InappStatus::loading,
        [&] {
            return Dictionary{{"estimated_progress", std::string("%").append(std::to_string(percentage))}};
        },
        LogLevel::info);
}

void OrbinelWKWebView::wasDrawn(double width, double height) noexcept {
    logStatus(
        needs_.reports, InappStatus::drawn,
        [&] {
            return Dictionary{{"width", width}, {"height", height}};
        },
        LogLevel::info);
}

}  // namespace orbinel
