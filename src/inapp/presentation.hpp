#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/late.hpp"
#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "inapp/application_callback.hpp"
#include "inapp/collaborators.hpp"
#include "inapp/internal_browser.hpp"
#include "inapp/keyboard_pusher.hpp"
#include "inapp/main_thread.hpp"
#include "inapp/page_navigation.hpp"
#include "inapp/page_settings.hpp"
#include "inapp/presentation_observer.hpp"
#include "inapp/presented_inapp.hpp"
#include "inapp/template_builder.hpp"
#include "inapp/template_view.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/console.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/notification_centre.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/platform/views.hpp"
#include "session/helper.hpp"
#include "tools/test_devices.hpp"
#include "user/displayed_inapp.hpp"
#include "user/identity.hpp"

namespace orbinel {

/// Puts the one message on the screen and takes it away again. How it is made is for `TemplateBuilder`, what its page
/// does for `PageNavigation`.
///
/// A message is built (invisible, its page loading), then waits for its delay, then is shown, then removed. One whose
/// page failed, or whose moment came in the background, stays as it is but counts no longer as being on the screen:
/// the next one that is built takes its place.
///
/// Threads: as each operation says; "any" means that the work is done on the main queue, at once where the caller is
/// the main thread. View work is the main thread's alone.
class InappPresentation final : public InappPresenter, public InappScreen, public DisplayedInapp {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelIdentity& identity;
        const TestDevices& testDevices;
        PresentedInapp& presented;
        InappLogging& logging;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
        platform::Json& json;
        platform::Console& console;
        platform::NotificationCentre& notificationCentre;
        platform::Application& application;
        platform::Views& views;
    };

    explicit InappPresentation(const Needs& needs);
    ~InappPresentation() override;

    Late<TemplatePage> page;
    Late<InappButtonClicks> buttonClicks;
    Late<UrlOpening> urlOpening;
    Late<InappShakeDetector> shakeDetector;
    Late<PresentationObserver> observer;

    // --- Showing. Any thread. ---

    [[nodiscard]] bool isInAppOnTheScreen() const noexcept override { return onTheScreen_; }
    [[nodiscard]] bool isOrientationPortrait() const noexcept override { return needs_.application.isPortrait(); }
    void createInappAfterAppropriateDelaysWithType(const PresentedInapp::Record& inapp,
                                                   const InappLayout& layout) noexcept override;
    void showInapp() noexcept override;

    // --- Removing. ---

    void removeInapp(std::function<void()> completion) noexcept override;
    void removeInappSilently() noexcept override;
    /// Any thread.
    void removeInappWithCompletionHandler(Completion completion) noexcept override;
    /// Removes a message that the view of a product brought up. Any thread.
    void removeInappOnProductPage() noexcept;
    /// Nothing that has been handed over is shown any more. Any thread.
    void cancelScheduledInapps() noexcept;

    // --- What the page and the library ask. Main thread. ---

    void evaluateJavaScript(const std::string& script) noexcept override;
    void adjustTemplate(const Dictionary& templateLayout) noexcept override;
    void openBrowserUrl(const std::string& url) noexcept override;
    void textFieldBeginEditing() noexcept override { textFieldIsEditing_ = true; }
    void textFieldEndEditing() noexcept override { textFieldIsEditing_ = false; }
    [[nodiscard]] bool textFieldIsEditing() const noexcept { return textFieldIsEditing_; }
    [[nodiscard]] bool isInappShowing() const noexcept { return shown_; }

    // --- The application's settings. Any thread. ---

    void showTemplateWindow() noexcept;
    void hideTemplateWindow() noexcept;
    void reenableTemplates() noexcept { showTemplateWindow(); }
    void disableTemplates() noexcept { hideTemplateWindow(); }
    void enableInAppMessages() noexcept;
    void disableInAppMessages() noexcept;

    void setInappSeenCallback(ApplicationCallback::Action callback) noexcept;
    PageSettings pageSettings;

private:
    // Building.
    void build(const PresentedInapp::Record& record, const InappLayout& layout);
    [[nodiscard]] bool putUp(std::unique_ptr<TemplateView> made);
    void removeEarlierViews();

    // Loading.
    void waitForDelay();
    void giveUp();
    void stopShakeDetector();

    // Showing.
    void showBuilt();
    void reveal(TemplateView& ready);

    // Removing.
    void removeCurrent(const char* operation, std::function<void()> completion);
    void removeInappFromView();
    void finishRemoval();

    void setTemplateWindowHidden(bool hidden);
    void observe(void (PresentationObserver::*event)(const PresentedView&), const TemplateView& current);
    void observeMoved(double seconds);

    // Guard themselves.
    const Needs needs_;
    const MainThread mainThread_;
    ApplicationCallback inappSeenCallback_;

    // Mirrored for other threads.
    std::atomic<bool> onTheScreen_{false};
    std::atomic<std::uint64_t> cancellations_{0};  // a build that was handed over before the last one is left

    // The main thread's.
    PageNavigation navigation_;
    TemplateBuilder builder_;
    KeyboardPusher keyboardPusher_;
    InternalBrowser browser_;
    std::unique_ptr<TemplateView> template_;
    platform::Ticket makeInappVisibleBlock_;
    platform::Ticket movement_;
    bool waitsForBrowser_ = false;  // the message is due, and only the browser is before it
    bool shown_ = false;
    bool textFieldIsEditing_ = false;
    std::vector<std::function<void()>> removalCompletions_;
};

}  // namespace orbinel
