#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/haptics.hpp"

namespace orbinel::platform {

/// Hands every call on to other haptics; derive from it to change one method.
class ForwardingHaptics : public Haptics {
public:
    explicit ForwardingHaptics(std::shared_ptr<Haptics> target) : target_(std::move(target)) {}

    void impact(std::int32_t style) noexcept override { target_->impact(style); }

protected:
    const std::shared_ptr<Haptics> target_;
};

}  // namespace orbinel::platform
