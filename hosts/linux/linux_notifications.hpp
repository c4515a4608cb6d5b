#pragma once

#include <memory>
#include <utility>

#include "hosts/common/kept_delegate.hpp"
#include "orbinel/platform/notifications.hpp"

namespace orbinel::hosts {

/// No service of the desktop says whether notifications of an application are welcome: never determined, at once.
class LinuxNotifications final : public platform::Notifications {
public:
    void readSettings(std::function<void(platform::NotificationSettings)> completion) noexcept override {
        completion({});
    }
    void requestAuthorization(std::int32_t,
                              std::function<void(std::optional<std::string>)> completion) noexcept override {
        completion("No service of the desktop grants notifications.");
    }
    void registerForRemoteNotifications() noexcept override {}
    void setDelegate(std::shared_ptr<platform::Delegate> delegate) noexcept override {
        delegate_.set(std::move(delegate));
    }
    [[nodiscard]] std::shared_ptr<platform::Delegate> delegate() const noexcept override { return delegate_.get(); }

private:
    KeptDelegate delegate_;
};

}  // namespace orbinel::hosts
