#pragma once

#include <functional>
#include <memory>

#include "orbinel/export.hpp"
#include "orbinel/platform/notifications.hpp"

namespace orbinel::headless {

/// The person's settings as a test says they are. Answers inside the call.
class ORBINEL_API HeadlessNotifications final : public platform::Notifications {
public:
    HeadlessNotifications();
    ~HeadlessNotifications() override;

    void setSettings(platform::NotificationSettings settings);

    void readSettings(std::function<void(platform::NotificationSettings)> completion) noexcept override;

private:
    struct State;

    const std::unique_ptr<State> state_;
};

}  // namespace orbinel::headless
