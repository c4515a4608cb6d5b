#pragma once

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "inapp/collaborators.hpp"
#include "support/library_test.hpp"

namespace orbinel::testing {

/// Puts another target in the place of the running library's own.
template <typename Interface>
void rebind(Late<Interface>& late, std::type_identity_t<Interface>& other) {
    late.unbind();
    late.bind(other);
}

/// Stands for all that a message, its page and its buttons reach elsewhere, and keeps what they bring about, in order.
class KeptEffects final : public InappScreen,
                          public InappLogging,
                          public TemplatePage,
                          public InappButtonClicks,
                          public UrlOpening,
                          public InappShakeDetector,
                          public RemoteNotificationDelivery {
public:
    void removeInapp(std::function<void()> completion) override {
        keep("remove");
        if (completion) completion();
    }
    void removeInappSilently() override { keep("remove silently"); }
    void evaluateJavaScript(const std::string& script) override { keep(script); }
    void adjustTemplate(const Dictionary& layout) override { keep("adjust " + std::to_string(layout.size())); }
    void openBrowserUrl(const std::string& url) override { keep("browser " + url); }
    void textFieldBeginEditing() override { keep("begin editing"); }
    void textFieldEndEditing() override { keep("end editing"); }
    void addInappLog(std::int32_t dismissType) override { keep("close " + std::to_string(dismissType)); }
    void addControlGroupLog(const Dictionary&) override {}
    void addClickLog(const Dictionary& click) override { keep("click " + click["button"].stringOrEmpty()); }
    void logBlockedInAppMessage(const Dictionary& inapp) override {
        keep("blocked " + inappFieldText(inapp, "inapp_id"));
    }
    void logInAppMessageAction(std::string_view action) override { keep(std::string(action)); }
    void processCustomScreenClicks(std::string_view url) override { keep(std::string(url)); }
    void inappButtonClicked(const InappButton& button) override { keep("button " + std::to_string(button.tag)); }
    void openUrl(const std::string& url, std::function<void()>) override { keep("open " + url); }
    void destroyShakeDetector() override {
        ++detectorsDestroyed;
        observing = false;
    }
    bool isObserving() const noexcept override { return observing; }
    void setDictionaryToDelegate(const Dictionary& payload) noexcept override {
        keep("delegate " + payload["aps"].stringOrEmpty());
    }

    /// What was kept since it was last taken.
    std::vector<std::string> taken() { return std::exchange(effects_, {}); }

    int detectorsDestroyed = 0;
    bool observing = false;

private:
    void keep(std::string effect) { effects_.push_back(std::move(effect)); }
    std::vector<std::string> effects_;
};

/// Keeps what the application's callbacks are told.
struct KeptCallbacks {
    void take(const Dictionary& info) { told.push_back(info); }
    std::vector<Dictionary> told;
};

}  // namespace orbinel::testing
