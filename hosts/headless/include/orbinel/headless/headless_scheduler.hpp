#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "orbinel/export.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel::headless {

/// A scheduler that runs nothing by itself: a test or a player pumps it, and so decides when work runs.
///
/// Work of both queues stands on one timeline and runs in the order in which it falls due, what falls due at the same
/// moment in the order in which it was handed over. Work of the global queue really runs on another thread, but the
/// pump waits for each piece: the same calls give the same run.
///
/// Clock: a virtual one counts microseconds and moves only by `advance` and `jump`; with the real one, work falls due
/// as time passes, and still runs only when pumped.
///
/// Threads: the thread that makes it is the main thread; it alone pumps, and ends the scheduler while it does not pump.
class ORBINEL_API HeadlessScheduler final : public platform::Scheduler {
public:
    /// A virtual clock that stands at so many seconds since 1970.
    explicit HeadlessScheduler(double start);

    /// The real clock.
    struct RealClock {};
    explicit HeadlessScheduler(RealClock);

    ~HeadlessScheduler() override;

    /// Runs what is due, and what falls due by it, until nothing is. May be called within main work.
    void runUntilIdle();

    /// Moves a virtual clock on by so many seconds. Stops at each moment at which work falls due (the present one and
    /// the last one included), where `now` is exactly that moment, runs what is due there, and calls `settle`, where
    /// given: a player waits there for what goes on outside, such as real HTTP. Does nothing with the real clock.
    void advance(double seconds, const std::function<void()>& settle = {});

    /// Moves a virtual clock on without running anything, as when a device has slept. What has fallen due by then runs
    /// with the next pump, repeated work once. Does nothing with the real clock.
    void jump(double seconds);

    /// Waits, in real time, until work is due or the time-out has passed; true when work is due. On a virtual clock
    /// only other threads can bring such work about.
    bool waitForWork(std::chrono::milliseconds timeout);

    /// Whether `runUntilIdle` would run anything.
    [[nodiscard]] bool hasDueWork() const;

    /// When the next work falls due or fell due, in seconds since 1970; nothing where there is none.
    [[nodiscard]] std::optional<double> nextDueTime() const;

    /// The device's time zone (IANA); UTC until set, and for a name that is unknown.
    void setTimeZone(const std::string& name);

    [[nodiscard]] double now() const noexcept override;
    [[nodiscard]] platform::LocalTime localTime(double secondsSince1970) const noexcept override;
    [[nodiscard]] bool isMain() const noexcept override;
    void postMain(platform::Task task) noexcept override;
    [[nodiscard]] platform::Ticket postMainAfter(std::chrono::milliseconds delay,
                                                 platform::Task task) noexcept override;
    void postGlobal(platform::Task task) noexcept override;
    [[nodiscard]] platform::Ticket postGlobalAfter(std::chrono::milliseconds delay,
                                                   platform::Task task) noexcept override;
    [[nodiscard]] platform::Ticket repeatOnMain(std::chrono::milliseconds interval,
                                                platform::Task task) noexcept override;

private:
    struct State;

    const std::shared_ptr<State> state_;  // tickets look for it, and may outlive it
};

}  // namespace orbinel::headless
