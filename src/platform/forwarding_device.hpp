#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/device.hpp"

namespace orbinel::platform {

/// Hands every call on to another device service; derive from it to change one answer.
class ForwardingDevice : public Device {
public:
    explicit ForwardingDevice(std::shared_ptr<Device> target) : target_(std::move(target)) {}

    std::shared_ptr<const DeviceFacts> facts() const noexcept override { return target_->facts(); }
    std::string makeUuid() noexcept override { return target_->makeUuid(); }
    bool renewVendorIdentifier() noexcept override { return target_->renewVendorIdentifier(); }

protected:
    const std::shared_ptr<Device> target_;
};

}  // namespace orbinel::platform
