#include "inapp/campaign_index.hpp"

#include <memory>

namespace orbinel {

std::size_t CampaignIndex::add(const Array& campaigns) {
    std::size_t added = 0;
    for (const auto& element : campaigns) {
        const auto* campaign = element.ifDictionary();
        const auto* trigger = campaign != nullptr ? (*campaign)["trigger"].ifString() : nullptr;
        if (trigger == nullptr) continue;
        const bool eventBased = (*campaign)["show_type"].stringOrEmpty() == "event";
        auto shared = std::make_shared<const Dictionary>(*campaign);
        const MutexLock lock(mutex_);
        auto& triggered = byTrigger_[*trigger];
        (eventBased ? triggered.eventBased : triggered.countBased).push_back(std::move(shared));
        ++added;
    }
    return added;
}

void CampaignIndex::clear() {
    decltype(byTrigger_) gone;  // destroyed without the lock
    const MutexLock lock(mutex_);
    byTrigger_.swap(gone);
}

std::vector<CampaignIndex::Campaign> CampaignIndex::triggeredBy(std::string_view eventName) const {
    const MutexLock lock(mutex_);
    const auto found = byTrigger_.find(eventName);
    if (found == byTrigger_.end()) return {};
    auto all = found->second.countBased;
    all.insert(all.end(), found->second.eventBased.begin(), found->second.eventBased.end());
    return all;
}

}  // namespace orbinel
