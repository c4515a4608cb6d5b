#pragma once

#include <memory>
#include <string_view>

#include "orbinel/platform/notification_centre.hpp"

namespace orbinel::hosts {

/// Notifications within the process. No lock is held while an observer runs.
class InProcessNotificationCentre final : public platform::NotificationCentre {
public:
    InProcessNotificationCentre();
    ~InProcessNotificationCentre() override;

    void post(std::string_view name, const Dictionary& info) noexcept override;
    [[nodiscard]] platform::Ticket addObserver(std::string_view name, Observer observer) noexcept override;

private:
    struct Registry;

    std::shared_ptr<Registry> registry_;  // tickets look for it, and may outlive it
};

}  // namespace orbinel::hosts
