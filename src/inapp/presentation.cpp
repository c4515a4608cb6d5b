#include "inapp/presentation.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

#include "base/guard.hpp"
#include "inapp/inapp_status.hpp"
#include "inapp/view_tags.hpp"

namespace orbinel {

using Stage = TemplateView::Stage;

namespace {

constexpr std::string_view productPage = "product_detail_page_view";
constexpr std::int32_t inappSeenType = 5;  // among the types of the application's callback

}  // namespace

InappPresentation::InappPresentation(const Needs& needs)
    : needs_(needs),
      mainThread_({needs.reports, needs.lifetime, needs.scheduler}),
      inappSeenCallback_({needs.reports, needs.lifetime, needs.scheduler}),
      navigation_({needs.reports, needs.testDevices, needs.presented, needs.lifetime, needs.scheduler, needs.console,
                   page, buttonClicks, urlOpening}),
      builder_({needs.reports, needs.helper, needs.identity, needs.presented, needs.lifetime, needs.json,
                needs.application, needs.views, navigation_, pageSettings, buttonClicks}),
      keyboardPusher_({needs.lifetime, needs.notificationCentre}),
      browser_({needs.reports, needs.lifetime, needs.scheduler, needs.views, urlOpening}) {
    navigation_.finished = [this] { waitForDelay(); };
    navigation_.givenUp = [this] { giveUp(); };
    navigation_.processEnded = [this] { stopShakeDetector(); };
    browser_.closed = [this] {
        if (needs_.presented.templatesAreSetToBeHidden()) needs_.views.setOverlayVisible(false, 0);
        if (std::exchange(waitsForBrowser_, false)) showInapp();
    };
}

InappPresentation::~InappPresentation() = default;

// --- Building ---

void InappPresentation::createInappAfterAppropriateDelaysWithType(const PresentedInapp::Record& inapp,
                                                                  const InappLayout& layout) noexcept {
    needs_.scheduler.postMain(needs_.lifetime.whileAlive([this, inapp, layout, asOf = cancellations_.load()] {
        guarded(needs_.reports, {"OrbinelInapp - inAppViewCreate", DescriptionForm::nameOnly}, [&] {
            if (asOf == cancellations_) build(inapp, layout);
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

    auto made = builder_.prepare(record, layout);
    if (made == nullptr || !putUp(std::move(made))) needs_.presented.clear(record);
}

/// Puts the message into the window and asks for its page; false where it cannot be shown, or was removed meanwhile.
bool InappPresentation::putUp(std::unique_ptr<TemplateView> made) {
    const auto asOf = cancellations_.load();
    removeEarlierViews();
    builder_.createInAppWithWebView(*made);
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
    navigation_.load(*template_);
    observe(&PresentationObserver::built, *template_);
    return true;
}

void InappPresentation::removeEarlierViews() {
    if (template_ == nullptr) return;
    logRemoval(needs_.reports, "inAppViewCreate method");
    keyboardPusher_.unregisterForInAppPusherKeyboardNotifications();
    finishRemoval();
}

// --- Loading ---

void InappPresentation::waitForDelay() {
    constexpr std::chrono::seconds second{1};
    const auto mainDelay = std::max(template_->layout.delay, 0);
    needs_.reports.log(LogType::inapp, LogLevel::info, "Webview delay received.", [&] {
        return Dictionary{{"requestedDelay", std::to_string(mainDelay)}};
    });
    template_->stage = Stage::delayed;
    makeInappVisibleBlock_ =
        needs_.scheduler.postMainAfter(mainDelay * second, needs_.lifetime.whileAlive([this] { showInapp(); }));
}

/// The message stays as it is, but makes way for the next one.
void InappPresentation::giveUp() {
    makeInappVisibleBlock_.cancel();
    template_->stage = Stage::givenUp;
    onTheScreen_ = false;
    stopShakeDetector();
}

/// It may have been started by a page that is not shown, or not any more.
void InappPresentation::stopShakeDetector() {
    auto* detector = shakeDetector.get();
    if (detector != nullptr && detector->isObserving()) detector->destroyShakeDetector();
}

// --- Showing ---

void InappPresentation::showInapp() noexcept {
    mainThread_.run({"OrbinelInapp - showInapp", DescriptionForm::nameOnly}, [this] { showBuilt(); });
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

// --- Removing ---

void InappPresentation::removeInapp(std::function<void()> completion) noexcept {
    removeCurrent("-[OrbinelInapp removeInapp:]", std::move(completion));
}

void InappPresentation::removeInappWithCompletionHandler(Completion completion) noexcept {
    removeCurrent("-[OrbinelInapp removeInappWithCompletionHandler:]", std::move(completion));
}

void InappPresentation::removeInappSilently() noexcept {
    mainThread_.run("-[OrbinelInapp removeInappSilently]", [this] {
        if (template_ == nullptr) return;
        (void)needs_.presented.takeShouldAddInappLog();  // nor while it fades
        logRemoval(needs_.reports, "removeInappSilently method");
        needs_.reports.log(LogType::inapp, LogLevel::info, "Inapp has been removed silently");
        removeInapp({});
    });
}

void InappPresentation::removeInappOnProductPage() noexcept {
    mainThread_.run("-[OrbinelInapp removeInappOnProductPage:]", [this] {
        const auto active = needs_.presented.activeInapp();
        const bool handedOver = active != nullptr && (*active)["trigger"] == Value(productPage);
        if (handedOver || (template_ != nullptr && (*template_->record)["trigger"] == Value(productPage))) {
            removeInapp({});
        }
    });
}

void InappPresentation::cancelScheduledInapps() noexcept {
    ++cancellations_;
    mainThread_.run("-[OrbinelInapp cancelScheduledInapps]", [this] {
        makeInappVisibleBlock_.cancel();
        if (template_ != nullptr && template_->stage != Stage::shown) removeInapp({});
    });
}

void InappPresentation::removeCurrent(const char* operation, std::function<void()> completion) {
    mainThread_.run(operation, [this, completion = std::move(completion)]() mutable {
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
    navigation_.end();
    const auto completions = std::exchange(removalCompletions_, {});
    makeInappVisibleBlock_.cancel();
    movement_.cancel();
    shown_ = false;
    onTheScreen_ = false;
    waitsForBrowser_ = false;
    needs_.presented.clear(gone->record);
    stopShakeDetector();  // the page may have started it anew while it faded

    observe(&PresentationObserver::removed, *gone);
    gone->takeDown();
    gone->webView->removeFromSuperview();
    gone->webView.reset();
    for (const auto& completion : completions) {
        guarded(needs_.reports, "-[OrbinelInapp removeInappFromView:]", [&] { completion(); });
    }
}

// --- What the page and the library ask ---

void InappPresentation::evaluateJavaScript(const std::string& script) noexcept {
    mainThread_.run("-[OrbinelInapp evaluateJavaScript:]", [this, script] {
        if (template_ == nullptr) return;
        template_->webView->evaluateJavaScript(script);
        if (auto* watching = observer.get()) watching->scriptEvaluated(script);
    });
}

void InappPresentation::adjustTemplate(const Dictionary& templateLayout) noexcept {
    mainThread_.run("-[OrbinelInapp adjustTemplate:]", [this, templateLayout] {
        const auto window = needs_.views.overlay();
        if (window == nullptr || template_ == nullptr || template_->stage == Stage::leaving) return;
        template_->adjust(templateLayout, *window);
        browser_.bringToFront();
        observeMoved(0);
    });
}

void InappPresentation::openBrowserUrl(const std::string& url) noexcept {
    mainThread_.run("-[OrbinelInapp openBrowserUrl:]", [this, url] {
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
    mainThread_.run("-[OrbinelInapp showTemplateWindow]", [this] { setTemplateWindowHidden(false); });
}

void InappPresentation::hideTemplateWindow() noexcept {
    mainThread_.run("-[OrbinelInapp hideTemplateWindow]", [this] { setTemplateWindowHidden(true); });
}

void InappPresentation::enableInAppMessages() noexcept {
    mainThread_.run("+[Orbinel enableInAppMessages]", [this] {
        setTemplateWindowHidden(false);
        needs_.logging.logInAppMessageAction("enableInAppMessages");
    });
}

void InappPresentation::disableInAppMessages() noexcept {
    mainThread_.run("+[Orbinel disableInAppMessages]", [this] {
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
