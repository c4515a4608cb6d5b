#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

namespace orbinel::hosts {

/// Calls back at points of the steady clock, on one thread that is started by the first timer.
///
/// Threads: callable from any thread, also from a callback. Callbacks must be short: they hand work on.
class DeadlineTimer {
public:
    using TimePoint = std::chrono::steady_clock::time_point;
    using Id = std::pair<TimePoint, std::uint64_t>;

    DeadlineTimer();
    ~DeadlineTimer() { close(); }
    DeadlineTimer(const DeadlineTimer&) = delete;
    DeadlineTimer& operator=(const DeadlineTimer&) = delete;

    Id callAt(TimePoint time, std::function<void()> callback);

    /// Forgets a callback that has not begun; it may be running already.
    void cancel(const Id& id);

    /// Drops what is not due yet, takes nothing more, and waits for a callback that runs, unless that one calls.
    void close();

private:
    struct State;

    static void work(const std::shared_ptr<State>& state);

    const std::shared_ptr<State> state_;
};

}  // namespace orbinel::hosts
