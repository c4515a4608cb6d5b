#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

// clang checks these annotations at compile time; other compilers see nothing of them.
#if defined(__clang__)
#define ORBINEL_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define ORBINEL_THREAD_ANNOTATION(x)
#endif

/// The member may only be touched while the named mutex is held.
#define ORBINEL_GUARDED_BY(mutex) ORBINEL_THREAD_ANNOTATION(guarded_by(mutex))
/// The function may only be called while the named mutexes are held.
#define ORBINEL_REQUIRES(...) ORBINEL_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
/// The function must not be called while the named mutexes are held: it takes them, or calls somebody who may.
#define ORBINEL_EXCLUDES(...) ORBINEL_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))

namespace orbinel {

/// A mutex that clang's thread-safety analysis understands. Never recursive.
class ORBINEL_THREAD_ANNOTATION(capability("mutex")) Mutex {
public:
    void lock() ORBINEL_THREAD_ANNOTATION(acquire_capability()) { mutex_.lock(); }
    void unlock() ORBINEL_THREAD_ANNOTATION(release_capability()) { mutex_.unlock(); }

private:
    friend class ConditionVariable;

    std::mutex mutex_;
};

/// Holds a mutex for the length of a scope.
class ORBINEL_THREAD_ANNOTATION(scoped_lockable) MutexLock {
public:
    explicit MutexLock(Mutex& mutex) ORBINEL_THREAD_ANNOTATION(acquire_capability(mutex)) : mutex_(mutex) {
        mutex_.lock();
    }
    ~MutexLock() ORBINEL_THREAD_ANNOTATION(release_capability()) { mutex_.unlock(); }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

private:
    Mutex& mutex_;
};

/// Waits for a condition on members that a `Mutex` guards. The caller re-checks its condition in a loop, which keeps
/// the check where the analysis can see that the mutex is held.
///
/// Notify after the mutex has been let go of, where the variable is sure to live that long: a waiter that wakes while
/// it is held only goes back to sleep.
class ConditionVariable {
public:
    void wait(Mutex& mutex) ORBINEL_REQUIRES(mutex) {
        Held held(mutex.mutex_);
        condition_.wait(held.lock);
    }

    /// False when the time has passed.
    template <typename Clock, typename Duration>
    bool waitUntil(Mutex& mutex, std::chrono::time_point<Clock, Duration> time) ORBINEL_REQUIRES(mutex) {
        Held held(mutex.mutex_);
        return condition_.wait_until(held.lock, time) == std::cv_status::no_timeout;
    }

    void notifyOne() noexcept { condition_.notify_one(); }
    void notifyAll() noexcept { condition_.notify_all(); }

private:
    /// The caller's hold on the mutex in the form that the standard library wants; it stays the caller's.
    struct Held {
        explicit Held(std::mutex& mutex) : lock(mutex, std::adopt_lock) {}
        ~Held() { lock.release(); }
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;

        std::unique_lock<std::mutex> lock;
    };

    std::condition_variable condition_;
};

}  // namespace orbinel
