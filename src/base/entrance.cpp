#include "base/entrance.hpp"

#include <exception>
#include <utility>
#include <vector>

namespace orbinel {

namespace {

/// Entrances that wait for another world. Never destroyed, as the entrances are not.
struct Unused {
    Mutex mutex;
    std::vector<Entrance*> entrances ORBINEL_GUARDED_BY(mutex);
    std::uint64_t openings ORBINEL_GUARDED_BY(mutex) = 0;
};

Unused& unused() noexcept {
    static Unused& only = *new Unused;
    return only;
}

}  // namespace

Entrance::Claimed Entrance::claim() {
    auto& [mutex, entrances, openings] = unused();
    const MutexLock lock(mutex);
    if (entrances.empty()) return Claimed(new Entrance);
    Claimed claimed(entrances.back());
    entrances.pop_back();
    return claimed;
}

void Entrance::GiveBack::operator()(Entrance* entrance) const noexcept {
    auto& [mutex, entrances, openings] = unused();
    const MutexLock lock(mutex);
    try {
        entrances.push_back(entrance);
    } catch (const std::exception&) {  // out of memory: it is never used again
    }
}

// A late visitor of an earlier world may be counted in for a moment: it finds the entrance closed, or open for another
// world than its own, and does not look at the target.
void Entrance::open(void* target) noexcept {
    target_ = target;
    auto& [mutex, entrances, openings] = unused();
    const MutexLock lock(mutex);
    opening_.store(++openings);
}

bool Entrance::waitUntilLeft(std::chrono::milliseconds limit) const {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    const MutexLock lock(mutex_);
    while (inside_.load() > enteredByThisThread_) {
        if (!left_.waitUntil(mutex_, deadline)) return inside_.load() <= enteredByThisThread_;
    }
    return true;
}

void Entrance::whenLeft(std::function<void()> action) noexcept {
    {
        const MutexLock lock(mutex_);
        whenLeft_ = std::move(action);
    }
    if (inside_.load() == 0) leftClosed();
}

/// Somebody has left a closed entrance. Of several threads that do, one takes the action.
void Entrance::leftClosed() noexcept {
    std::function<void()> action;
    {
        const MutexLock lock(mutex_);
        if (inside_.load() == 0) action.swap(whenLeft_);
    }
    left_.notifyAll();
    if (action) action();
}

}  // namespace orbinel
