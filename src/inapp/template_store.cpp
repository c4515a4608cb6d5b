#include "inapp/template_store.hpp"

#include <string>
#include <utility>

#include "base/guard.hpp"
#include "base/number_reading.hpp"
#include "base/value_content.hpp"
#include "inapp/template_values.hpp"

namespace orbinel {

namespace {

// Types of the application's callback.
constexpr std::int32_t purchaseType = 2;
constexpr std::int32_t cartType = 3;
constexpr std::int32_t customType = 4;

/// The dictionary that describes the action: its own, or else the object that it stands in.
const Dictionary& parametersOf(const Value& value, const Dictionary& actions) noexcept {
    const auto* own = value.ifDictionary();
    return own != nullptr ? *own : actions;
}

/// What stands under the key, where the value is a dictionary; else the value itself.
const Value& fieldOrSelf(const Value& value, std::string_view key) noexcept {
    const auto* fields = value.ifDictionary();
    return fields != nullptr ? (*fields)[key] : value;
}

}  // namespace

const std::array<OrbinelTemplateStore::Action, 20> OrbinelTemplateStore::actions{{
    {"send_click_data", &OrbinelTemplateStore::sendClickData},
    {"native", &OrbinelTemplateStore::performNative},
    {"native_reviews", &OrbinelTemplateStore::askForReview},
    {"copy", &OrbinelTemplateStore::copy},
    {"default_attributes", &OrbinelTemplateStore::setDefaultAttributes},
    {"event", &OrbinelTemplateStore::tagEvents},
    {"lead", &OrbinelTemplateStore::addLead},
    {"survey", &OrbinelTemplateStore::addSurvey},
    {"custom", &OrbinelTemplateStore::callPartner},
    {"item_purchase", &OrbinelTemplateStore::purchase},
    {"item_cart", &OrbinelTemplateStore::addToCart},
    {"input_begin", &OrbinelTemplateStore::beginInput},
    {"silent_dismiss", &OrbinelTemplateStore::dismissSilently},
    {"dismiss", &OrbinelTemplateStore::dismiss},
    {"retrieve_device_attributes", &OrbinelTemplateStore::sendDeviceAttributes},
    {"trigger_haptic_feedback", &OrbinelTemplateStore::triggerHapticFeedback},
    {"adjust_template", &OrbinelTemplateStore::adjustTemplate},
    {"internalUrl", &OrbinelTemplateStore::openInternally},
    {"externalUrl", &OrbinelTemplateStore::openExternally},
    {"init_shake_detector", &OrbinelTemplateStore::initShakeDetector},
}};

OrbinelTemplateStore::OrbinelTemplateStore(const Needs& needs)
    : reports_(needs.reports),
      events_(needs.events),
      attributes_(needs.attributes),
      products_(needs.products),
      answers_(needs.answers),
      messages_(needs.messages),
      nativeActions_(needs.nativeActions),
      shakes_(needs.shakes),
      urls_(needs.urls),
      presented_(needs.presented),
      lifetime_(needs.lifetime),
      json_(needs.json),
      notificationCentre_(needs.notificationCentre),
      callback_({needs.reports, needs.lifetime, needs.scheduler}) {}

void OrbinelTemplateStore::processTemplateStoreURL(const Dictionary& requested) noexcept {
    static constexpr auto operation = "+[OrbinelTemplateStore processTemplateStoreURL:]";
    reports_.feed("processTemplateStoreURL", [&] { return requested; });
    for (const auto& [key, perform] : actions) {
        const auto* value = requested.find(key);
        if (value == nullptr || !isPresent(*value)) continue;
        guarded(reports_, operation, [&, perform = perform] { (this->*perform)({*value, requested}); });
    }
}

// --- What the page reports ---

bool OrbinelTemplateStore::mayKeep(const Value& sent) {
    const bool may = presented_.mayKeep(sent);
    if (!may) reports_.note("Dropped what a page sent: the message has sent too much.");
    return may;
}

void OrbinelTemplateStore::sendClickData(const Request& request) {
    const auto* click = request.value.ifDictionary();
    if (click == nullptr) return reports_.note("Dropped a click of the page: it is no dictionary.");
    logging->addClickLog(*click);
}

/// Standard attributes are a list, or stand under the action's own name; custom ones under "attributes" beside them.
void OrbinelTemplateStore::setDefaultAttributes(const Request& request) {
    const auto* standard = fieldOrSelf(request.value, "default_attributes").ifArray();
    const auto* custom = parametersOf(request.value, request.actions)["attributes"].ifArray();
    if (standard != nullptr && mayKeep(*standard)) attributes_.setUserAttributesFromTemplate(*standard);
    if (custom != nullptr && mayKeep(*custom)) attributes_.setCustomAttributesFromTemplate(*custom);
}

void OrbinelTemplateStore::tagEvents(const Request& request) {
    const auto* list = fieldOrSelf(request.value, "events").ifArray();
    if (list != nullptr && mayKeep(*list)) events_.sendNotificationForEventBaseInapp(*list);
}

void OrbinelTemplateStore::addLead(const Request& request) { answers_.addLeadInput(request.value); }

void OrbinelTemplateStore::addSurvey(const Request& request) {
    const auto add = [&](const Value& value) {
        const auto* result = value.ifDictionary();
        if (result == nullptr) return reports_.note("Dropped a survey's answer: it is no dictionary.");
        answers_.addSurveyResult((*result)["question"], (*result)["answer"]);
    };
    const auto* several = request.value.ifArray();
    if (several == nullptr) return add(request.value);
    for (const auto& one : *several) add(one);
}

void OrbinelTemplateStore::purchase(const Request& request) {
    products_.purchase(request.value);
    callPartnerDelegate(purchaseType, Dictionary{{"purchased_items", fieldOrSelf(request.value, "purchased_items")}});
}

void OrbinelTemplateStore::addToCart(const Request& request) {
    products_.addToCart(request.value);
    callPartnerDelegate(cartType, Dictionary{{"cart_items", fieldOrSelf(request.value, "cart_items")}});
}

// --- The application's callback ---

void OrbinelTemplateStore::callPartner(const Request& request) { callPartnerDelegate(customType, request.value); }

void OrbinelTemplateStore::callPartnerDelegate(std::int32_t type, Value data) noexcept {
    static constexpr auto operation = "+[OrbinelTemplateStore callPartnerDelegate:data:]";
    guarded(reports_, operation, [&] {
        callback_.performLater(operation, Dictionary{{"type", type}, {"data", std::move(data)}});
    });
}

void OrbinelTemplateStore::setTemplateStoreCallback(ApplicationCallback::Action callback) noexcept {
    guarded(reports_, "+[OrbinelTemplateStore setTemplateStoreCallback:withSelector:]",
            [&] { callback_.set(std::move(callback)); });
}

// --- What the page asks of the device ---

void OrbinelTemplateStore::performNative(const Request& request) {
    nativeActions_.perform(request.value.stringOrEmpty());
}

void OrbinelTemplateStore::askForReview(const Request&) { nativeActions_.showNativeAppReview(); }

void OrbinelTemplateStore::copy(const Request& request) {
    nativeActions_.copy(template_values::textOf(request.value, json_));
}

void OrbinelTemplateStore::triggerHapticFeedback(const Request& request) {
    nativeActions_.triggerHapticFeedback(intValue(fieldOrSelf(request.value, "severity")).value_or(0));
}

void OrbinelTemplateStore::initShakeDetector(const Request&) {
    shakes_.startObservingWithCallback([this] { messages_.sendDataToTemplate(shakeMessage); });
}

void OrbinelTemplateStore::sendDeviceAttributes(const Request&) {
    messages_.sendDataToTemplate(deviceAttributesMessage);
}

void OrbinelTemplateStore::openInternally(const Request& request) {
    urls_.openInternally(request.value.stringOrEmpty(), *screen);
}

void OrbinelTemplateStore::openExternally(const Request& request) { urls_.openUrl(request.value.stringOrEmpty(), {}); }

// --- What becomes of the message ---

void OrbinelTemplateStore::adjustTemplate(const Request& request) {
    const auto* layout = request.value.ifDictionary();
    if (layout == nullptr) return reports_.note("Ignored a layout of the page: it is no dictionary.");
    screen->adjustTemplate(*layout);
}

void OrbinelTemplateStore::dismissSilently(const Request& request) {
    configureInappRemoval(parametersOf(request.value, request.actions), Removal::silent);
}

void OrbinelTemplateStore::dismiss(const Request& request) {
    const auto& silent = request.actions["silent_dismiss"];
    if (isPresent(silent) && silent.ifDictionary() == nullptr) return;  // whose parameter this is
    configureInappRemoval(parametersOf(request.value, request.actions), Removal::logged);
}

/// What is opened may take the person away: the message is removed once more after that, in case it stayed until then.
/// Another one that has taken its place stays.
void OrbinelTemplateStore::configureInappRemoval(const Dictionary& parameters, Removal removal) noexcept {
    guarded(reports_, "+[OrbinelTemplateStore configureInappRemoval:]", [&] {
        const auto asking = presented_.activeInapp();
        const auto& reason = parameters["dismiss"];
        if (removal == Removal::silent) {
            screen->removeInappSilently();
        } else if (isPresent(reason)) {
            logging->addInappLog(intValue(reason).value_or(0));
            screen->removeInapp({});
        }
        const auto* redirection = parameters["redirection"].ifString();
        if (redirection == nullptr) return;
        urls_.openUrl(*redirection, [this, asking] {
            if (presented_.activeInapp() == asking) screen->removeInapp({});
        });
    });
}

void OrbinelTemplateStore::beginInput(const Request&) {
    screen->textFieldBeginEditing();
    keyboardObservation_ =
        notificationCentre_.addObserver(platform::notification_names::keyboardWillHide,
                                        lifetime_.whileAlive([this](const Dictionary&) { onKeyboardHide(); }));
}

void OrbinelTemplateStore::onKeyboardHide() noexcept {
    guarded(reports_, "+[OrbinelTemplateStore onKeyboardHide:]", [&] {
        screen->textFieldEndEditing();
        keyboardObservation_.cancel();
    });
}

}  // namespace orbinel
