#pragma once

#include <memory>
#include <utility>

#include "hosts/common/application_delegates.hpp"
#include "hosts/common/callable.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel::hosts {

/// An application without a window: it is always active and upright, what its package says was told at the start, and
/// it opens nothing.
class LinuxApplication final : public platform::Application {
public:
    LinuxApplication(platform::ApplicationBundle bundle, bool backgroundMaySuspend,
                     std::shared_ptr<platform::Scheduler> scheduler)
        : bundle_(std::move(bundle)), backgroundMaySuspend_(backgroundMaySuspend), scheduler_(std::move(scheduler)) {}

    [[nodiscard]] bool backgroundMaySuspend() const noexcept override { return backgroundMaySuspend_; }
    [[nodiscard]] bool isPortrait() const noexcept override { return true; }
    [[nodiscard]] platform::ApplicationState state() const noexcept override {
        return platform::ApplicationState::active;
    }
    [[nodiscard]] platform::ApplicationBundle bundle() const noexcept override { return bundle_; }

    void openUrl(const std::string&, std::function<void(bool opened)> completion) noexcept override {
        scheduler_->postMain([completion = callable(std::move(completion))] { completion(false); });
    }
    void openSettings() noexcept override {}
    void openNotificationSettings() noexcept override {}

    void setDelegate(std::shared_ptr<platform::Delegate> delegate) noexcept override {
        delegates_.setDelegate(std::move(delegate));
    }
    [[nodiscard]] std::shared_ptr<platform::Delegate> delegate() const noexcept override {
        return delegates_.delegate();
    }
    [[nodiscard]] platform::Ticket observeDelegate(DelegateObserver observer) noexcept override {
        return delegates_.observeDelegate(std::move(observer));
    }
    void connectScene(const std::shared_ptr<platform::Delegate>& delegate) noexcept override {
        delegates_.connectScene(delegate);
    }
    [[nodiscard]] platform::Ticket observeScenes(DelegateObserver observer) noexcept override {
        return delegates_.observeScenes(std::move(observer));
    }

private:
    const platform::ApplicationBundle bundle_;
    const bool backgroundMaySuspend_;
    const std::shared_ptr<platform::Scheduler> scheduler_;
    ApplicationDelegates delegates_;
};

}  // namespace orbinel::hosts
