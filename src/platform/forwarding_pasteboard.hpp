#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/pasteboard.hpp"

namespace orbinel::platform {

/// Hands every call on to another pasteboard; derive from it to change one method.
class ForwardingPasteboard : public Pasteboard {
public:
    explicit ForwardingPasteboard(std::shared_ptr<Pasteboard> target) : target_(std::move(target)) {}

    void setText(const std::string& text) noexcept override { target_->setText(text); }

protected:
    const std::shared_ptr<Pasteboard> target_;
};

}  // namespace orbinel::platform
