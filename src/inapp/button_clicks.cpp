#include "inapp/button_clicks.hpp"

#include <cstdint>
#include <optional>
#include <utility>

#include "base/guard.hpp"
#include "base/number_reading.hpp"
#include "inapp/inapp_status.hpp"
#include "inapp/template_values.hpp"

namespace orbinel {

namespace {

constexpr std::int32_t buttonClickType = 1;  // of the application's callback

enum class NativeButtonAction : std::int32_t { copy = 0, openSettings = 1, registerPush = 2, openUrl = 3 };

bool isNative(const InappButton& button) noexcept {
    return !button.accessibilityValue.empty() && !button.accessibilityLanguage.empty() &&
           !button.accessibilityIdentifier.empty();
}

}  // namespace

ButtonClicks::ButtonClicks(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      attributes_(needs.attributes),
      nativeActions_(needs.nativeActions),
      urls_(needs.urls),
      json_(needs.json),
      callback_({needs.reports, needs.lifetime, needs.scheduler}) {}

void ButtonClicks::inappButtonClicked(const InappButton& button) noexcept {
    guarded(reports_, "-[OrbinelInapp inappButtonClicked:]", [&] {
        close(button);
        if (!isNative(button)) return;
        performNativeAction(button);
        deliverPayload(button.accessibilityIdentifier);
        setAttributes(button.accessibilityLanguage);
    });
}

void ButtonClicks::setInappButtonClickCallback(ApplicationCallback::Action callback) noexcept {
    guarded(reports_, "-[OrbinelInapp setInappButtonClickCallback:withSelector:]",
            [&] { callback_.set(std::move(callback)); });
}

/// By its tag: the tag of the close button stands for the same reason as a click, which leaves the message where it is.
void ButtonClicks::close(const InappButton& button) {
    const bool isCloseButton = button.tag == kCloseButtonDismissControlTag;
    logging->addInappLog(isCloseButton ? kCloseButtonDismissValue : button.tag);
    if (button.tag == kBANNERCLICKED) return;
    // Of the control group nothing is on the screen, and what has been handed over is another message.
    if (button.tag != kDISSMISSTYPECONTROL) screen->removeInapp({});
    logRemoval(reports_, "inappButtonClicked method");
}

void ButtonClicks::performNativeAction(const InappButton& button) {
    switch (static_cast<NativeButtonAction>(intValue(button.accessibilityHint).value_or(0))) {
        case NativeButtonAction::copy:
            return nativeActions_.copy(button.accessibilityLabel);
        case NativeButtonAction::openSettings:
            return nativeActions_.openSettings();
        case NativeButtonAction::registerPush:
            return nativeActions_.registerPush();
        case NativeButtonAction::openUrl:
            return urls_.openUrl(button.accessibilityLabel, {});
    }
    reports_.note("Ignored the action of a native button: its type is unknown.");
}

void ButtonClicks::deliverPayload(const std::string& text) {
    auto payload = convertStringToDictionary(text);
    if (!payload) return;
    remoteNotifications->setDictionaryToDelegate(*payload);
    callback_.performLater("-[OrbinelInapp performInappButtonClickCallback]",
                           Dictionary{{"type", buttonClickType}, {"data", std::move(*payload)}});
}

/// The user is fetched once: each fetching empties the attributes.
void ButtonClicks::setAttributes(const std::string& text) {
    const auto attributes = convertStringToDictionary(text);
    if (!attributes) return;
    if (helper_.shouldProceed()) attributes_.initUser();
    for (const auto& [name, value] : *attributes) {
        attributes_.setCustomAttributeWithString(name, template_values::textOf(value, json_));
    }
}

std::optional<Dictionary> ButtonClicks::convertStringToDictionary(const std::string& text) const {
    auto parsed = json_.parse(text);
    auto* value = std::get_if<Value>(&parsed);
    auto* dictionary = value != nullptr ? value->ifDictionary() : nullptr;
    return dictionary != nullptr ? std::optional(std::move(*dictionary)) : std::nullopt;
}

}  // namespace orbinel
