#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/base64.hpp"

namespace orbinel::platform {

/// Hands every call on to another base64 service; derive from it to make one fail.
class ForwardingBase64 : public Base64 {
public:
    explicit ForwardingBase64(std::shared_ptr<Base64> target) : target_(std::move(target)) {}

    std::string encode(std::string_view bytes) const noexcept override { return target_->encode(bytes); }
    std::optional<std::string> decode(std::string_view text) const noexcept override { return target_->decode(text); }

protected:
    const std::shared_ptr<Base64> target_;
};

}  // namespace orbinel::platform
