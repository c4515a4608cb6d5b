#pragma once

#include <filesystem>
#include <memory>

#include "orbinel/platform/accelerometer.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel::hosts {

/// The accelerometer as the kernel shows it (industrial I/O), with the axes as the sensor is mounted. The desktop's
/// sensor service is not asked: it tells orientations, no accelerations.
///
/// Files are only read on background threads. A device is looked for once, from the start on.
class IioAccelerometer final : public platform::Accelerometer {
public:
    explicit IioAccelerometer(std::shared_ptr<platform::Scheduler> scheduler,
                              const std::filesystem::path& devices = "/sys/bus/iio/devices");

    [[nodiscard]] bool isAvailable() const noexcept override;
    [[nodiscard]] platform::Ticket start(
        std::chrono::milliseconds interval,
        std::function<void(const platform::AccelerationOrReason&)> handler) noexcept override;

private:
    struct Sensor;

    const std::shared_ptr<platform::Scheduler> scheduler_;
    const std::shared_ptr<Sensor> sensor_;
};

}  // namespace orbinel::hosts
