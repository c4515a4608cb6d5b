#include "apps/orbinel/play/gtk/live_page.hpp"

#include <variant>

#include "hosts/gtk/gtk_view.hpp"
#include "platform/forwarding_web_view.hpp"

namespace orbinel::tool {

namespace {

using platform::NavigationPolicy;

/// Keeps the page that its web view is watched by.
class WatchedWebView final : public platform::ForwardingWebView {
public:
    WatchedWebView(std::unique_ptr<platform::WebView> target, std::shared_ptr<LivePage> page)
        : ForwardingWebView(std::move(target)), page_(std::move(page)) {}

private:
    const std::shared_ptr<LivePage> page_;
};

}  // namespace

void LivePage::attachTo(platform::WebView& webView) {
    const auto view = webView.view();
    auto* widget = gtk_widget_get_first_child(static_cast<hosts::GtkView&>(*view).widget());
    widget_ = std::make_unique<hosts::WeakObject<WebKitWebView>>(WEBKIT_WEB_VIEW(widget));
}

NavigationPolicy LivePage::decidePolicyForNavigationAction(const platform::NavigationAction& action) noexcept {
    ++navigations_;
    const auto library = library_.lock();
    return library != nullptr ? library->decidePolicyForNavigationAction(action) : NavigationPolicy::cancel;
}

NavigationPolicy LivePage::decidePolicyForNavigationResponse(const platform::NavigationResponse& response) noexcept {
    const auto library = library_.lock();
    const auto policy =
        library != nullptr ? library->decidePolicyForNavigationResponse(response) : NavigationPolicy::cancel;
    if (response.mainFrame && policy == NavigationPolicy::cancel) load_ = Load::refused;
    return policy;
}

void LivePage::didFinishNavigation() noexcept {
    load_ = Load::finished;
    if (const auto library = library_.lock()) library->didFinishNavigation();
}

void LivePage::didFailNavigation(const platform::LoadFailure& failure) noexcept {
    load_ = Load::failed;
    failure_ = failure.description;
    if (const auto library = library_.lock()) library->didFailNavigation(failure);
}

void LivePage::contentProcessDidTerminate() noexcept {
    load_ = Load::failed;
    failure_ = "its process has ended";
    if (const auto library = library_.lock()) library->contentProcessDidTerminate();
}

void LivePage::estimatedProgressChanged(double progress) noexcept {
    if (const auto library = library_.lock()) library->estimatedProgressChanged(progress);
}

void LivePage::didReceiveScriptMessage(const Value& body) noexcept {
    ++messages_;
    if (const auto library = library_.lock()) library->didReceiveScriptMessage(body);
}

void LivePage::wasDrawn(double width, double height) noexcept {
    if (const auto library = library_.lock()) library->wasDrawn(width, height);
}

std::shared_ptr<LivePage> WatchedViews::page() const {
    for (auto at = pages_.rbegin(); at != pages_.rend(); ++at) {
        if (auto page = at->lock()) return page;
    }
    return nullptr;
}

platform::WebViewOrReason WatchedViews::makeWebView(platform::WebViewSettings settings,
                                                    std::weak_ptr<platform::WebViewDelegate> delegate) noexcept {
    const auto page = std::make_shared<LivePage>(std::move(delegate));
    auto made = ForwardingViews::makeWebView(std::move(settings), page);
    auto* webView = std::get_if<std::unique_ptr<platform::WebView>>(&made);
    if (webView == nullptr) return made;
    page->attachTo(**webView);
    std::erase_if(pages_, [](const auto& earlier) { return earlier.expired(); });
    pages_.push_back(page);
    return std::make_unique<WatchedWebView>(std::move(*webView), page);
}

}  // namespace orbinel::tool
