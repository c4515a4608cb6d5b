#include "hosts/linux/main_queue.hpp"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

namespace orbinel::hosts {

MainQueue::MainQueue() : eventFd_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), mainThread_(std::this_thread::get_id()) {}

MainQueue::~MainQueue() {
    if (eventFd_ >= 0) ::close(eventFd_);
}

void MainQueue::post(platform::Task task) noexcept {
    {
        MutexLock lock(mutex_);
        if (closed_) return;
        tasks_.push_back(std::move(task));
        if (tasks_.size() == 1) signal();
    }
    changed_.notifyAll();
}

bool MainQueue::isMain() const noexcept {
    MutexLock lock(mutex_);
    return mainThread_ == std::this_thread::get_id();
}

std::size_t MainQueue::size() const {
    MutexLock lock(mutex_);
    return tasks_.size();
}

std::size_t MainQueue::runReady(std::size_t limit) {
    becomeMain();
    std::size_t ran = 0;
    while (ran < limit && runOne()) ++ran;
    return ran;
}

bool MainQueue::runUntil(const std::function<bool()>& predicate, std::chrono::steady_clock::time_point limit) {
    becomeMain();
    for (bool inTime = true; !predicate(); inTime = std::chrono::steady_clock::now() < limit) {
        if (!inTime) return false;
        if (runOne()) continue;
        MutexLock lock(mutex_);
        while (tasks_.empty() && !woken_ && !closed_) {
            if (!changed_.waitUntil(mutex_, limit) && tasks_.empty() && !woken_) return false;
        }
        if (closed_) return false;
        woken_ = false;
    }
    return true;
}

void MainQueue::wake() noexcept {
    {
        MutexLock lock(mutex_);
        woken_ = true;
    }
    changed_.notifyAll();
}

void MainQueue::close() {
    std::deque<platform::Task> dropped;
    MutexLock lock(mutex_);
    closed_ = true;
    dropped.swap(tasks_);
    changed_.notifyAll();
    if (mainThread_ == std::this_thread::get_id()) return;
    while (running_ > 0) changed_.wait(mutex_);
}

bool MainQueue::runOne() {
    platform::Task task;
    {
        MutexLock lock(mutex_);
        if (tasks_.empty()) return false;
        task = std::move(tasks_.front());
        tasks_.pop_front();
        if (tasks_.empty()) drainSignal();
        ++running_;
    }
    task();
    task = nullptr;
    {
        MutexLock lock(mutex_);
        --running_;
    }
    changed_.notifyAll();
    return true;
}

void MainQueue::becomeMain() noexcept {
    MutexLock lock(mutex_);
    mainThread_ = std::this_thread::get_id();
}

void MainQueue::signal() const noexcept {
    const std::uint64_t one = 1;
    if (eventFd_ >= 0) static_cast<void>(!write(eventFd_, &one, sizeof one));
}

void MainQueue::drainSignal() const noexcept {
    std::uint64_t count = 0;
    if (eventFd_ >= 0) static_cast<void>(!read(eventFd_, &count, sizeof count));
}

}  // namespace orbinel::hosts
