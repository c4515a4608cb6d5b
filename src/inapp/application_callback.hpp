#pragma once

#include <utility>

#include "base/guard.hpp"
#include "base/lifetime.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/target_action.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// A callback of the application that is told what happens in a message.
///
/// Threads: any; the application is called on the main queue.
class ApplicationCallback {
public:
    using Action = TargetAction<const Dictionary&>;

    struct Needs {
        Reports& reports;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
    };

    explicit ApplicationCallback(const Needs& needs)
        : reports_(needs.reports), lifetime_(needs.lifetime), scheduler_(needs.scheduler) {}

    /// Replaces the callback.
    void set(Action callback) {
        const MutexLock lock(mutex_);
        std::swap(callback_, callback);  // the earlier one is released without the lock
    }

    /// Calls the application on the next turn of the main queue; nothing where there is no callback, or its target is
    /// gone. `operation` is the name under which an exception is reported: a literal.
    void performLater(const char* operation, Dictionary info) const {
        auto callback = current();
        if (!callback.isAlive()) return;
        scheduler_.postMain(
            lifetime_.whileAlive([this, operation, callback = std::move(callback), info = std::move(info)] {
                guarded(reports_, operation, [&] { callback.perform(info); });
            }));
    }

private:
    [[nodiscard]] Action current() const {
        const MutexLock lock(mutex_);
        return callback_;
    }

    Reports& reports_;
    const Lifetime& lifetime_;
    platform::Scheduler& scheduler_;

    mutable Mutex mutex_;
    Action callback_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel
