#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/late.hpp"
#include "base/reports.hpp"
#include "events/campaign_triggers.hpp"
#include "events/event_budget.hpp"
#include "events/validation.hpp"
#include "orbinel/platform/json.hpp"
#include "session/event_record.hpp"
#include "session/helper.hpp"
#include "session/session.hpp"

namespace orbinel {

/// Finishes events: validates, throttles, stamps and stores them, and counts them for the in-app campaigns.
///
/// Threads: any.
class EventRecorder {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        OrbinelSession& session;
        const Validation& validation;
        EventBudget& budget;
        const platform::Json& json;
    };

    explicit EventRecorder(const Needs& needs);

    /// The in-app campaigns, once core has bound them.
    Late<CampaignTriggers> campaigns;

    [[nodiscard]] Reports& reports() const noexcept { return reports_; }

    /// Parameters that take more than their own rules (see event_parameters.hpp). A refused key or value leaves the
    /// parameters as they are.
    void addDate(EventParameters& parameters, std::string_view key, const std::optional<Date>& date) const;
    void addAll(EventParameters& parameters, const Dictionary& added) const;

    /// Reports a key that is no name.
    void refuseKey(std::string_view key) const noexcept { (void)validation_.isNameValid(key); }

    /// Tells of a value that a parameter cannot have.
    void refuseValue(std::string_view key) const noexcept;

    /// Stores the event in the session's record as it stands now. May be called again, and then stores it again.
    void build(std::string_view name, const std::shared_ptr<EventParameters>& parameters) noexcept;

    /// Builds an event of the library's own: its parameters are taken by the rules of `addAll`.
    void recordInternalEvent(std::string_view name, const Dictionary& parameters) noexcept;

private:
    void addDetected(EventParameters& parameters, const std::string& key, const Value& value) const;
    void feedToWizard(const EventRecord& record) noexcept;
    [[nodiscard]] static Dictionary getEventPayloadForWizard(const EventRecord& record);
    void store(EventRecord record, bool campaignsHaveArrived);
    void handleCommonEventJobs(std::string_view name, const EventParameters& parameters) noexcept;
    void countForCampaign(std::string_view name, const Dictionary& parameters, const Dictionary& campaign);
    [[nodiscard]] std::optional<std::string> eventKeyForEvent(std::string_view name) const noexcept;

    Reports& reports_;
    OrbinelHelper& helper_;
    OrbinelSession& session_;
    const Validation& validation_;
    EventBudget& budget_;
    const platform::Json& json_;
};

}  // namespace orbinel
