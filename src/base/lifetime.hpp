#pragma once

#include <atomic>
#include <chrono>
#include <memory>
#include <utility>

#include "base/guard.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"

namespace orbinel {

/// Lets work that comes late (HTTP completions, timers, main-queue tasks) find out whether its world still runs, and
/// keeps the world in memory while it is running.
///
/// `Entrance` counts the calls from outside in much the same way. They are two because a caller has no reference to the
/// world and must cost next to nothing, so its count stands in an object that is never destroyed; late work is made by
/// the world itself, and its count and the weak reference may go once the last of it has.
///
/// Threads: any. A lifetime begins once and ends once.
class Lifetime {
public:
    explicit Lifetime(Reports& reports) : reports_(reports) {}

    /// Called when the world has an owner that can be shared.
    void begin(std::weak_ptr<void> world);

    /// From now on no work begins.
    void end();

    /// Waits until no work is running, other than what the calling thread itself is in the middle of; false when the
    /// limit was reached first. Only after `end`.
    bool waitUntilQuiet(std::chrono::milliseconds limit) const;

    /// The work, changed so that it runs only while the world does, and under the exception guard; otherwise calling it
    /// does nothing.
    template <typename Work>
    [[nodiscard]] auto whileAlive(Work work) const {
        return [this, state = state_, work = std::move(work)](auto&&... arguments) mutable {
            const Entry entry(state);
            if (!entry) return;                      // and this object may be gone
            const auto world = state->world.lock();  // let go of before the entry: see there
            if (world == nullptr) return;
            guarded(reports_, "-[Orbinel completion]", [&] { work(std::forward<decltype(arguments)>(arguments)...); });
        };
    }

private:
    struct State {
        std::weak_ptr<void> world;  // set before the lifetime begins, and then only read
        std::atomic<bool> ended{true};
        std::atomic<int> running{0};
        Mutex mutex;
        ConditionVariable changed;  // of `running`, once it has ended
    };

    /// One piece of running work; false where the lifetime has not begun or has ended. Its end waits for the work.
    /// Whoever keeps the world alive for the work has to let go of it first.
    class Entry {
    public:
        explicit Entry(std::shared_ptr<State> state);
        ~Entry();
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;
        explicit operator bool() const noexcept { return entered_; }

    private:
        void leave() noexcept;

        const std::shared_ptr<State> state_;
        bool entered_ = false;
    };

    Reports& reports_;
    const std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace orbinel
