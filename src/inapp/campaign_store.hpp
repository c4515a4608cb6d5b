#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "events/campaign_triggers.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// The in-app campaigns of a session, found by the event that triggers them at a cost that does not depend on how many
/// there are.
///
/// Two kinds: event-based ones ("show_type" is "event") wait for their event however often it happens, all others
/// (`nonEventBasedInapps`, count-based) for one occurrence of it, "trigger_count" (1 where there is none), and are
/// taken out when they are chosen. Records of one event, and of one count of it, keep the order of their arrival.
///
/// Threads: any.
class OrbinelInapps {
public:
    using Campaign = CampaignTriggers::Campaign;

    explicit OrbinelInapps(Reports& reports) : reports_(reports) {}

    /// Whether the answer to the session start has been processed.
    [[nodiscard]] bool startRequestCompleted() const noexcept { return startRequestCompleted_; }
    void setStartRequestCompleted(bool completed) noexcept { startRequestCompleted_ = completed; }

    /// Adds every campaign of the list that has a text as its "trigger", in order, and after them the campaigns
    /// connected with them ("content.connected_inapps"; one level). Duplicates are kept, up to 1,000 campaigns of one
    /// trigger.
    void inappToMemory(const Array& inapps) noexcept;

    void forgetCampaigns();
    void forgetNonEventBasedInapps();

    /// Every campaign whose "trigger" is exactly this event name: the count-based ones by count, in the order in which
    /// the counts arrived, then the event-based ones.
    [[nodiscard]] std::vector<Campaign> triggeredBy(std::string_view eventName) const;

    /// What one occurrence of an event may choose from, before any condition.
    struct Candidates {
        std::vector<Campaign> nonEventBased;
        std::vector<Campaign> eventBased;
    };
    [[nodiscard]] Candidates candidatesFor(std::string_view eventName, std::int32_t occurrence) const;

    /// Takes a count-based campaign out; false where it is gone already: another thread has chosen it.
    bool take(std::string_view eventName, std::int32_t occurrence, const Campaign& campaign);

    // Copies for a look at everything: lists of records, by "trigger-count" and by "trigger".
    [[nodiscard]] Dictionary nonEventBasedInapps() const;
    [[nodiscard]] Dictionary eventBasedInapps() const;

private:
    struct Occurrence {
        std::int64_t count = 0;
        std::vector<Campaign> campaigns;
    };
    struct Triggered {
        std::string trigger;
        std::vector<Occurrence> nonEventBased;  // in the order in which the counts arrived
        std::map<std::int64_t, std::size_t> placeOfCount;
        std::vector<Campaign> eventBased;
        std::size_t arrived = 0;  // of both kinds, those already taken included

        std::vector<Campaign>& campaignsAt(std::int64_t count);
        [[nodiscard]] std::vector<Campaign>* findAt(std::int64_t count);
    };
    struct Index {
        std::deque<Triggered> all;  // in the order in which the triggers arrived; elements stay where they are
        std::unordered_map<std::string_view, Triggered*> byTrigger;  // the names are those in `all`

        [[nodiscard]] Triggered* find(std::string_view trigger) const;
        Triggered& at(const std::string& trigger);
    };

    [[nodiscard]] std::vector<const Dictionary*> appendIfConnectedInapps(const Array& inapps) noexcept;
    void addOrSetInapps(const Dictionary& inapp) noexcept;

    Reports& reports_;
    std::atomic<bool> startRequestCompleted_{false};

    mutable Mutex mutex_;
    Index index_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel
