#include "hosts/headless/headless_web_view.hpp"

#include <algorithm>
#include <utility>

namespace orbinel::headless {

namespace {

using platform::LoadFailure;
using platform::NavigationPolicy;

bool isWebUrl(const std::string& url) {
    for (const std::string scheme : {"http://", "https://"}) {
        if (url.starts_with(scheme) && url.size() > scheme.size()) return true;
    }
    return false;
}

LoadFailure badUrl() {
    constexpr std::int32_t code = -1000;
    return {std::string(LoadFailure::urlLoading), code, "This is no absolute http or https URL.", true};
}

}  // namespace

void HeadlessPage::State::draw(double width, double height) {
    if (!finished || (width == drawnWidth && height == drawnHeight)) return;
    drawnWidth = width;
    drawnHeight = height;
    if (const auto told = listener()) told->wasDrawn(width, height);
}

HeadlessWebView::HeadlessWebView(std::shared_ptr<HeadlessPage::State> page)
    : page_(std::move(page)), view_(std::make_shared<HeadlessView>(page_->display)) {
    view_->setDraw([weak = std::weak_ptr(page_)](double width, double height) {
        if (const auto alive = weak.lock()) alive->draw(width, height);
    });
}

HeadlessWebView::~HeadlessWebView() { page_->alive = false; }

void HeadlessWebView::load(const std::string& url) noexcept {
    page_->url = url;
    page_->refused = false;
    page_->finished = false;
    page_->display->scheduler().postMain([page = page_, url] {
        const auto told = page->listener();
        if (told == nullptr || page->url != url) return;
        if (!isWebUrl(url)) return told->didFailNavigation(badUrl());
        page->refused = told->decidePolicyForNavigationAction({url, false, false}) == NavigationPolicy::cancel;
    });
}

void HeadlessWebView::evaluateJavaScript(const std::string& script) noexcept { page_->scripts.push_back(script); }

// --- The page, as the test plays it ---

HeadlessPage::HeadlessPage(std::shared_ptr<State> state) : state_(std::move(state)) {}
HeadlessPage::~HeadlessPage() = default;

bool HeadlessPage::isAlive() const { return state_->alive; }
const std::string& HeadlessPage::url() const { return state_->url; }
const platform::WebViewSettings& HeadlessPage::settings() const { return state_->settings; }
const std::vector<std::string>& HeadlessPage::evaluatedScripts() const { return state_->scripts; }

NavigationPolicy HeadlessPage::navigate(const std::string& url, bool linkActivated) {
    return navigate(platform::NavigationAction{url, linkActivated, false});
}

NavigationPolicy HeadlessPage::navigate(const platform::NavigationAction& action) {
    const auto told = state_->listener();
    return told != nullptr ? told->decidePolicyForNavigationAction(action) : NavigationPolicy::cancel;
}

NavigationPolicy HeadlessPage::respond(std::optional<std::int32_t> status) {
    return state_->refused ? NavigationPolicy::cancel : respond({state_->url, status, true});
}

NavigationPolicy HeadlessPage::respond(const platform::NavigationResponse& response) {
    const auto told = state_->listener();
    return told != nullptr ? told->decidePolicyForNavigationResponse(response) : NavigationPolicy::cancel;
}

void HeadlessPage::progress(double progress) {
    if (const auto told = state_->listener()) told->estimatedProgressChanged(std::clamp(progress, 0.0, 1.0));
}

void HeadlessPage::finish() {
    const auto told = state_->listener();
    if (told == nullptr) return;
    state_->finished = true;
    state_->display->changed();
    told->didFinishNavigation();
}

void HeadlessPage::fail(const LoadFailure& failure) {
    if (const auto told = state_->listener()) told->didFailNavigation(failure);
}

void HeadlessPage::terminate() {
    if (const auto told = state_->listener()) told->contentProcessDidTerminate();
}

void HeadlessPage::message(const Value& body) {
    if (const auto told = state_->listener()) told->didReceiveScriptMessage(body);
}

}  // namespace orbinel::headless
