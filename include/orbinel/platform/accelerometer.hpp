#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <variant>

#include "orbinel/platform/ticket.hpp"

namespace orbinel::platform {

/// In g, along each axis of the device.
struct Acceleration {
    double x = 0;
    double y = 0;
    double z = 0;
};

/// A sample, or one sentence why the platform could not deliver it.
using AccelerationOrReason = std::variant<Acceleration, std::string>;

/// The device's accelerometer.
///
/// Threads: main thread; samples arrive on the main queue, never inside `start`.
class Accelerometer {
public:
    virtual ~Accelerometer() = default;

    /// Answers at once: a service that has not said that it has one has none.
    [[nodiscard]] virtual bool isAvailable() const noexcept = 0;

    /// Delivers a sample about every `interval` until the ticket is gone. Only one at a time is asked for.
    [[nodiscard]] virtual Ticket start(std::chrono::milliseconds interval,
                                       std::function<void(const AccelerationOrReason&)> handler) noexcept = 0;
};

}  // namespace orbinel::platform
