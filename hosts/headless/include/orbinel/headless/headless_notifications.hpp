#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orbinel/export.hpp"
#include "orbinel/platform/notifications.hpp"

namespace orbinel::headless {

/// The person's settings as a test says they are. Answers inside the call.
class ORBINEL_API HeadlessNotifications final : public platform::Notifications {
public:
    HeadlessNotifications();
    ~HeadlessNotifications() override;

    void setSettings(platform::NotificationSettings settings);

    /// What asking for authorization fails with; nothing: it does not fail.
    void setAuthorizationFailure(std::optional<std::string> failure);

    /// The options of each request for authorization, in their order.
    [[nodiscard]] std::vector<std::int32_t> requestedAuthorizations() const;

    /// How often a device token was asked for.
    [[nodiscard]] std::size_t registrations() const;

    void readSettings(std::function<void(platform::NotificationSettings)> completion) noexcept override;
    void requestAuthorization(std::int32_t options,
                              std::function<void(std::optional<std::string> failure)> completion) noexcept override;
    void registerForRemoteNotifications() noexcept override;
    void setDelegate(std::shared_ptr<platform::Delegate> delegate) noexcept override;
    [[nodiscard]] std::shared_ptr<platform::Delegate> delegate() const noexcept override;

private:
    struct State;

    const std::unique_ptr<State> state_;
};

}  // namespace orbinel::headless
