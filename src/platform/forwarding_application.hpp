#pragma once

#include <memory>
#include <utility>

#include "orbinel/platform/application.hpp"

namespace orbinel::platform {

/// Hands every call on to another application service; derive from it to change one answer.
class ForwardingApplication : public Application {
public:
    explicit ForwardingApplication(std::shared_ptr<Application> target) : target_(std::move(target)) {}

    bool backgroundMaySuspend() const noexcept override { return target_->backgroundMaySuspend(); }
    bool isPortrait() const noexcept override { return target_->isPortrait(); }
    ApplicationState state() const noexcept override { return target_->state(); }
    ApplicationBundle bundle() const noexcept override { return target_->bundle(); }
    void openUrl(const std::string& url, std::function<void(bool)> completion) noexcept override {
        target_->openUrl(url, std::move(completion));
    }
    void openSettings() noexcept override { target_->openSettings(); }
    void openNotificationSettings() noexcept override { target_->openNotificationSettings(); }
    void setDelegate(std::shared_ptr<Delegate> delegate) noexcept override {
        target_->setDelegate(std::move(delegate));
    }
    std::shared_ptr<Delegate> delegate() const noexcept override { return target_->delegate(); }
    Ticket observeDelegate(DelegateObserver observer) noexcept override {
        return target_->observeDelegate(std::move(observer));
    }
    void connectScene(const std::shared_ptr<Delegate>& delegate) noexcept override { target_->connectScene(delegate); }
    Ticket observeScenes(DelegateObserver observer) noexcept override {
        return target_->observeScenes(std::move(observer));
    }

protected:
    const std::shared_ptr<Application> target_;
};

}  // namespace orbinel::platform
