#include "inapp/template_messages.hpp"

#include "base/guard.hpp"
#include "inapp/inapp_status.hpp"
#include "inapp/script_call.hpp"

namespace orbinel {

TemplateMessages::TemplateMessages(const Needs& needs)
    : reports_(needs.reports), session_(needs.session), json_(needs.json), presented_(needs.presented) {}

void TemplateMessages::sendDataToTemplate(std::int32_t messageType) noexcept {
    guarded(reports_, "-[OrbinelInapp sendDataToTemplate:]", [&] {
        if (messageType == deviceAttributesMessage) return sendSession();
        if (messageType == shakeMessage) return sendShake();
        reports_.note("Ignored a message to the page: its type is unknown.");
    });
}

void TemplateMessages::sendSession() {
    const auto text = session_.dictToJson(session_.describeNow());
    if (!session_.isValidJSONString(text)) {
        reports_.log(LogType::attributes, LogLevel::error, "Invalid JSON detected before JS creation.", [&] {
            return Dictionary{{"stopJSON", text}};
        });
    }
    screen->evaluateJavaScript(sdkCallbackMethod(deviceAttributesMessage, text));
}

void TemplateMessages::sendShake() {
    const auto text = json_.serialise(Dictionary{{"shake_detected", true}}, platform::JsonStyle::compact);
    screen->evaluateJavaScript(sdkCallbackMethod(shakeMessage, text.value_or("{}")));
    if (const auto inapp = presented_.activeInapp()) {
        logStatus(reports_, InappStatus::shakeDetected, [&] { return inappIdentity(inapp.get()); });
    }
}

}  // namespace orbinel
