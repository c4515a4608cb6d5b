#include "inapp/campaign_store.hpp"

#include <algorithm>
#include <memory>

#include "base/guard.hpp"
#include "base/whole_number.hpp"

namespace orbinel {

namespace {

// Beyond them a hostile answer could keep one event busy for minutes: each of them may be checked for each other one.
constexpr std::size_t mostCampaignsOfOneTrigger = 1000;

void appendDictionaries(std::vector<const Dictionary*>& records, const Array& list) {
    for (const auto& element : list) {
        if (const auto* record = element.ifDictionary()) records.push_back(record);
    }
}

const Array* connectedInapps(const Dictionary& inapp) {
    const auto* content = inapp["content"].ifDictionary();
    return content != nullptr ? (*content)["connected_inapps"].ifArray() : nullptr;
}

Array recordsOf(const std::vector<CampaignTriggers::Campaign>& campaigns) {
    Array records;
    records.reserve(campaigns.size());
    for (const auto& campaign : campaigns) records.emplace_back(*campaign);
    return records;
}

}  // namespace

// --- Storing ---

void OrbinelInapps::inappToMemory(const Array& inapps) noexcept {
    guarded(reports_, {"OrbinelInapp - inappToMemory", DescriptionForm::nameOnly}, [&] {
        for (const auto* inapp : appendIfConnectedInapps(inapps)) addOrSetInapps(*inapp);
    });
}

std::vector<const Dictionary*> OrbinelInapps::appendIfConnectedInapps(const Array& inapps) noexcept {
    std::vector<const Dictionary*> flat;
    guarded(reports_, {"OrbinelInapp - checkForConnectedInapps", DescriptionForm::nameOnly}, [&] {
        flat.reserve(inapps.size());
        appendDictionaries(flat, inapps);
        const auto arrived = flat.size();
        for (std::size_t i = 0; i < arrived; ++i) {
            if (const auto* connected = connectedInapps(*flat[i])) appendDictionaries(flat, *connected);
        }
    });
    return flat;
}

void OrbinelInapps::addOrSetInapps(const Dictionary& inapp) noexcept {
    guarded(reports_, {"OrbinelInapp - addOrSetInapps", DescriptionForm::nameOnly}, [&] {
        const auto* trigger = inapp["trigger"].ifString();
        if (trigger == nullptr) return reports_.note("Dropped an in-app campaign: its trigger is no text.");
        const bool eventBased = inapp["show_type"].stringOrEmpty() == "event";
        const auto count = wholeNumberOf(inapp["trigger_count"]).value_or(1);
        auto campaign = std::make_shared<const Dictionary>(inapp);
        const bool kept = [&] {
            const MutexLock lock(mutex_);
            auto& triggered = index_.at(*trigger);
            if (triggered.arrived >= mostCampaignsOfOneTrigger) return false;
            ++triggered.arrived;
            (eventBased ? triggered.eventBased : triggered.campaignsAt(count)).push_back(std::move(campaign));
            return true;
        }();
        if (!kept) reports_.note([&] { return "Dropped an in-app campaign: too many wait for \"" + *trigger + "\"."; });
    });
}

void OrbinelInapps::forgetCampaigns() {
    Index gone;  // destroyed without the lock
    const MutexLock lock(mutex_);
    std::swap(index_, gone);
}

void OrbinelInapps::forgetNonEventBasedInapps() {
    std::vector<std::vector<Occurrence>> gone;
    const MutexLock lock(mutex_);
    gone.reserve(index_.all.size());
    for (auto& triggered : index_.all) {
        gone.emplace_back().swap(triggered.nonEventBased);
        triggered.placeOfCount.clear();
        triggered.arrived = triggered.eventBased.size();
    }
}

// --- Finding ---

std::vector<OrbinelInapps::Campaign> OrbinelInapps::triggeredBy(std::string_view eventName) const {
    std::vector<Campaign> found;
    const MutexLock lock(mutex_);
    const auto* triggered = index_.find(eventName);
    if (triggered == nullptr) return found;
    for (const auto& [count, campaigns] : triggered->nonEventBased) {
        found.insert(found.end(), campaigns.begin(), campaigns.end());
    }
    found.insert(found.end(), triggered->eventBased.begin(), triggered->eventBased.end());
    return found;
}

OrbinelInapps::Candidates OrbinelInapps::candidatesFor(std::string_view eventName, std::int32_t occurrence) const {
    const MutexLock lock(mutex_);
    auto* triggered = index_.find(eventName);
    if (triggered == nullptr) return {};
    const auto* counted = triggered->findAt(occurrence);
    return {counted != nullptr ? *counted : std::vector<Campaign>(), triggered->eventBased};
}

bool OrbinelInapps::take(std::string_view eventName, std::int32_t occurrence, const Campaign& campaign) {
    const MutexLock lock(mutex_);
    auto* triggered = index_.find(eventName);
    auto* counted = triggered != nullptr ? triggered->findAt(occurrence) : nullptr;
    return counted != nullptr && std::erase(*counted, campaign) > 0;
}

Dictionary OrbinelInapps::nonEventBasedInapps() const {
    Dictionary lists;
    const MutexLock lock(mutex_);
    for (const auto& triggered : index_.all) {
        for (const auto& [count, campaigns] : triggered.nonEventBased) {
            lists.set(triggered.trigger + "-" + std::to_string(count), recordsOf(campaigns));
        }
    }
    return lists;
}

Dictionary OrbinelInapps::eventBasedInapps() const {
    Dictionary lists;
    const MutexLock lock(mutex_);
    for (const auto& triggered : index_.all) {
        if (!triggered.eventBased.empty()) lists.set(triggered.trigger, recordsOf(triggered.eventBased));
    }
    return lists;
}

// --- The index ---

std::vector<OrbinelInapps::Campaign>& OrbinelInapps::Triggered::campaignsAt(std::int64_t count) {
    const auto [place, isNew] = placeOfCount.try_emplace(count, nonEventBased.size());
    if (isNew) nonEventBased.push_back({count, {}});
    return nonEventBased[place->second].campaigns;
}

std::vector<OrbinelInapps::Campaign>* OrbinelInapps::Triggered::findAt(std::int64_t count) {
    const auto place = placeOfCount.find(count);
    return place != placeOfCount.end() ? &nonEventBased[place->second].campaigns : nullptr;
}

OrbinelInapps::Triggered* OrbinelInapps::Index::find(std::string_view trigger) const {
    const auto found = byTrigger.find(trigger);
    return found != byTrigger.end() ? found->second : nullptr;
}

OrbinelInapps::Triggered& OrbinelInapps::Index::at(const std::string& trigger) {
    if (auto* known = find(trigger)) return *known;
    auto& added = all.emplace_back();
    added.trigger = trigger;
    byTrigger.emplace(added.trigger, &added);
    return added;
}

}  // namespace orbinel
