#include "inapp/frequency_cap.hpp"

#include <limits>
#include <utility>

#include "base/guard.hpp"
#include "base/whole_number.hpp"
#include "inapp/presented_inapp.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

constexpr std::int64_t forGood = -1;

bool hasPassed(const Value& until, std::int64_t now) {
    const auto moment = until.integer();
    return !moment || (*moment != forGood && now >= *moment);  // what is no moment caps nothing
}

std::int64_t sumWithinRange(std::int64_t now, std::int64_t seconds) {
    constexpr auto highest = std::numeric_limits<std::int64_t>::max();
    return seconds > 0 && now > highest - seconds ? highest : now + seconds;
}

}  // namespace

bool FrequencyCap::isFreqCapped(const Dictionary& inapp) noexcept {
    return guarded(reports_, "+[OrbinelInapp isFreqCapped:]", false, [&] {
        if (inapp.empty()) return false;
        readStored();
        const std::int64_t now = helper_.getNowAsTimestamp();
        const bool capped = [&] {
            const MutexLock lock(mutex_);
            return checkAndRenew(inapp, now);
        }();
        writeBack();
        return capped;
    });
}

bool FrequencyCap::checkAndRenew(const Dictionary& inapp, std::int64_t now) {
    const auto* until = caps_.find(inappFieldText(inapp, "inapp_id"));
    const bool capped = until != nullptr && !hasPassed(*until, now);
    if (!capped) cacheFrequency(inapp, now);
    return capped;
}

void FrequencyCap::cacheFrequency(const Dictionary& inapp, std::int64_t now) {
    const auto frequency = wholeNumberOf(inapp["frequency"]);
    const auto inappId = inappFieldText(inapp, "inapp_id");
    if (!frequency || inappId.empty()) return;
    caps_.set(inappId, *frequency == forGood ? forGood : sumWithinRange(now, *frequency));
    changed_ = true;
}

void FrequencyCap::cleanFrequencyCache() noexcept {
    guarded(reports_, "+[OrbinelInapp cleanFrequencyCache]", [&] {
        readStored();
        const std::int64_t now = helper_.getNowAsTimestamp();
        {
            const MutexLock lock(mutex_);
            const auto before = caps_.size();
            caps_.eraseIf([&](const Dictionary::Entry& entry) { return hasPassed(entry.second, now); });
            changed_ = changed_ || caps_.size() != before;
        }
        writeBack();
    });
}

void FrequencyCap::forget() noexcept {
    guarded(reports_, "+[OrbinelInapp forgetFrequencies]", [&] {
        {
            const MutexLock lock(mutex_);
            caps_.clear();
            read_ = true;
            changed_ = true;
        }
        writeBack();
    });
}

void FrequencyCap::readStored() {
    {
        const MutexLock lock(mutex_);
        if (read_) return;
    }
    auto stored = helper_.standardStore().value(keys::inappFrequency);
    const MutexLock lock(mutex_);
    if (std::exchange(read_, true)) return;
    if (auto* caps = stored.ifDictionary()) caps_ = std::move(*caps);
}

/// One thread writes at a time, what is newest; another's change meanwhile is written by the same thread next.
void FrequencyCap::writeBack() {
    for (bool first = true;; first = false) {
        Dictionary newest;
        {
            const MutexLock lock(mutex_);
            if (first && writing_) return;
            writing_ = false;
            if (!changed_) return;
            newest = caps_;
            changed_ = false;
            writing_ = true;
        }
        const bool none = newest.empty();
        helper_.standardStore().set(keys::inappFrequency, none ? Value() : Value(std::move(newest)));
        helper_.standardStore().synchronize();
    }
}

}  // namespace orbinel
