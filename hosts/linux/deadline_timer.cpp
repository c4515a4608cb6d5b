#include "hosts/linux/deadline_timer.hpp"

#include <map>
#include <system_error>
#include <thread>

#include "base/mutex.hpp"

namespace orbinel::hosts {

struct DeadlineTimer::State {
    using Callbacks = std::map<Id, std::function<void()>>;

    Mutex mutex;
    ConditionVariable changed;
    Callbacks callbacks ORBINEL_GUARDED_BY(mutex);
    std::uint64_t lastNumber ORBINEL_GUARDED_BY(mutex) = 0;
    std::thread thread ORBINEL_GUARDED_BY(mutex);
    bool closed ORBINEL_GUARDED_BY(mutex) = false;

    /// Where the system has no thread left, the callbacks wait until the next one is added.
    void startThread(const std::shared_ptr<State>& self) ORBINEL_REQUIRES(mutex) {
        try {
            thread = std::thread([self] { work(self); });
        } catch (const std::system_error&) {
        }
    }

    /// The next callback once it is due; nothing when the timer has been closed.
    Callbacks::node_type waitForDue() {
        MutexLock lock(mutex);
        while (!closed) {
            if (callbacks.empty()) {
                changed.wait(mutex);
            } else if (const auto due = callbacks.begin()->first.first; due > std::chrono::steady_clock::now()) {
                changed.waitUntil(mutex, due);
            } else {
                return callbacks.extract(callbacks.begin());
            }
        }
        return {};
    }
};

DeadlineTimer::DeadlineTimer() : state_(std::make_shared<State>()) {}

DeadlineTimer::Id DeadlineTimer::callAt(TimePoint time, std::function<void()> callback) {
    auto& state = *state_;
    Id id;
    bool first = false;
    {
        MutexLock lock(state.mutex);
        id = {time, ++state.lastNumber};
        if (state.closed) return id;
        state.callbacks.emplace(id, std::move(callback));
        first = state.callbacks.begin()->first == id;
        if (!state.thread.joinable()) state.startThread(state_);
    }
    if (first) state.changed.notifyOne();
    return id;
}

void DeadlineTimer::cancel(const Id& id) {
    State::Callbacks::node_type dropped;  // outlives the lock: the callback may own what calls back here
    MutexLock lock(state_->mutex);
    dropped = state_->callbacks.extract(id);
}

void DeadlineTimer::work(const std::shared_ptr<State>& state) {
    while (auto due = state->waitForDue()) due.mapped()();
}

void DeadlineTimer::close() {
    State::Callbacks dropped;
    std::thread thread;
    {
        MutexLock lock(state_->mutex);
        state_->closed = true;
        dropped.swap(state_->callbacks);
        thread = std::move(state_->thread);
    }
    state_->changed.notifyOne();
    if (!thread.joinable()) return;
    if (thread.get_id() == std::this_thread::get_id()) {
        thread.detach();  // it shares the state and ends once the running callback has returned
    } else {
        thread.join();
    }
}

}  // namespace orbinel::hosts
