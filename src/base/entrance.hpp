#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "base/mutex.hpp"

namespace orbinel {

/// Where calls from outside enter a world: counts who is inside, so that the world stays until the last one has left.
///
/// An entrance is never destroyed, it is only used again by a later world. So it may be asked at any time, without a
/// lock and without owning anything, whether the world behind it is still the one that was meant: a visit costs two
/// atomic operations.
///
/// Threads: any.
class Entrance {
public:
    Entrance(const Entrance&) = delete;
    Entrance& operator=(const Entrance&) = delete;

    struct GiveBack {
        void operator()(Entrance* entrance) const noexcept;
    };
    using Claimed = std::unique_ptr<Entrance, GiveBack>;

    /// A closed entrance that is the caller's until it is let go of, which has to be after everybody has left.
    [[nodiscard]] static Claimed claim();

    /// Lets in. The target must stand until everybody has left. Once for each claim.
    void open(void* target) noexcept;

    /// Lets nobody in any more.
    void close() noexcept { opening_.store(0); }

    /// Waits until everybody has left but those whom the calling thread itself is in the middle of; false when the
    /// limit was reached first. Only after `close`.
    bool waitUntilLeft(std::chrono::milliseconds limit) const;

    /// Runs the action once everybody has left: now, or on the thread of the last one. Only after `close`.
    void whenLeft(std::function<void()> action) noexcept;

    /// The number of the world that is inside: another one each time, 0 while closed.
    [[nodiscard]] std::uint64_t opening() const noexcept { return opening_.load(); }

    // For `Visit`. Whoever was let in has to leave; nobody else. Opening 0 means whichever.
    [[nodiscard]] bool enter(std::uint64_t wanted) noexcept {
        inside_.fetch_add(1);
        const auto opening = opening_.load();  // after the count: so either this sees the end, or the end sees this
        if (opening != 0 && (wanted == 0 || wanted == opening)) {
            ++enteredByThisThread_;
            return true;
        }
        countOut();
        return false;
    }
    void leave() noexcept {
        --enteredByThisThread_;
        countOut();
    }
    [[nodiscard]] void* target() const noexcept { return target_; }

private:
    Entrance() = default;

    void countOut() noexcept {
        inside_.fetch_sub(1);
        if (opening_.load() == 0) leftClosed();
    }
    void leftClosed() noexcept;

    /// How many visits, of whichever entrance, the thread is in the middle of.
    static inline thread_local int enteredByThisThread_ __attribute__((tls_model("initial-exec"))) = 0;

    std::atomic<int> inside_{0};
    std::atomic<std::uint64_t> opening_{0};
    void* target_ = nullptr;  // written before the entrance opens, while nobody can be inside

    mutable Mutex mutex_;
    mutable ConditionVariable left_;
    std::function<void()> whenLeft_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel
