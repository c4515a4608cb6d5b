#include "user/id_listeners.hpp"

#include "base/guard.hpp"

namespace orbinel {

namespace {

bool sameTarget(const OrbinelListeners::Listener& left, const OrbinelListeners::Listener& right) {
    return !left.target().owner_before(right.target()) && !right.target().owner_before(left.target());
}

}  // namespace

void OrbinelListeners::registerOrbinelIDListener(Listener listener) noexcept {
    guarded(reports_, "-[OrbinelListeners registerOrbinelIDListener:selector:]", [&] {
        if (!listener.isAlive()) return;
        std::vector<Listener> kept;
        const MutexLock lock(mutex_);
        for (auto& known : listeners_) {
            if (known.isAlive() && !sameTarget(known, listener)) kept.push_back(known);
        }
        kept.push_back(std::move(listener));
        listeners_.swap(kept);
    });
}

void OrbinelListeners::triggerOrbinelIDListenersWithOrbinelID(const std::string& orbinelId) noexcept {
    const GuardedOperation operation("-[OrbinelListeners triggerListeners:withArgument:]");
    guarded(reports_, operation, [&] {
        std::vector<Listener> snapshot;
        {
            const MutexLock lock(mutex_);
            snapshot = listeners_;
        }
        for (const auto& listener : snapshot) guarded(reports_, operation, [&] { listener.perform(orbinelId); });
    });
}

}  // namespace orbinel
