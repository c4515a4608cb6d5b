#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "base/mutex.hpp"

namespace orbinel {

/// The recommendations whose last answer held products, in order of arrival; clicks and sales are only attributed to
/// these. They are kept as long as the process lives.
///
/// Threads: any.
class RecommendedIds {
public:
    void add(std::int32_t id) {
        const MutexLock lock(mutex_);
        if (std::find(ids_.begin(), ids_.end(), id) == ids_.end()) ids_.push_back(id);
    }

    [[nodiscard]] std::vector<std::int32_t> getRecommendationIDsThatHasProducts() const {
        const MutexLock lock(mutex_);
        return ids_;
    }

private:
    mutable Mutex mutex_;
    std::vector<std::int32_t> ids_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel
