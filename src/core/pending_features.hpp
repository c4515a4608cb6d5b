#pragma once

#include <atomic>

#include "base/reports.hpp"
#include "events/campaign_triggers.hpp"
#include "session/collaborators.hpp"
#include "user/device_attributes.hpp"

namespace orbinel {

/// Stands in for the features that are not built yet: takes what a session hands them, answers neutrally and tells
/// the development log. Every operation carries the name that its feature will give it.
class PendingFeatures final : public SessionAttributes,
                              public SessionCampaigns,
                              public SessionContents,
                              public SessionRecommendations,
                              public SessionLogSwitches,
                              public FailedConsent,
                              public CampaignTriggers,
                              public CollectionStatus {
public:
    explicit PendingFeatures(Reports& reports) : reports_(reports) {}

    // User attributes.
    [[nodiscard]] TakenAttributes takeAndResetUser() override { return {}; }

    // In-app messages. Whether the campaigns have arrived is already kept.
    void setStartRequestCompleted(bool completed) override { startRequestCompleted_ = completed; }
    [[nodiscard]] bool startRequestCompleted() const noexcept override { return startRequestCompleted_; }
    void forgetCampaigns() override {}
    void cleanFrequencyCache() override {}
    void inappToMemory(const Array& inapps) override;
    bool checkInapp(std::string_view, std::int32_t) override { return false; }
    [[nodiscard]] bool doesTestInAppExist() override { return false; }
    [[nodiscard]] std::vector<Campaign> campaignsTriggeredBy(std::string_view) const override { return {}; }
    [[nodiscard]] bool checkIfParamsAreMatching(const Dictionary&, const Value&) const override { return false; }
    bool checkInapp(std::string_view, const Dictionary&, std::int32_t) override { return false; }
    void setTestInAppExistence(bool) {}
    void cancelScheduledInapps() {}
    void removeInapp(const Completion& completion) { completion(); }
    void enableInAppMessages() {}
    void addObserverForEventInapps() {}

    // Remote content.
    void insertContentCampaigns(const Value& variables, const Value& contentId, const Value& variantId) override;
    void insertNonCachedContentCampaigns(const Value&, const Value&, const Value&) override {}
    void removeContentsFromCache(const Value&) override {}
    void removeTestVariables() {}

    // Recommendations.
    void storeEndpoints(const Dictionary& endpoints) override;
    void clearEndpoints() override {}
    void emptyRecommendationLogs() override {}

    // The diagnostic log.
    void setLogFlushTimeInterval(double) override {}
    void setSessionId(const std::string&) override {}
    void setIsLoggingEnabled(bool enabled) override;
    void startSendingLogsIfAppropriate() override {}

    // Consent and collection. Nothing is stored: both consents count as given.
    void saveFailedGdprPost(bool consent) override;
    [[nodiscard]] bool checkCurrentGDPRConsent() { return true; }
    [[nodiscard]] bool checkCurrentMobileConsent() { return true; }
    void importOrResendConsent() {}
    [[nodiscard]] bool getLocationCollectionStatus() const noexcept override { return false; }
    [[nodiscard]] bool getIpCollectionStatus() const noexcept override { return false; }
    [[nodiscard]] bool getIDFACollectionStatus() const noexcept override { return false; }
    [[nodiscard]] bool getCarrierCollectionStatus() const noexcept override { return true; }

    // Push and links.
    void callUserNotificationCenterSwizzlers() {}
    void handlePushLogWithUserInfo(const Dictionary& userInfo);
    void setUserInfoProcessed(bool) {}
    void setForegroundPush(bool) {}
    void flushClickedDeepLink() {}
    void setPlaceholderLog() {}

    // Integration wizard and test devices.
    void startAutoIntegration(bool) {}
    [[nodiscard]] bool isAutoIntegrationEnabled() const { return false; }
    void addWaitingTestDevice() {}
    void terminateConnection() {}

private:
    void noteArrived(std::string_view what, std::size_t count);

    Reports& reports_;
    std::atomic<bool> startRequestCompleted_{false};
};

}  // namespace orbinel
