#include "hosts/linux/storage_thread.hpp"

#include <deque>
#include <thread>
#include <utility>

#include "base/mutex.hpp"

namespace orbinel::hosts {

struct StorageThread::State {
    Mutex mutex;
    ConditionVariable changed;
    std::deque<Job> jobs ORBINEL_GUARDED_BY(mutex);
    std::thread thread ORBINEL_GUARDED_BY(mutex);
    std::thread::id runner ORBINEL_GUARDED_BY(mutex);  // who takes the jobs out; none by default
    bool ended ORBINEL_GUARDED_BY(mutex) = false;
};

StorageThread::StorageThread() : state_(std::make_shared<State>()) {
    MutexLock lock(state_->mutex);
    state_->thread = std::thread([state = state_] { runAll(*state); });
    state_->runner = state_->thread.get_id();
}

void StorageThread::post(Job job) {
    auto state = state_;  // the job may drop the last reference to this object
    bool isRunner = false;
    {
        MutexLock lock(state->mutex);
        state->jobs.push_back(std::move(job));
        isRunner = state->runner == std::thread::id();
        if (isRunner) state->runner = std::this_thread::get_id();
    }
    if (isRunner) {
        runAll(*state);
    } else {
        state->changed.notifyAll();
    }
}

bool StorageThread::isCurrent() const {
    MutexLock lock(state_->mutex);
    return state_->runner == std::this_thread::get_id();
}

void StorageThread::runAll(State& state) {
    for (;;) {
        Job job;
        {
            MutexLock lock(state.mutex);
            while (state.jobs.empty() && !state.ended) state.changed.wait(state.mutex);
            if (state.jobs.empty()) {
                state.runner = {};
                return;
            }
            job = std::move(state.jobs.front());
            state.jobs.pop_front();
        }
        job();
    }
}

void StorageThread::wait() {
    struct Done {
        Mutex mutex;
        ConditionVariable changed;
        bool value ORBINEL_GUARDED_BY(mutex) = false;
    };
    if (isCurrent()) return;
    const auto done = std::make_shared<Done>();
    post([done] {
        {
            MutexLock lock(done->mutex);
            done->value = true;
        }
        done->changed.notifyAll();
    });
    MutexLock lock(done->mutex);
    while (!done->value) done->changed.wait(done->mutex);
}

void StorageThread::end() {
    std::thread thread;
    {
        MutexLock lock(state_->mutex);
        state_->ended = true;
        thread = std::move(state_->thread);
    }
    state_->changed.notifyAll();
    if (!thread.joinable()) return;
    if (thread.get_id() == std::this_thread::get_id()) {
        thread.detach();  // it shares the state and ends once the remaining jobs have run
    } else {
        thread.join();
    }
}

}  // namespace orbinel::hosts
