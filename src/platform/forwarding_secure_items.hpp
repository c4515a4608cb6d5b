#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/secure_items.hpp"

namespace orbinel::platform {

/// Hands every call on to another secure item store; derive from it to make one fail.
class ForwardingSecureItems : public SecureItems {
public:
    explicit ForwardingSecureItems(std::shared_ptr<SecureItems> target) : target_(std::move(target)) {}

    std::optional<std::string> find(std::string_view service, std::string_view account) const noexcept override {
        return target_->find(service, account);
    }
    bool store(std::string_view service, std::string_view account, std::string_view data) noexcept override {
        return target_->store(service, account, data);
    }
    void remove(std::string_view service, std::string_view account) noexcept override {
        target_->remove(service, account);
    }

protected:
    const std::shared_ptr<SecureItems> target_;
};

}  // namespace orbinel::platform
