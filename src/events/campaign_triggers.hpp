#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "orbinel/value.hpp"

namespace orbinel {

/// What events need of the in-app campaigns; bound by core. Called without a lock held, on the thread that builds.
class CampaignTriggers {
public:
    using Campaign = std::shared_ptr<const Dictionary>;

    virtual ~CampaignTriggers() = default;

    /// Whether the campaigns of this session have arrived.
    [[nodiscard]] virtual bool startRequestCompleted() const noexcept = 0;

    /// Every campaign whose "trigger" is the event's name, count-based ones first. Cheap where there is none.
    [[nodiscard]] virtual std::vector<Campaign> campaignsTriggeredBy(std::string_view eventName) const = 0;

    /// Whether the parameters meet a campaign's "trigger_params".
    [[nodiscard]] virtual bool checkIfParamsAreMatching(const Dictionary& parameters, const Value& expected) const = 0;

    /// Chooses and presents a campaign that is due at this count of the event.
    virtual bool checkInapp(std::string_view eventName, const Dictionary& parameters, std::int32_t triggerCount) = 0;
};

}  // namespace orbinel
