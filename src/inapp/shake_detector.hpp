#pragma once

#include <functional>
#include <optional>

#include "base/lifetime.hpp"
#include "base/reports.hpp"
#include "inapp/collaborators.hpp"
#include "inapp/main_thread.hpp"
#include "orbinel/platform/accelerometer.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel {

/// Watches the accelerometer for the device being shaken: an acceleration of more than 2.5 g along any axis. A second
/// has to pass before another shake counts, also when the detector was stopped and started in between.
///
/// Threads: main, where nothing else is said.
class ShakeDetector final : public InappShakeDetector {
public:
    static constexpr double accelerationThreshold = 2.5;  // g
    static constexpr double shakeThresholdTime = 1.0;     // seconds

    struct Needs {
        Reports& reports;
        const Lifetime& lifetime;
        platform::Scheduler& scheduler;
        platform::Accelerometer& accelerometer;
    };

    explicit ShakeDetector(const Needs& needs);

    /// The callback runs at every shake. While the detector runs, the first callback stays in force.
    void startObservingWithCallback(std::function<void()> callback) noexcept;
    void stopObserving() noexcept;

    /// Stops observing. Any thread: moved to the main queue where it is another.
    void destroyShakeDetector() noexcept override;

    [[nodiscard]] bool isObserving() const noexcept override { return observation_.has_value(); }

private:
    void start(std::function<void()> callback);
    void take(const platform::AccelerationOrReason& sample);
    [[nodiscard]] bool isFirstOfItsSecond();
    void log(LogLevel level, std::string_view message) noexcept {
        reports_.log(LogType::shakeDetector, level, message);
    }

    Reports& reports_;
    const Lifetime& lifetime_;
    platform::Scheduler& scheduler_;
    const MainThread mainThread_;
    platform::Accelerometer& accelerometer_;

    std::optional<platform::Ticket> observation_;  // only while observing
    std::function<void()> callback_;
    double lastShakeTime_ = 0;  // seconds since 1970
};

}  // namespace orbinel
