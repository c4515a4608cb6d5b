#include "base/lifetime.hpp"

namespace orbinel {

namespace {

/// How many pieces of work, of whichever world, the thread is in the middle of.
thread_local int enteredByThisThread = 0;

}  // namespace

void Lifetime::begin(std::weak_ptr<void> world) {
    state_->world = std::move(world);
    state_->ended = false;
}

void Lifetime::end() { state_->ended = true; }

bool Lifetime::waitUntilQuiet(std::chrono::milliseconds limit) const {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    const MutexLock lock(state_->mutex);
    while (state_->running > enteredByThisThread) {
        if (!state_->changed.waitUntil(state_->mutex, deadline)) return state_->running <= enteredByThisThread;
    }
    return true;
}

// Entering counts first and then looks whether the lifetime has ended; the end marks first and then looks at the
// count. So either the entry sees the end, or the wait sees the entry.
Lifetime::Entry::Entry(std::shared_ptr<State> state) : state_(std::move(state)) {
    ++state_->running;
    entered_ = !state_->ended;
    if (entered_) {
        ++enteredByThisThread;
    } else {
        leave();
    }
}

// What the thread lets go of before this still counts as its own work, so that a world that ends with it does not wait
// for itself.
Lifetime::Entry::~Entry() {
    if (!entered_) return;
    --enteredByThisThread;
    leave();
}

void Lifetime::Entry::leave() noexcept {
    --state_->running;
    if (!state_->ended) return;
    { const MutexLock lock(state_->mutex); }  // whoever waits is before its look at the count, or asleep
    state_->changed.notifyAll();
}

}  // namespace orbinel
