#include "inapp/presentation.hpp"

#include <algorithm>
#include <chrono>
#include <utility>
#include <variant>

#include "base/guard.hpp"
#include "base/url.hpp"
#include "base/value_text.hpp"
#include "base/whole_number.hpp"
#include "inapp/inapp_status.hpp"
#include "inapp/view_tags.hpp"
#include "tools/console_line.hpp"

namespace orbinel {

using platform::NavigationPolicy;
using Stage = TemplateView::Stage;

namespace {

constexpr std::string_view ownScheme = "orbinelurl://";
constexpr std::string_view productPage = "product_detail_page_view";
constexpr const char* noWindow = "The application has no window.";
constexpr std::int32_t inappSeenType = 5;  // among the types of the application's callback
constexpr std::int32_t firstFailedStatus = 400;
constexpr std::size_t longestLoggedUrl = 1024;   // bytes: a data: URL holds a whole document
constexpr std::chrono::seconds longestLoad{60};  // a page that hangs must not keep all others away

void logRemoval(Reports& reports, const char* reason) {
    reports.log(LogType::inapp, LogLevel::info, "RemoveFromSuperview is called.", [&] {
        return Dictionary{{"reason", reason}};
    });
}

}  // namespace

InappPresentation::InappPresentation(const Needs& needs)
    : needs_(needs),
      templateUrl_({needs.reports, needs.helper, needs.identity, needs.application}),
      keyboardPusher_({needs.lifetime, needs.notificationCentre}),
      browser_({needs.reports, needs.lifetime, needs.scheduler, needs.views, urlOpening}),
      inappSeenCallback_({needs.reports, needs.lifetime, needs.scheduler}) {
    browser_.closed = [this] {
        if (needs_.presented.templatesAreSetToBeHidden()) needs_.views.setOverlayVisible(false, 0);
        if (std::exchange(waitsForBrowser_, false)) showInapp();
    };
}

InappPresentation::~InappPresentation() = default;

void InappPresentation::onMain(const char* operation, std::function<void()> work) noexcept {
    auto guardedWork = needs_.lifetime.whileAlive(
        [this, operation, work = std::move(work)] { guarded(needs_.reports, operation, [&] { work(); }); });
    if (needs_.scheduler.isMain()) return guardedWork();
    needs_.scheduler.postMain(std::move(guardedWork));
}

// --- Building ---

void InappPresentation::createInappAfterAppropriateDelaysWithType(const InappLayout& layout) noexcept {
    needs_.scheduler.postMain(needs_.lifetime.whileAlive(
        [this, layout, record = needs_.presented.activeInapp(), asOf = cancellations_.load()] {
            guarded(needs_.reports, {"OrbinelInapp - inAppViewCreate", DescriptionForm::nameOnly}, [&] {
                if (asOf == cancellations_ && record != nullptr) build(record, layout);
            });
        }));
}

void InappPresentation::build(const PresentedInapp::Record& record, const InappLayout& layout) {
    const auto identity = [&] { return inappIdentity(record.get()); };
    if (needs_.presented.activeInapp() != record) {  // another one was handed over in the same turn
        return logStatus(needs_.reports, InappStatus::waitingForOther, identity);
    }
    if (template_ != nullptr && template_->stage == Stage::delayed) {
        logStatus(needs_.reports, InappStatus::waitingForOther, identity);
        needs_.presented.present(template_->record);  // which is still the one to be shown
        return;
    }

    auto made = prepare(record, layout);
    if (made == nullptr || !putUp(std::move(made))) needs_.presented.clear(record);
}

/// The message with its web view and its URL; nothing where it has none that can be used, which is told.
std::unique_ptr<TemplateView> InappPresentation::prepare(const PresentedInapp::Record& record,
                                                         const InappLayout& layout) {
    auto made = std::make_unique<TemplateView>(needs_.views, record, layout);
    made->webView = makeWebView(*record);
    if (made->webView == nullptr) return nullptr;
    const auto url = templateUrl_.getTemplateURLFromContent(made->content);
    if (!url) {
        logStatus(needs_.reports, InappStatus::waitingForOther, [&] { return made->identity(); });
        return nullptr;
    }
    made->url = *url;
    made->origin = originOf(*url);
    if (!made->namesAPage || isWebUrl(made->url)) return made;
    logStatus(needs_.reports, InappStatus::urlInvalid, [&] {
        auto attributes = made->identity();
        attributes.set("url", made->url);
        return attributes;
    });
    return nullptr;
}

/// Puts the message into the window and asks for its page; false where it cannot be shown, or was removed meanwhile.
bool InappPresentation::putUp(std::unique_ptr<TemplateView> made) {
    const auto asOf = cancellations_.load();
    createInAppWithWebView(*made);
    // Told of every message that is built, also of one without a page.
    logStatus(needs_.reports, InappStatus::loadRequested, [&] { return made->identity(); });
    if (!made->isUp() || asOf != cancellations_) return false;
    needs_.presented.presentWhereNone(made->record);  // what was removed for it may have been of the same campaign
    template_ = std::move(made);
    onTheScreen_ = true;
    if (KeyboardPusher::shouldKeyboardPushInAppForInAppType(template_->layout)) {
        keyboardPusher_.registerForInAppPusherKeyboardNotifications(template_->container(),
                                                                    [this] { observeMoved(kANIMATIONDURATION); });
    }
    limitLoading();
    template_->webView->load(template_->url);
    observe(&PresentationObserver::built, *template_);
    return true;
}

void InappPresentation::limitLoading() {
    loadLimit_ = needs_.scheduler.postMainAfter(longestLoad, needs_.lifetime.whileAlive([this] {
        if (template_ == nullptr || template_->stage != Stage::loading) return;
        requestFailed(*template_->record, "The page has not been loaded within a minute.");
        giveUp();
    }));
}

/// Nothing where no page can be shown here, which is told.
std::shared_ptr<OrbinelWKWebView> InappPresentation::makeWebView(const Dictionary& record) {
    std::string reason = noWindow;
    if (needs_.views.overlay() != nullptr) {
        constexpr float firstInspectable = 16.4F;
        auto webView = std::make_shared<OrbinelWKWebView>(
            OrbinelWKWebView::Needs{needs_.reports, needs_.lifetime, static_cast<TemplateNavigation&>(*this)});
        auto outcome = needs_.views.makeWebView(
            {needs_.helper.isIOSVersionGreaterOrEqual(firstInspectable), pageSettings.startScript(needs_.json)},
            webView);
        if (auto* made = std::get_if<std::unique_ptr<platform::WebView>>(&outcome)) {
            webView->initWithWebView(std::move(*made));
            return webView;
        }
        reason = std::get<std::string>(outcome);
    }
    requestFailed(record, reason);
    return nullptr;
}

void InappPresentation::createInAppWithWebView(TemplateView& made) {
    removeEarlierViews();
    if (!canBeFilled(made)) return;
    guarded(needs_.reports, {"OrbinelInapp - webviewLayoutCreate", DescriptionForm::nameOnly}, [&] {
        const bool up = made.putUp(needs_.lifetime.whileAlive([this] { closeWebViewPage(); }));
        if (!up) requestFailed(*made.record, noWindow);
    });
    // The views in it are invisible themselves.
    if (!needs_.presented.templatesAreSetToBeHidden()) needs_.views.setOverlayVisible(true, 0);
}

void InappPresentation::removeEarlierViews() {
    if (template_ == nullptr) return;
    logRemoval(needs_.reports, "inAppViewCreate method");
    keyboardPusher_.unregisterForInAppPusherKeyboardNotifications();
    finishRemoval();
}

/// Where nothing can be put into the container, the reason is told.
bool InappPresentation::canBeFilled(const TemplateView& made) const {
    if (!made.namesAPage) {
        needs_.reports.log(LogType::inapp, LogLevel::error, "Webview can't load.", [] {
            return Dictionary{{"reason", "no image url & no template url"}};
        });
        return false;
    }
    if (!made.isCustomScreen) logRemoval(needs_.reports, "inappPosition is not kCUSTOMSREEN");
    return made.isCustomScreen;
}

// --- Showing ---

void InappPresentation::showInapp() noexcept {
    auto show = needs_.lifetime.whileAlive([this] {
        guarded(needs_.reports, {"OrbinelInapp - showInapp", DescriptionForm::nameOnly}, [&] { showBuilt(); });
    });
    if (needs_.scheduler.isMain()) return show();
    needs_.scheduler.postMain(std::move(show));
}

void InappPresentation::showBuilt() {
    if (template_ == nullptr || template_->stage != Stage::delayed) return;

    auto& ready = *template_;
    needs_.reports.log(LogType::inapp, LogLevel::error, "showInapp has been called.");
    needs_.presented.clearClicks();
    makeInappVisibleBlock_.cancel();
    if (needs_.application.state() == platform::ApplicationState::background) {
        needs_.reports.log(LogType::inapp, LogLevel::error, "Application state is background.");
        return giveUp();
    }
    if (browser_.isOpen()) {  // whose end shows the message
        needs_.reports.log(LogType::inapp, LogLevel::error, "InApp already in view.");
        waitsForBrowser_ = true;
        return;
    }
    if (!isOrientationPortrait()) return removeInappWithCompletionHandler({});
    if (needs_.views.isKeyboardOpen()) {
        needs_.presented.setShouldAddInappLog(true);  // although it was never shown
        needs_.logging.addInappLog(inappCloseReasonKeyboardDismissType);
        return removeInappWithCompletionHandler({});
    }
    reveal(ready);
}

void InappPresentation::reveal(TemplateView& ready) {
    needs_.presented.setShouldAddInappLog(true);
    ready.stage = Stage::shown;
    shown_ = true;
    onTheScreen_ = true;
    ready.fadeIn();
    observe(&PresentationObserver::shown, ready);
    if (!needs_.presented.templatesAreSetToBeHidden()) needs_.views.setOverlayVisible(true, kANIMATIONDURATION);
    inappSeenCallback_.performLater("-[OrbinelInapp performInappSeenCallback]",
                                    Dictionary{{"type", inappSeenType}, {"data", ready.identity()}});
    needs_.reports.log(LogType::inapp, LogLevel::error, "Inapp has been shown.");
}

/// The message stays as it is, but makes way for the next one.
void InappPresentation::giveUp() {
    makeInappVisibleBlock_.cancel();
    template_->stage = Stage::givenUp;
    onTheScreen_ = false;
}

// --- Removing ---

void InappPresentation::removeInapp(std::function<void()> completion) noexcept {
    removeCurrent("-[OrbinelInapp removeInapp:]", std::move(completion));
}

void InappPresentation::removeInappWithCompletionHandler(Completion completion) noexcept {
    removeCurrent("-[OrbinelInapp removeInappWithCompletionHandler:]", std::move(completion));
}

void InappPresentation::removeInappSilently() noexcept {
    onMain("-[OrbinelInapp removeInappSilently]", [this] {
        if (template_ == nullptr) return;
        logRemoval(needs_.reports, "removeInappSilently method");
        needs_.reports.log(LogType::inapp, LogLevel::info, "Inapp has been removed silently");
        removeInapp({});
    });
}

void InappPresentation::removeInappOnProductPage() noexcept {
    onMain("-[OrbinelInapp removeInappOnProductPage:]", [this] {
        const auto active = needs_.presented.activeInapp();
        const bool handedOver = active != nullptr && (*active)["trigger"] == Value(productPage);
        if (handedOver || (template_ != nullptr && (*template_->record)["trigger"] == Value(productPage))) {
            removeInapp({});
        }
    });
}

void InappPresentation::cancelScheduledInapps() noexcept {
    ++cancellations_;
    onMain("-[OrbinelInapp cancelScheduledInapps]", [this] {
        makeInappVisibleBlock_.cancel();
        if (template_ != nullptr && template_->stage != Stage::shown) removeInapp({});
    });
}

void InappPresentation::removeCurrent(const char* operation, std::function<void()> completion) {
    onMain(operation, [this, completion = std::move(completion)]() mutable {
        ++cancellations_;
        makeInappVisibleBlock_.cancel();
        if (auto* detector = shakeDetector.get()) detector->destroyShakeDetector();
        if (template_ == nullptr) {
            needs_.presented.clear();
            if (completion) completion();
            return;
        }
        if (completion) removalCompletions_.push_back(std::move(completion));
        if (template_->stage != Stage::leaving) removeInappFromView();
    });
}

void InappPresentation::removeInappFromView() {
    keyboardPusher_.unregisterForInAppPusherKeyboardNotifications();
    movement_.cancel();
    template_->stage = Stage::leaving;
    shown_ = false;
    template_->fadeOut(needs_.lifetime.whileAlive([this, leaving = template_.get()] {
        if (template_.get() == leaving) finishRemoval();
    }));
}

void InappPresentation::finishRemoval() {
    const auto gone = std::move(template_);
    const auto completions = std::exchange(removalCompletions_, {});
    makeInappVisibleBlock_.cancel();
    movement_.cancel();
    shown_ = false;
    onTheScreen_ = false;
    waitsForBrowser_ = false;
    loadLimit_.cancel();
    needs_.presented.clear(gone->record);
    // The page may have started it anew while it faded.
    if (auto* detector = shakeDetector.get(); detector != nullptr && detector->isObserving()) {
        detector->destroyShakeDetector();
    }

    observe(&PresentationObserver::removed, *gone);
    gone->takeDown();
    gone->webView->removeFromSuperview();
    gone->webView.reset();
    for (const auto& completion : completions) {
        guarded(needs_.reports, "-[OrbinelInapp removeInappFromView:]", [&] { completion(); });
    }
}

/// The message's close button.
void InappPresentation::closeWebViewPage() {
    InappButton button;
    button.tag = kCloseButtonDismissControlTag;
    if (auto* clicks = buttonClicks.get()) clicks->inappButtonClicked(button);
}

// --- What the page tells ---

NavigationPolicy InappPresentation::decidePolicyForNavigationAction(const platform::NavigationAction& action) {
    if (action.url.find(ownScheme) != std::string::npos) {
        if (auto* told = page.get()) told->processCustomScreenClicks(action.url);
        return NavigationPolicy::cancel;
    }
    if (!action.linkActivated) {
        if (isWebUrl(action.url) || action.url.starts_with("about:")) return NavigationPolicy::allow;
        return refuseFrame(action.url);  // data: and the like, which some engines show without waiting for an answer
    }
    if (int32Of(needs_.presented.content()["type"]) != kCUSTOMSREEN) {
        InappButton banner;
        banner.tag = kBANNERCLICKED;
        if (auto* clicks = buttonClicks.get()) clicks->inappButtonClicked(banner);
    }
    if (auto* opening = urlOpening.get()) opening->openUrl(action.url, {});
    return NavigationPolicy::cancel;
}

NavigationPolicy InappPresentation::decidePolicyForNavigationResponse(const platform::NavigationResponse& response) {
    if (template_ == nullptr) return NavigationPolicy::cancel;
    const auto origin = originOf(response.url);
    if (!response.mainFrame) {
        return origin == template_->origin ? NavigationPolicy::allow : refuseFrame(response.url);
    }
    if (response.status.value_or(0) >= firstFailedStatus) {
        if (!template_->loaded) {
            requestFailed(*template_->record, "HTTP status " + std::to_string(*response.status));
            giveUp();
        }
        return NavigationPolicy::cancel;
    }
    template_->origin = origin;  // where a redirect has led
    return NavigationPolicy::allow;
}

/// Whatever stands in it could speak to the library in the page's name.
NavigationPolicy InappPresentation::refuseFrame(const std::string& url) {
    needs_.reports.log(LogType::inapp, LogLevel::error, "A frame of another origin is refused.", [&] {
        return Dictionary{{"url", url.substr(0, longestLoggedUrl)}};
    });
    return NavigationPolicy::cancel;
}

void InappPresentation::didFinishNavigation() {
    if (template_ == nullptr || template_->stage != Stage::loading) return;
    constexpr std::chrono::seconds second{1};
    const auto mainDelay = std::max(template_->layout.delay, 0);
    needs_.reports.log(LogType::inapp, LogLevel::info, "Webview delay received.", [&] {
        return Dictionary{{"requestedDelay", std::to_string(mainDelay)}};
    });
    loadLimit_.cancel();
    template_->loaded = true;
    template_->stage = Stage::delayed;
    makeInappVisibleBlock_ =
        needs_.scheduler.postMainAfter(mainDelay * second, needs_.lifetime.whileAlive([this] { showInapp(); }));
}

void InappPresentation::didFailNavigation(const platform::LoadFailure& failure) {
    const bool ofLoading = failure.domain == platform::LoadFailure::urlLoading;
    if (!failure.provisional) {
        needs_.reports.log(LogType::inapp, LogLevel::info, "Webview warning. didFailNavigation.", [&] {
            return Dictionary{{"errorDescription", failure.description}};
        });
    } else if (ofLoading) {
        const auto* kind = failure.code == platform::LoadFailure::secureConnectionFailed ? "SSL." : "Other.";
        needs_.reports.log(LogType::inapp, LogLevel::info,
                           "Webview warning. " + std::string(kind) + " " + std::to_string(failure.code));
    }
    if (template_ == nullptr || template_->stage != Stage::loading) return;
    requestFailed(*template_->record, failure.description);
    giveUp();
}

void InappPresentation::webContentProcessDidTerminate() {
    needs_.reports.log(LogType::inapp, LogLevel::info, "Webview warning. contentProcessDidTerminate.");
    if (template_ == nullptr) return;
    template_->loaded = false;
    if (template_->stage == Stage::loading || template_->stage == Stage::delayed) giveUp();
}

void InappPresentation::didReceiveScriptMessage(const Value& body) {
    if (!needs_.testDevices.isTestDevice()) return;
    needs_.console.writeLine(onOneLine("[ORBINEL][message]: " + textOf(body)));
}

void InappPresentation::requestFailed(const Dictionary& record, const std::string& reason) {
    logStatus(needs_.reports, InappStatus::requestFailed, [&] {
        auto attributes = inappIdentity(&record);
        attributes.set("reason", reason);
        return attributes;
    });
}

// --- What the page and the library ask ---

void InappPresentation::evaluateJavaScript(const std::string& script) noexcept {
    onMain("-[OrbinelInapp evaluateJavaScript:]", [this, script] {
        if (template_ == nullptr) return;
        template_->webView->evaluateJavaScript(script);
        if (auto* watching = observer.get()) watching->scriptEvaluated(script);
    });
}

void InappPresentation::adjustTemplate(const Dictionary& templateLayout) noexcept {
    onMain("-[OrbinelInapp adjustTemplate:]", [this, templateLayout] {
        const auto window = needs_.views.overlay();
        if (window == nullptr || template_ == nullptr || template_->stage == Stage::leaving) return;
        template_->adjust(templateLayout, *window);
        browser_.bringToFront();
        observeMoved(0);
    });
}

void InappPresentation::openBrowserUrl(const std::string& url) noexcept {
    onMain("-[OrbinelInapp openBrowserUrl:]", [this, url] {
        if (!browser_.openBrowserUrl(url)) return;
        if (auto* watching = observer.get()) watching->browserOpened(url);
    });
}

// --- The application's settings ---

void InappPresentation::setTemplateWindowHidden(bool hidden) {
    needs_.presented.setTemplatesAreSetToBeHidden(hidden);
    if (hidden && browser_.isOpen()) return;  // the browser's end hides it
    needs_.views.setOverlayVisible(!hidden, kANIMATIONDURATION);
}

void InappPresentation::showTemplateWindow() noexcept {
    onMain("-[OrbinelInapp showTemplateWindow]", [this] { setTemplateWindowHidden(false); });
}

void InappPresentation::hideTemplateWindow() noexcept {
    onMain("-[OrbinelInapp hideTemplateWindow]", [this] { setTemplateWindowHidden(true); });
}

void InappPresentation::enableInAppMessages() noexcept {
    onMain("+[Orbinel enableInAppMessages]", [this] {
        setTemplateWindowHidden(false);
        needs_.logging.logInAppMessageAction("enableInAppMessages");
    });
}

void InappPresentation::disableInAppMessages() noexcept {
    onMain("+[Orbinel disableInAppMessages]", [this] {
        setTemplateWindowHidden(true);
        needs_.logging.logInAppMessageAction("disableInAppMessages");
        if (template_ == nullptr || !onTheScreen_ || template_->stage == Stage::leaving) return;
        needs_.logging.logBlockedInAppMessage(*template_->record);
        removeInapp({});
        needs_.reports.log(LogType::inapp, LogLevel::info, "In-app messages disabled and removed.");
    });
}

void InappPresentation::setInappSeenCallback(TargetAction<const Dictionary&> callback) noexcept {
    guarded(needs_.reports, "-[OrbinelInapp setInappSeenCallback:withSelector:]",
            [&] { inappSeenCallback_.set(std::move(callback)); });
}

// --- Who watches ---

void InappPresentation::observe(void (PresentationObserver::*event)(const PresentedView&),
                                const TemplateView& current) {
    if (auto* watching = observer.get()) (watching->*event)(current.presented());
}

/// The message begins to move and will have arrived so many seconds later.
void InappPresentation::observeMoved(double seconds) {
    if (observer.get() == nullptr) return;
    const auto delay = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
    movement_ = needs_.scheduler.postMainAfter(delay, needs_.lifetime.whileAlive([this] {
        if (template_ != nullptr) observe(&PresentationObserver::moved, *template_);
    }));
}

}  // namespace orbinel
