#pragma once

#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "inapp/button_clicks.hpp"
#include "inapp/template_bridge.hpp"
#include "push/push_permission.hpp"
#include "support/library_test.hpp"

namespace orbinel::testing {

/// Keeps what the page brings about elsewhere, in its order.
class KeptEffects final : public InappScreen, public InappLogging, public RemoteNotificationDelivery {
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
    void logBlockedInAppMessage(const Dictionary&) override {}
    void logInAppMessageAction(std::string_view) override {}
    void setDictionaryToDelegate(const Dictionary& payload) noexcept override {
        keep("delegate " + payload["aps"].stringOrEmpty());
    }

    std::vector<std::string> taken() { return std::exchange(effects_, {}); }

private:
    void keep(std::string effect) { effects_.push_back(std::move(effect)); }
    std::vector<std::string> effects_;
};

/// The bridge and all that it drives, beside a running library.
struct Bridge {
    explicit Bridge(World& world) : world_(world) {
        native.pushPermission.bind(push);
        for (auto* screen : {&messages.screen, &store.screen, &buttons.screen}) screen->bind(effects);
        for (auto* logging : {&store.logging, &buttons.logging}) logging->bind(effects);
        buttons.remoteNotifications.bind(effects);
        events.addObserverForEventInapps();
    }

    /// A navigation of the page with this payload, as "encodeURIComponent" writes it.
    void say(const std::string& json) {
        std::string url = "orbinelurl://";
        for (const char c : json) {
            std::array<char, 4> escape{};
            std::snprintf(escape.data(), escape.size(), "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
            url += escape.data();
        }
        page.processCustomScreenClicks(url);
    }

    World& world_;
    const platform::Services& services = world_.services;
    KeptEffects effects;
    PresentedInapp presented;
    PushPermission push{
        {world_.reports, world_.helper, world_.ownLifetime, *services.scheduler, *services.notifications}};
    NativeActions native{{world_.reports, world_.helper, world_.ownLifetime, *services.scheduler, *services.application,
                          *services.notifications, *services.reviewPrompt, *services.pasteboard, *services.haptics}};
    UrlOpener urls{{world_.reports, world_.ownLifetime, *services.scheduler, *services.application}};
    ShakeDetector shakes{{world_.reports, world_.ownLifetime, *services.scheduler, *services.accelerometer}};
    TemplateMessages messages{{world_.reports, world_.session, *services.json, presented}};
    TemplateEvents events{{world_.reports, world_.helper, world_.eventRecorder, presented, world_.ownLifetime,
                           *services.json, *services.scheduler, *services.notificationCentre}};
    TemplateAttributes attributes{{world_.reports, world_.userAttributes, *services.json, *services.scheduler}};
    TemplateProducts products{{world_.reports, world_.productCreation, world_.cartReminder, presented, *services.json}};
    TemplateAnswers answers{{world_.reports, world_.session, presented, *services.json}};
    OrbinelTemplateStore store{{world_.reports, events, attributes, products, answers, messages, native, shakes, urls,
                                presented, world_.ownLifetime, *services.json, *services.scheduler,
                                *services.notificationCentre}};
    ButtonClicks buttons{{world_.reports, world_.helper, world_.userAttributes, native, urls, world_.ownLifetime,
                          *services.json, *services.scheduler}};
    TemplateBridge page{{world_.reports, store, *services.json}};
};

/// Keeps what the application's callbacks are told.
struct KeptCallbacks {
    void take(const Dictionary& info) { told.push_back(info); }
    std::vector<Dictionary> told;
};

}  // namespace orbinel::testing
