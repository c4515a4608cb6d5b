#include "core/current_world.hpp"

#include <atomic>
#include <utility>

#include "base/entrance.hpp"
#include "base/mutex.hpp"
#include "core/world.hpp"

namespace orbinel::current_world {

namespace {

struct Place {
    Mutex mutex;
    std::shared_ptr<World> world ORBINEL_GUARDED_BY(mutex);
    bool claimed ORBINEL_GUARDED_BY(mutex) = false;
    bool erasing ORBINEL_GUARDED_BY(mutex) = false;    // then claimed, too
    bool continues ORBINEL_GUARDED_BY(mutex) = false;  // with a world after the erasure
    std::vector<Erased> waiting ORBINEL_GUARDED_BY(mutex);
};

// Never destroyed: an application may call the facade from its own static destructors.
Place& place() noexcept {
    static Place& only = *new Place;
    return only;
}

// Beside the place: needs no initialisation and no lock.
constinit std::atomic<Entrance*> currentEntrance{nullptr};

}  // namespace

Entrance* entrance() noexcept { return currentEntrance.load(std::memory_order_acquire); }

std::shared_ptr<World> get() noexcept {
    auto& only = place();
    const MutexLock lock(only.mutex);
    return only.world;
}

Claim claim() noexcept {
    auto& only = place();
    const MutexLock lock(only.mutex);
    if (only.erasing && !only.continues) return Claim::erasing;
    if (only.world != nullptr || std::exchange(only.claimed, true)) return Claim::started;
    return Claim::granted;
}

void set(std::shared_ptr<World> world) noexcept {
    auto& only = place();
    const MutexLock lock(only.mutex);
    only.claimed = false;
    currentEntrance = world != nullptr ? world->entrance.get() : nullptr;
    only.world = std::move(world);
}

std::shared_ptr<World> take() noexcept {
    auto& only = place();
    const MutexLock lock(only.mutex);
    currentEntrance = nullptr;
    only.continues = false;
    return std::exchange(only.world, nullptr);
}

std::shared_ptr<World> beginErasure(Erased&& erased) {
    auto& only = place();
    const MutexLock lock(only.mutex);
    if (only.world == nullptr && !only.erasing) return nullptr;
    if (erased) only.waiting.push_back(std::move(erased));
    if (only.erasing) return nullptr;
    only.claimed = only.erasing = only.continues = true;
    currentEntrance = nullptr;
    return std::exchange(only.world, nullptr);
}

bool continuesAfterErasure() noexcept {
    auto& only = place();
    const MutexLock lock(only.mutex);
    return only.continues;
}

std::vector<Erased> endErasure(std::shared_ptr<World> world) noexcept {
    auto& only = place();
    const MutexLock lock(only.mutex);
    if (only.continues && world != nullptr) {
        currentEntrance = world->entrance.get();
        only.world = std::move(world);
    }
    only.claimed = only.erasing = only.continues = false;
    return std::exchange(only.waiting, {});
}

}  // namespace orbinel::current_world
