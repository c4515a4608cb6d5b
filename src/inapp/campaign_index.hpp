#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/mutex.hpp"
#include "events/campaign_triggers.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// The in-app campaigns of a session, found by the event that triggers them at a cost that does not depend on how many
/// there are.
///
/// Threads: any.
class CampaignIndex {
public:
    using Campaign = CampaignTriggers::Campaign;

    /// Adds every campaign of the list that has a text as its "trigger", in order; duplicates are kept. Gives their
    /// number.
    std::size_t add(const Array& campaigns);

    void clear();

    /// Every campaign whose "trigger" is exactly this event name: those that count occurrences first, then those shown
    /// with the event itself ("show_type" is "event"), each in the order of their arrival.
    [[nodiscard]] std::vector<Campaign> triggeredBy(std::string_view eventName) const;

private:
    struct Triggered {
        std::vector<Campaign> countBased;
        std::vector<Campaign> eventBased;
    };
    struct TextHash : std::hash<std::string_view> {
        using is_transparent = void;
    };

    mutable Mutex mutex_;
    std::unordered_map<std::string, Triggered, TextHash, std::equal_to<>> byTrigger_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel
