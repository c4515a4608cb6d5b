#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/application.hpp"

namespace orbinel::platform {

/// Hands every call on to another application service; derive from it to change one answer.
class ForwardingApplication : public Application {
public:
    explicit ForwardingApplication(std::shared_ptr<Application> target) : target_(std::move(target)) {}

    bool backgroundMaySuspend() const noexcept override { return target_->backgroundMaySuspend(); }
    bool isPortrait() const noexcept override { return target_->isPortrait(); }
    ApplicationBundle bundle() const noexcept override { return target_->bundle(); }

protected:
    const std::shared_ptr<Application> target_;
};

}  // namespace orbinel::platform
