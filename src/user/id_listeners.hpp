#pragma once

#include <string>
#include <vector>

#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "orbinel/target_action.hpp"

namespace orbinel {

/// Who is told when the Orbinel ID changes: targets, each held weakly, with the action to perform on it.
///
/// Threads: any; actions run on the thread that triggers them, without a lock held.
class OrbinelListeners {
public:
    using Listener = TargetAction<const std::string&>;

    explicit OrbinelListeners(Reports& reports) : reports_(reports) {}

    /// Adds a listener, or replaces the action of a target that is one already.
    void registerOrbinelIDListener(Listener listener) noexcept;

    /// Tells every listener that is still there the new ID.
    void triggerOrbinelIDListenersWithOrbinelID(const std::string& orbinelId) noexcept;

private:
    Reports& reports_;
    Mutex mutex_;
    std::vector<Listener> listeners_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel
