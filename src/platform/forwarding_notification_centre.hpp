#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/notification_centre.hpp"

namespace orbinel::platform {

/// Hands every call on to another notification centre; derive from it to watch or withhold notifications.
class ForwardingNotificationCentre : public NotificationCentre {
public:
    explicit ForwardingNotificationCentre(std::shared_ptr<NotificationCentre> target) : target_(std::move(target)) {}

    void post(std::string_view name, const Dictionary& info) noexcept override { target_->post(name, info); }
    Ticket addObserver(std::string_view name, Observer observer) noexcept override {
        return target_->addObserver(name, std::move(observer));
    }

protected:
    const std::shared_ptr<NotificationCentre> target_;
};

}  // namespace orbinel::platform
