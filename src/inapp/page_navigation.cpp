#include "inapp/page_navigation.hpp"

#include <chrono>
#include <string_view>
#include <utility>

#include "base/url.hpp"
#include "base/value_text.hpp"
#include "base/whole_number.hpp"
#include "inapp/inapp_status.hpp"
#include "tools/console_line.hpp"

namespace orbinel {

using platform::NavigationPolicy;
using Stage = TemplateView::Stage;

namespace {

constexpr std::string_view ownScheme = "orbinelurl://";
constexpr std::int32_t firstFailedStatus = 400;
constexpr std::size_t longestLoggedUrl = 1024;   // bytes: a data: URL holds a whole document
constexpr std::chrono::seconds longestLoad{60};  // a page that hangs must not keep all others away

}  // namespace

// --- Loading ---

void PageNavigation::load(TemplateView& message) {
    message_ = &message;
    origin_ = originOf(message.url);
    loaded_ = false;
    loadLimit_ = needs_.scheduler.postMainAfter(longestLoad, needs_.lifetime.whileAlive([this] {
        if (isLoading()) giveUp("The page has not been loaded within a minute.");
    }));
    message.webView->load(message.url);
}

void PageNavigation::end() noexcept {
    message_ = nullptr;
    loadLimit_.cancel();
}

bool PageNavigation::isLoading() const noexcept { return message_ != nullptr && message_->stage == Stage::loading; }

void PageNavigation::giveUp(const std::string& reason) {
    logRequestFailed(needs_.reports, *message_->record, reason);
    givenUp();
}

void PageNavigation::didFinishNavigation() {
    if (!isLoading()) return;
    loadLimit_.cancel();
    loaded_ = true;
    finished();
}

void PageNavigation::didFailNavigation(const platform::LoadFailure& failure) {
    logFailure(failure);
    if (isLoading()) giveUp(failure.description);
}

void PageNavigation::logFailure(const platform::LoadFailure& failure) {
    if (!failure.provisional) {
        needs_.reports.log(LogType::inapp, LogLevel::info, "Webview warning. didFailNavigation.", [&] {
            return Dictionary{{"errorDescription", failure.description}};
        });
    } else if (failure.domain == platform::LoadFailure::urlLoading) {
        const auto* kind = failure.code == platform::LoadFailure::secureConnectionFailed ? "SSL." : "Other.";
        needs_.reports.log(LogType::inapp, LogLevel::info,
                           "Webview warning. " + std::string(kind) + " " + std::to_string(failure.code));
    }
}

void PageNavigation::webContentProcessDidTerminate() {
    needs_.reports.log(LogType::inapp, LogLevel::info, "Webview warning. contentProcessDidTerminate.");
    if (message_ == nullptr) return;
    loaded_ = false;
    processEnded();
    if (message_->stage == Stage::loading || message_->stage == Stage::delayed) givenUp();
}

// --- Where it goes ---

NavigationPolicy PageNavigation::decidePolicyForNavigationAction(const platform::NavigationAction& action) {
    if (message_ != nullptr && message_->stage == Stage::givenUp) {
        needs_.reports.note("Ignored what a page asked for that is not shown any more.");
        return NavigationPolicy::cancel;
    }
    if (action.url.find(ownScheme) != std::string::npos) {
        if (action.redirected) return refuseFrame(action.url);  // of a server that may be anybody's
        if (auto* told = needs_.page.get()) told->processCustomScreenClicks(action.url);
        return NavigationPolicy::cancel;
    }
    if (!action.linkActivated) {
        if (isWebUrl(action.url) || action.url.starts_with("about:")) return NavigationPolicy::allow;
        return refuseFrame(action.url);  // data: and the like, which some engines show without waiting for an answer
    }
    openLink(action.url);
    return NavigationPolicy::cancel;
}

void PageNavigation::openLink(const std::string& url) {
    if (int32Of(needs_.presented.content()["type"]) != kCUSTOMSREEN) {
        InappButton banner;
        banner.tag = kBANNERCLICKED;
        if (auto* clicks = needs_.buttonClicks.get()) clicks->inappButtonClicked(banner);
    }
    if (auto* opening = needs_.urlOpening.get()) opening->openUrl(url, {});
}

NavigationPolicy PageNavigation::decidePolicyForNavigationResponse(const platform::NavigationResponse& response) {
    if (message_ == nullptr) return NavigationPolicy::cancel;
    auto origin = originOf(response.url);
    if (!response.mainFrame) return origin == origin_ ? NavigationPolicy::allow : refuseFrame(response.url);
    if (response.status.value_or(0) >= firstFailedStatus) {
        if (!loaded_) giveUp("HTTP status " + std::to_string(*response.status));
        return NavigationPolicy::cancel;
    }
    origin_ = std::move(origin);  // where a redirect has led
    return NavigationPolicy::allow;
}

/// Whatever stands in it could speak to the library in the page's name.
NavigationPolicy PageNavigation::refuseFrame(const std::string& url) {
    needs_.reports.log(LogType::inapp, LogLevel::error, "A frame of another origin is refused.", [&] {
        return Dictionary{{"url", url.substr(0, longestLoggedUrl)}};
    });
    return NavigationPolicy::cancel;
}

void PageNavigation::didReceiveScriptMessage(const Value& body) {
    if (!needs_.testDevices.isTestDevice()) return;
    needs_.console.writeLine(onOneLine("[ORBINEL][message]: " + textOf(body)));
}

}  // namespace orbinel
