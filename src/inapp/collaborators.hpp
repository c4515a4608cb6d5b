#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "inapp/inapp_button.hpp"
#include "inapp/inapp_layout.hpp"
#include "orbinel/value.hpp"

/// What the objects of this folder need of one another where two of them need each other: exactly the operations that
/// are called, bound by core. None of them may be called with a lock held.
namespace orbinel {

/// What choosing a message asks of presenting it.
class InappPresenter {
public:
    virtual ~InappPresenter() = default;

    // Any thread: mirrored facts.
    [[nodiscard]] virtual bool isInAppOnTheScreen() const noexcept = 0;
    [[nodiscard]] virtual bool isOrientationPortrait() const noexcept = 0;

    /// Builds the message, which is the active one, on the main queue. Any thread.
    virtual void createInappAfterAppropriateDelaysWithType(const std::shared_ptr<const Dictionary>& inapp,
                                                           const InappLayout& layout) = 0;

    /// Shows what has been built, where there is something. Any thread: moved to the main queue where it is another.
    virtual void showInapp() = 0;
};

/// What the page's actions, and what closes a message, ask of presenting it. Main thread, where nothing else is said.
class InappScreen {
public:
    virtual ~InappScreen() = default;

    /// Removes the message, where there is one, and calls the completion afterwards, in any case; it may be empty.
    virtual void removeInapp(std::function<void()> completion) = 0;

    /// Removes the message without a closing log.
    virtual void removeInappSilently() = 0;

    /// Runs a script in the page of the message; nothing without one.
    virtual void evaluateJavaScript(const std::string& script) = 0;

    /// Lays the message out anew: keys of "template_layout" that replace those of the record.
    virtual void adjustTemplate(const Dictionary& templateLayout) = 0;

    /// Opens a page over the application, in the library's own browser. The URL has been checked.
    virtual void openBrowserUrl(const std::string& url) = 0;

    // A text field of the page is being edited, and no more.
    virtual void textFieldBeginEditing() = 0;
    virtual void textFieldEndEditing() = 0;
};

/// URLs that a page may have opened: none but http, https, mailto, tel and the application's own schemes.
class UrlOpening {
public:
    virtual ~UrlOpening() = default;

    /// Opens the URL outside the application; the completion, which may be empty, is called afterwards, also for a URL
    /// that is refused. Any thread: moved to the main queue.
    virtual void openUrl(const std::string& url, std::function<void()> completion) = 0;
};

/// What is done when a button of a message is pressed.
class InappButtonClicks {
public:
    virtual ~InappButtonClicks() = default;
    virtual void inappButtonClicked(const InappButton& button) = 0;
};

/// What the page says.
class TemplatePage {
public:
    virtual ~TemplatePage() = default;
    /// A navigation to a URL that contains "orbinelurl://". Main thread.
    virtual void processCustomScreenClicks(std::string_view url) = 0;
};

/// What is recorded of a message. Any thread.
class InappLogging {
public:
    virtual ~InappLogging() = default;

    /// The message closes, for this reason.
    virtual void addInappLog(std::int32_t dismissType) = 0;

    /// A message for the control group is closed without ever having been shown, or active.
    virtual void addControlGroupLog(const Dictionary& inapp) = 0;

    /// The page reports a click, in its own words.
    virtual void addClickLog(const Dictionary& click) = 0;

    virtual void logBlockedInAppMessage(const Dictionary& inapp) = 0;
    virtual void logInAppMessageAction(std::string_view action) = 0;
};

/// The detector of shakes, as far as a message that closes is concerned with it.
class InappShakeDetector {
public:
    virtual ~InappShakeDetector() = default;
    virtual void destroyShakeDetector() = 0;
    [[nodiscard]] virtual bool isObserving() const noexcept = 0;  // main thread
};

}  // namespace orbinel
