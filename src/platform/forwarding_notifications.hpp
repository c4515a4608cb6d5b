#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/notifications.hpp"

namespace orbinel::platform {

/// Hands every call on to another notification service; derive from it to change one answer.
class ForwardingNotifications : public Notifications {
public:
    explicit ForwardingNotifications(std::shared_ptr<Notifications> target) : target_(std::move(target)) {}

    void readSettings(std::function<void(NotificationSettings)> completion) noexcept override {
        target_->readSettings(std::move(completion));
    }
    void requestAuthorization(std::int32_t options,
                              std::function<void(std::optional<std::string>)> completion) noexcept override {
        target_->requestAuthorization(options, std::move(completion));
    }
    void registerForRemoteNotifications() noexcept override { target_->registerForRemoteNotifications(); }
    void setDelegate(std::shared_ptr<Delegate> delegate) noexcept override {
        target_->setDelegate(std::move(delegate));
    }
    std::shared_ptr<Delegate> delegate() const noexcept override { return target_->delegate(); }

protected:
    const std::shared_ptr<Notifications> target_;
};

}  // namespace orbinel::platform
