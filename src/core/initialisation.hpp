#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/lifetime.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "core/lifecycle.hpp"
#include "inapp/frequency_cap.hpp"
#include "inapp/presentation.hpp"
#include "inapp/template_events.hpp"
#include "orbinel/platform/notification_centre.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "personalisation/content_optimizer.hpp"
#include "personalisation/smart_recommendations.hpp"
#include "privacy/consent.hpp"
#include "push/interception.hpp"
#include "push/push.hpp"
#include "session/endpoints.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"
#include "session/session_start.hpp"
#include "session/session_stop.hpp"
#include "tools/auto_integration.hpp"
#include "tools/integration_wizard.hpp"
#include "user/identity.hpp"
#include "user/user_attributes.hpp"

namespace orbinel {

/// Initialises the library and switches it to another partner name.
///
/// Threads: called on the application's main thread; the later steps of a switch run wherever the answers come.
class Initialisation {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelEndpoints& endpoints;
        OrbinelSession& session;
        SessionStop& stop;
        OrbinelConfig& start;
        OrbinelPrivacy& privacy;
        OrbinelUserInternal& user;
        OrbinelIdentity& identity;
        AutoIntegration& automaticIntegration;
        IntegrationWizard& wizard;
        OrbinelContentOptimizer& contents;
        OrbinelRecommendation& recommendations;
        Lifecycle& lifecycle;
        TemplateEvents& templateEvents;
        FrequencyCap& frequencyCap;
        InappPresentation& inapp;
        OrbinelPush& push;
        Interception& interception;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
        platform::NotificationCentre& notificationCentre;
    };

    explicit Initialisation(const Needs& needs);

    /// The custom endpoint is only touched where one is given, though it may be an absent one.
    struct Arguments {
        std::optional<Dictionary> launchOptions;
        std::optional<std::string> partnerName;
        std::optional<std::string> appGroup;
        std::optional<std::optional<std::string>> customEndpoint;
    };
    void initWithLaunchOptions(const Arguments& arguments) noexcept;
    void initSDK(const Value& partnerName, const std::optional<Dictionary>& launchOptions) noexcept;
    void reinitWithPartnerName(const std::optional<std::string>& partnerName) noexcept;

    [[nodiscard]] bool partnerNameIsValid(const Value& partnerName) noexcept;
    void sendReinitLogWithMessage(std::string_view message) noexcept;
    void flushSDKCache() noexcept;

    void disableAutoIntegration() noexcept;
    [[nodiscard]] bool regularInitHasDone() const noexcept { return regularInitHasDone_; }

private:
    void observePlatform();
    void observe(std::string_view name, void (Lifecycle::*handler)() noexcept);

    /// A switch to another partner on its way. One that is begun later takes its place.
    struct PartnerSwitch {
        std::string partnerName;
        bool begunInBackground = false;
    };
    using SwitchPointer = std::shared_ptr<const PartnerSwitch>;

    [[nodiscard]] std::string partnerToBe() const;
    [[nodiscard]] SwitchPointer beginSwitch(const std::string& partnerName);
    [[nodiscard]] bool isOvertaken(const SwitchPointer& partnerSwitch);
    void switchPartner(const SwitchPointer& partnerSwitch);
    void stopOldSession(const SwitchPointer& partnerSwitch);
    void resolveIdentity(const SwitchPointer& partnerSwitch);
    void startNewSession(const PartnerSwitch& partnerSwitch, const SessionMark& adopted);
    /// False where another switch has taken its place meanwhile.
    [[nodiscard]] bool adoptPartner(const SwitchPointer& partnerSwitch);
    void adoptWithoutSession(const SwitchPointer& partnerSwitch);

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelEndpoints& endpoints_;
    OrbinelSession& session_;
    SessionStop& stop_;
    OrbinelConfig& start_;
    OrbinelPrivacy& privacy_;
    OrbinelUserInternal& user_;
    OrbinelIdentity& identity_;
    AutoIntegration& automaticIntegration_;
    IntegrationWizard& wizard_;
    OrbinelContentOptimizer& contents_;
    OrbinelRecommendation& recommendations_;
    Lifecycle& lifecycle_;
    TemplateEvents& templateEvents_;
    FrequencyCap& frequencyCap_;
    InappPresentation& inapp_;
    OrbinelPush& push_;
    Interception& interception_;
    const Lifetime& lifetime_;
    platform::Scheduler& scheduler_;
    platform::NotificationCentre& notificationCentre_;

    std::atomic<bool> regularInitHasDone_{false};
    std::atomic<bool> autoIntegration_{true};

    mutable Mutex mutex_;
    SwitchPointer underWay_ ORBINEL_GUARDED_BY(mutex_);  // until its partner is adopted
    std::vector<platform::Ticket> observers_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel
