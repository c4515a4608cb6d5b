#pragma once

#include <string_view>
#include <utility>

#include "base/mutex.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// What a product consists of: its summary, and whether it passed the check of its required fields.
///
/// Threads: any.
class OrbinelProductInternal {
public:
    /// A product without a summary, not valid.
    OrbinelProductInternal() = default;
    OrbinelProductInternal(const OrbinelProductInternal& other);
    OrbinelProductInternal& operator=(const OrbinelProductInternal&) = delete;

    /// The spelling of these three is part of their names.
    void setProuctSummary(Dictionary summary);
    [[nodiscard]] Dictionary getProuctSummary() const;
    void setProuctValidity(bool valid);

    [[nodiscard]] bool isValid() const;

    void set(std::string_view key, Value value);

    /// Calls `look` with the summary, without copying it. It must not call anything that takes a lock.
    template <typename Look>
    auto inspect(Look&& look) const {
        const MutexLock lock(mutex_);
        return std::forward<Look>(look)(static_cast<const Dictionary&>(mSummary_));
    }

private:
    mutable Mutex mutex_;
    Dictionary mSummary_ ORBINEL_GUARDED_BY(mutex_);
    bool mIsProductValid_ ORBINEL_GUARDED_BY(mutex_) = false;
};

}  // namespace orbinel
