#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/accelerometer.hpp"

namespace orbinel::platform {

/// Hands every call on to another accelerometer; derive from it to change one method.
class ForwardingAccelerometer : public Accelerometer {
public:
    explicit ForwardingAccelerometer(std::shared_ptr<Accelerometer> target) : target_(std::move(target)) {}

    bool isAvailable() const noexcept override { return target_->isAvailable(); }
    Ticket start(std::chrono::milliseconds interval,
                 std::function<void(const AccelerationOrReason&)> handler) noexcept override {
        return target_->start(interval, std::move(handler));
    }

protected:
    const std::shared_ptr<Accelerometer> target_;
};

}  // namespace orbinel::platform
