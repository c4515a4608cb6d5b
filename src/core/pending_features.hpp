#pragma once

#include <atomic>

#include "base/reports.hpp"
#include "events/campaign_triggers.hpp"
#include "inapp/campaign_index.hpp"
#include "session/collaborators.hpp"
#include "user/displayed_inapp.hpp"

namespace orbinel {

/// Stands in for the features that are not built yet, in-app messages, pushes and links: takes what a session hands
/// them, answers neutrally and tells the development log. Every operation carries the name that its feature will give
/// it. Campaigns are kept and found already; none is chosen.
class PendingFeatures final : public SessionCampaigns, public CampaignTriggers, public DisplayedInapp {
public:
    explicit PendingFeatures(Reports& reports) : reports_(reports) {}

    // In-app messages.
    void setStartRequestCompleted(bool completed) override { startRequestCompleted_ = completed; }
    [[nodiscard]] bool startRequestCompleted() const noexcept override { return startRequestCompleted_; }
    void forgetCampaigns() override { campaigns_.clear(); }
    void cleanFrequencyCache() override {}
    void inappToMemory(const Array& inapps) override;
    bool checkInapp(std::string_view, std::int32_t) override { return false; }
    [[nodiscard]] bool doesTestInAppExist() override { return false; }
    [[nodiscard]] std::vector<Campaign> campaignsTriggeredBy(std::string_view eventName) const override {
        return campaigns_.triggeredBy(eventName);
    }
    [[nodiscard]] bool checkIfParamsAreMatching(const Dictionary&, const Value&) const override { return false; }
    bool checkInapp(std::string_view, const Dictionary&, std::int32_t) override { return false; }
    void removeInappWithCompletionHandler(Completion completion) override { completion(); }
    void setTestInAppExistence(bool) {}
    void cancelScheduledInapps() {}
    void removeInapp(const Completion& completion) { completion(); }
    void removeInappOnProductPage() {}
    void enableInAppMessages() {}
    void addObserverForEventInapps() {}

    // Push and links.
    void callUserNotificationCenterSwizzlers() {}
    void handlePushLogWithUserInfo(const Dictionary& userInfo);
    void setUserInfoProcessed(bool) {}
    void setForegroundPush(bool) {}
    void flushClickedDeepLink() {}
    void setPlaceholderLog() {}

private:
    Reports& reports_;
    std::atomic<bool> startRequestCompleted_{false};
    CampaignIndex campaigns_;
};

}  // namespace orbinel
