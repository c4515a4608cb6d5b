#pragma once

#include <thread>

#include "base/mutex.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel::headless {

/// A thread that runs one task at a time for somebody who waits for it.
class TaskThread {
public:
    TaskThread() = default;
    ~TaskThread() {
        {
            const MutexLock lock(mutex_);
            ending_ = true;
            changed_.notifyAll();
        }
        if (thread_.joinable()) thread_.join();
    }
    TaskThread(const TaskThread&) = delete;
    TaskThread& operator=(const TaskThread&) = delete;

    /// Runs the task on the thread, which the first call starts, and returns when it has ended. One caller at a time.
    void runAndWait(const platform::Task& task) {
        if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
        const MutexLock lock(mutex_);
        task_ = &task;
        changed_.notifyAll();
        while (task_ != nullptr) changed_.wait(mutex_);
    }

private:
    void run() {
        while (const auto* task = next()) {
            (*task)();
            const MutexLock lock(mutex_);
            task_ = nullptr;
            changed_.notifyAll();
        }
    }

    [[nodiscard]] const platform::Task* next() {
        const MutexLock lock(mutex_);
        while (task_ == nullptr && !ending_) changed_.wait(mutex_);
        return task_;
    }

    std::thread thread_;

    Mutex mutex_;
    ConditionVariable changed_;
    const platform::Task* task_ ORBINEL_GUARDED_BY(mutex_) = nullptr;
    bool ending_ ORBINEL_GUARDED_BY(mutex_) = false;
};

}  // namespace orbinel::headless
