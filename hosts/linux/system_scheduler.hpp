#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "orbinel/platform/scheduler.hpp"

namespace orbinel::hosts {

/// The clock of the machine, a main queue that the application pumps, two background threads and one for timers.
///
/// The application runs the main queue itself (`run`, `runUntil`, `runMainQueue`) or lets GLib's main loop wake it
/// (`attachToGlibMainContext`). Main is the thread that made the scheduler until another one runs the queue.
class SystemScheduler final : public platform::Scheduler {
public:
    SystemScheduler();
    ~SystemScheduler() override;
    SystemScheduler(const SystemScheduler&) = delete;
    SystemScheduler& operator=(const SystemScheduler&) = delete;

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

    /// Runs what is due on the main queue, and what that posts, without waiting; how many tasks it ran.
    std::size_t runMainQueue();

    /// Runs the main queue until the predicate, asked before each task, holds; false when the limit passes first.
    bool runUntil(const std::function<bool()>& predicate, std::chrono::milliseconds limit);

    /// Runs the main queue until `quit`, which may be called from any thread.
    void run();
    void quit() noexcept;

    /// From now on GLib's default main context runs the main queue whenever the application iterates it.
    void attachToGlibMainContext();

private:
    struct Machinery;

    const std::shared_ptr<Machinery> machinery_;
};

}  // namespace orbinel::hosts
