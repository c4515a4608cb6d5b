#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "orbinel/platform/ticket.hpp"

namespace orbinel::platform {

/// A moment as a person reads it on this device.
struct LocalTime {
    int year = 1970;
    int month = 1;  // 1 to 12
    int day = 1;    // 1 to 31
    int hour = 0;
    int minute = 0;
    int second = 0;
    int millisecond = 0;
};

using Task = std::function<void()>;

/// The clock and the queues. They are one service because a virtual clock has to move both.
///
/// The main queue is where the application's main thread takes its work; the global queue runs work on background
/// threads. A task that throws is the caller's mistake: the library only hands over tasks that do not.
///
/// Threads: every method may be called from any thread.
/// Ending: destroying the service drops what has not begun, without running it, and waits for what has.
class Scheduler {
public:
    virtual ~Scheduler() = default;

    /// Seconds since 1970-01-01 UTC, with fractions. May jump when the person sets the clock.
    [[nodiscard]] virtual double now() const noexcept = 0;

    /// The given moment (seconds since 1970) in the device's own time zone as it is now. A moment outside the years 1
    /// to 9999 is held at the nearer end; fractions of a millisecond are dropped.
    [[nodiscard]] virtual LocalTime localTime(double secondsSince1970) const noexcept = 0;

    /// Whether the calling thread is the one that runs the main queue.
    [[nodiscard]] virtual bool isMain() const noexcept = 0;

    /// Runs the task on the main queue, never inside this call. Tasks keep their order.
    virtual void postMain(Task task) noexcept = 0;

    /// Runs the task on the main queue once the delay has passed, unless the ticket is gone by then. Dropping the
    /// ticket on the main thread guarantees that the task does not run; on another thread it may be running already.
    [[nodiscard]] virtual Ticket postMainAfter(std::chrono::milliseconds delay, Task task) noexcept = 0;

    /// Runs the task on a background thread, never inside this call. No order is kept.
    virtual void postGlobal(Task task) noexcept = 0;

    /// The same after a delay, unless the ticket is gone by then.
    [[nodiscard]] virtual Ticket postGlobalAfter(std::chrono::milliseconds delay, Task task) noexcept = 0;

    /// Runs the task on the main queue every `interval` (held at one millisecond or more) until the ticket is gone.
    /// Ticks that were missed are not made up for.
    [[nodiscard]] virtual Ticket repeatOnMain(std::chrono::milliseconds interval, Task task) noexcept = 0;
};

}  // namespace orbinel::platform
