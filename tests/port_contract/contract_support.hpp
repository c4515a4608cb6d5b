#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <utility>
#include <vector>

#include "base/mutex.hpp"

/// The contracts of the platform's services as test suites. Each header holds the suite of one service, written
/// against the service's interface alone; a host's test includes it and instantiates it with its own factory.
namespace orbinel::contract {

/// Lets about this much time pass on the service's clock, running what falls due on the main queue meanwhile. Called
/// on the test's thread, which is the main thread. Keeps nothing alive that a test may want to end.
using Drive = std::function<void(std::chrono::milliseconds)>;

/// Far beyond what any of these tests needs, so that only a fault reaches it.
inline constexpr std::chrono::seconds limit{20};

/// Drives until the condition holds; false where it still does not at the limit.
[[nodiscard]] inline bool driveUntil(const Drive& drive, const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        drive(std::chrono::milliseconds{1});
    }
    return true;
}

/// A service under test, made anew by the host's factory for each case.
template <typename UnderTest>
struct Contract : ::testing::TestWithParam<std::function<UnderTest()>> {
    UnderTest made = this->GetParam()();
};

/// Gathers what other threads deliver.
template <typename T>
class Gathered {
public:
    void add(T item) {
        const MutexLock lock(mutex_);
        items_.push_back(std::move(item));
        changed_.notifyAll();
    }

    [[nodiscard]] std::vector<T> all() const {
        const MutexLock lock(mutex_);
        return items_;
    }

    [[nodiscard]] std::vector<T> takeAll() {
        const MutexLock lock(mutex_);
        return std::exchange(items_, {});
    }

    [[nodiscard]] std::size_t size() const {
        const MutexLock lock(mutex_);
        return items_.size();
    }

    /// Waits until there are so many items; false where there are fewer when the time is over.
    [[nodiscard]] bool await(std::size_t size, std::chrono::milliseconds time = limit) const {
        const auto end = std::chrono::steady_clock::now() + time;
        const MutexLock lock(mutex_);
        while (items_.size() < size) {
            if (!changed_.waitUntil(mutex_, end)) return items_.size() >= size;
        }
        return true;
    }

private:
    mutable Mutex mutex_;
    mutable ConditionVariable changed_;
    std::vector<T> items_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel::contract
