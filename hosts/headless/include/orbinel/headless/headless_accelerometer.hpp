#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "orbinel/export.hpp"
#include "orbinel/platform/accelerometer.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel::headless {

/// An accelerometer that feels what a test says, and nothing by itself. At first it is there.
///
/// Threads: main.
class ORBINEL_API HeadlessAccelerometer final : public platform::Accelerometer {
public:
    /// Samples arrive on the scheduler's main queue.
    explicit HeadlessAccelerometer(std::shared_ptr<platform::Scheduler> scheduler);
    ~HeadlessAccelerometer() override;

    void setAvailable(bool available);

    /// Delivers one sample, in g, to whoever has started the accelerometer by the time it arrives.
    void sample(double x, double y, double z);

    /// Delivers a failure instead.
    void fail(const std::string& reason);

    /// Whether samples are asked for, and how often.
    [[nodiscard]] bool isStarted() const;
    [[nodiscard]] std::chrono::milliseconds interval() const;

    [[nodiscard]] bool isAvailable() const noexcept override;
    [[nodiscard]] platform::Ticket start(
        std::chrono::milliseconds interval,
        std::function<void(const platform::AccelerationOrReason&)> handler) noexcept override;

private:
    struct State;

    void deliver(platform::AccelerationOrReason sample);

    const std::shared_ptr<platform::Scheduler> scheduler_;
    const std::shared_ptr<State> state_;  // tickets and samples under way look for it, and may outlive it
};

}  // namespace orbinel::headless
