#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <thread>

#include "base/mutex.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel::hosts {

/// The tasks of the main thread, in order, and the ways in which an application lets them run.
///
/// Threads: `post`, `wake`, `close` and `isMain` from any thread; running only on the main thread, which is the one
/// that made the queue until another one runs it.
class MainQueue {
public:
    MainQueue();
    ~MainQueue();
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;

    void post(platform::Task task) noexcept;

    [[nodiscard]] bool isMain() const noexcept;

    /// Runs at most `limit` tasks without waiting for any; how many it ran.
    std::size_t runReady(std::size_t limit);

    /// Runs tasks until the predicate, asked before each of them, holds; false when the time has passed first or the
    /// queue was closed.
    bool runUntil(const std::function<bool()>& predicate, std::chrono::steady_clock::time_point limit);

    /// Makes `runUntil` ask its predicate again.
    void wake() noexcept;

    /// Readable (poll, epoll, GLib) while tasks wait; -1 where the system has none left.
    [[nodiscard]] int wakeFileDescriptor() const noexcept { return eventFd_; }

    [[nodiscard]] std::size_t size() const;

    /// Drops what waits, takes nothing more, and waits for a task that another thread is running.
    void close();

private:
    bool runOne();
    void becomeMain() noexcept;
    void signal() const noexcept;
    void drainSignal() const noexcept;

    const int eventFd_;

    mutable Mutex mutex_;
    ConditionVariable changed_;
    std::deque<platform::Task> tasks_ ORBINEL_GUARDED_BY(mutex_);
    std::thread::id mainThread_ ORBINEL_GUARDED_BY(mutex_);
    int running_ ORBINEL_GUARDED_BY(mutex_) = 0;
    bool woken_ ORBINEL_GUARDED_BY(mutex_) = false;
    bool closed_ ORBINEL_GUARDED_BY(mutex_) = false;
};

}  // namespace orbinel::hosts
