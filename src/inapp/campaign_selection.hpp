#pragma once

#include <atomic>
#include <cstdint>
#include <string_view>
#include <vector>

#include "base/late.hpp"
#include "base/reports.hpp"
#include "events/campaign_triggers.hpp"
#include "inapp/campaign_choice.hpp"
#include "inapp/campaign_store.hpp"
#include "inapp/collaborators.hpp"
#include "inapp/frequency_cap.hpp"
#include "inapp/presented_inapp.hpp"
#include "session/collaborators.hpp"
#include "session/helper.hpp"

namespace orbinel {

/// Decides whether an event shows a message, and hands the message over to be presented. Each outcome leaves its status
/// in the diagnostic log.
///
/// Threads: any.
class CampaignSelection final : public SessionCampaigns, public CampaignTriggers {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelInapps& inapps;
        FrequencyCap& frequencyCap;
        PresentedInapp& presented;
        InappLogging& logs;
    };

    explicit CampaignSelection(const Needs& needs);

    Late<InappPresenter> presenter;
    Late<InappButtonClicks> buttonClicks;

    // The store, as sessions and events see it.
    void setStartRequestCompleted(bool completed) override { inapps_.setStartRequestCompleted(completed); }
    [[nodiscard]] bool startRequestCompleted() const noexcept override { return inapps_.startRequestCompleted(); }
    void forgetCampaigns() override { inapps_.forgetCampaigns(); }
    void inappToMemory(const Array& inapps) override { inapps_.inappToMemory(inapps); }
    [[nodiscard]] std::vector<Campaign> campaignsTriggeredBy(std::string_view eventName) const override {
        return inapps_.triggeredBy(eventName);
    }
    void cleanFrequencyCache() override { frequencyCap_.cleanFrequencyCache(); }

    [[nodiscard]] bool checkIfParamsAreMatching(const Dictionary& parameters,
                                                const Value& expected) const noexcept override;

    /// Chooses a campaign for this occurrence of the event and hands it over; true when there was one, also where its
    /// frequency keeps it from being shown.
    bool checkInapp(std::string_view eventName, const Dictionary& parameters,
                    std::int32_t triggerCount) noexcept override;
    /// The same for an event of the library's own, without parameters.
    bool checkInapp(std::string_view eventName, std::int32_t triggerCount) noexcept override;

    /// Hands a campaign over, unless the gate or its frequency keeps it from being shown. One for the control group is
    /// only logged.
    void prepareInappToShow(const Campaign& inapp) noexcept;

    /// Makes a campaign of a template that the application has at hand, which takes the place of every count-based
    /// campaign. One for the event "test_inapp" is shown at once, any other when its event happens.
    void showCustomInapp(const Dictionary& content, std::string_view eventName) noexcept;

    /// Shows at once a message that the vendor's panel sent for a try, and tells the panel of the push it came with.
    void showTestInapp(const Dictionary& content, const Dictionary& pushInfo) noexcept;

    // Whether a test message has arrived, which takes the place of the session start's own.
    void setTestInAppExistence(bool exists) noexcept { testInAppExists_ = exists; }
    [[nodiscard]] bool doesTestInAppExist() noexcept override { return testInAppExists_; }

private:
    [[nodiscard]] bool isShowingPossible(std::string_view eventName);
    bool block(const Dictionary& inapp);
    void present(const Campaign& inapp);
    void logControlGroup(const Dictionary& inapp);

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelInapps& inapps_;
    FrequencyCap& frequencyCap_;
    PresentedInapp& presented_;
    InappLogging& logs_;
    CampaignChoice choice_;

    std::atomic<bool> testInAppExists_{false};
};

}  // namespace orbinel
