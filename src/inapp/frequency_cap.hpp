#pragma once

#include <cstdint>

#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "orbinel/value.hpp"
#include "session/helper.hpp"

namespace orbinel {

/// Keeps a campaign from being shown again before its "frequency" (seconds; -1: never again) has passed, also across
/// launches. What is stored is the moment, in seconds since 1970, until which a campaign is capped, by its ID; -1 is
/// for good.
///
/// Memory is the truth once the store has been read, and the store follows.
///
/// Threads: any. Asking and renewing is one step, so two threads never both find one campaign free.
class FrequencyCap {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
    };

    explicit FrequencyCap(const Needs& needs) : reports_(needs.reports), helper_(needs.helper) {}

    /// Whether the campaign may not be shown now. Where it may, its next period begins with this call. A record without
    /// an ID or a frequency is never capped.
    [[nodiscard]] bool isFreqCapped(const Dictionary& inapp) noexcept;

    /// Forgets every cap, also in the store.
    void forget() noexcept;

    /// Forgets what has passed.
    void cleanFrequencyCache() noexcept;

private:
    [[nodiscard]] bool checkAndRenew(const Dictionary& inapp, std::int64_t now) ORBINEL_REQUIRES(mutex_);
    void cacheFrequency(const Dictionary& inapp, std::int64_t now) ORBINEL_REQUIRES(mutex_);
    void readStored();
    void writeBack();

    Reports& reports_;
    OrbinelHelper& helper_;

    Mutex mutex_;  // not held while the store is called
    bool read_ ORBINEL_GUARDED_BY(mutex_) = false;
    Dictionary caps_ ORBINEL_GUARDED_BY(mutex_);
    bool changed_ ORBINEL_GUARDED_BY(mutex_) = false;  // since it was last written
    bool writing_ ORBINEL_GUARDED_BY(mutex_) = false;
};

}  // namespace orbinel
