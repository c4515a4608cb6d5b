#include "hosts/linux/background_pool.hpp"

#include <system_error>
#include <utility>

namespace orbinel::hosts {

namespace {

constexpr std::size_t maximumThreads = 2;

}  // namespace

struct BackgroundPool::State {
    Mutex mutex;
    ConditionVariable changed;
    std::deque<platform::Task> tasks ORBINEL_GUARDED_BY(mutex);
    std::vector<std::thread> threads ORBINEL_GUARDED_BY(mutex);
    std::size_t idle ORBINEL_GUARDED_BY(mutex) = 0;  // threads that wait for a task
    bool closed ORBINEL_GUARDED_BY(mutex) = false;

    /// Where the system has no thread left, the others go on; where there is none, the task waits until the next one is
    /// posted.
    void startThread(const std::shared_ptr<State>& self) ORBINEL_REQUIRES(mutex) {
        try {
            threads.emplace_back([self] { work(self); });
        } catch (const std::system_error&) {
        }
    }
};

std::shared_ptr<BackgroundPool::State> BackgroundPool::makeState() { return std::make_shared<State>(); }

void BackgroundPool::post(platform::Task task) {
    auto& state = *state_;
    {
        MutexLock lock(state.mutex);
        if (state.closed) return;
        state.tasks.push_back(std::move(task));
        if (state.tasks.size() > state.idle && state.threads.size() < maximumThreads) state.startThread(state_);
    }
    state.changed.notifyOne();
}

void BackgroundPool::work(const std::shared_ptr<State>& state) {
    for (;;) {
        platform::Task task;
        {
            MutexLock lock(state->mutex);
            ++state->idle;
            while (state->tasks.empty() && !state->closed) state->changed.wait(state->mutex);
            --state->idle;
            if (state->closed) return;
            task = std::move(state->tasks.front());
            state->tasks.pop_front();
        }
        task();
    }
}

void BackgroundPool::close() {
    std::deque<platform::Task> dropped;
    std::vector<std::thread> threads;
    {
        MutexLock lock(state_->mutex);
        state_->closed = true;
        dropped.swap(state_->tasks);
        threads.swap(state_->threads);
    }
    state_->changed.notifyAll();
    for (auto& thread : threads) {
        if (thread.get_id() == std::this_thread::get_id()) {
            thread.detach();  // it shares the state and ends once the running task has returned
        } else {
            thread.join();
        }
    }
}

}  // namespace orbinel::hosts
