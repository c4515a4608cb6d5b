#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "orbinel/export.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/scheduler.hpp"

namespace orbinel::headless {

/// What was opened outside the application.
struct Opened {
    enum class Where { system, settings, notificationSettings };

    Where where = Where::system;
    std::string url;  // empty for settings

    friend bool operator==(const Opened&, const Opened&) = default;
};

/// The application as a test says it is. At first it is active and upright, its background may suspend the process, its
/// bundle is version 1.0.0 of "com.example.headless" in English, and every URL finds something that opens it.
class ORBINEL_API HeadlessApplication final : public platform::Application {
public:
    /// Completions run on the scheduler's main queue.
    explicit HeadlessApplication(std::shared_ptr<platform::Scheduler> scheduler);
    ~HeadlessApplication() override;

    void setBackgroundMaySuspend(bool maySuspend);
    void setPortrait(bool portrait);
    void setState(platform::ApplicationState state);
    void setBundle(platform::ApplicationBundle bundle);
    void setOpens(bool something);  // whether something opens a URL

    /// Everything that was opened, in its order.
    [[nodiscard]] std::vector<Opened> opened() const;

    [[nodiscard]] bool backgroundMaySuspend() const noexcept override;
    [[nodiscard]] bool isPortrait() const noexcept override;
    [[nodiscard]] platform::ApplicationState state() const noexcept override;
    [[nodiscard]] platform::ApplicationBundle bundle() const noexcept override;
    void openUrl(const std::string& url, std::function<void(bool opened)> completion) noexcept override;
    void openSettings() noexcept override;
    void openNotificationSettings() noexcept override;
    void setDelegate(std::shared_ptr<platform::Delegate> delegate) noexcept override;
    [[nodiscard]] std::shared_ptr<platform::Delegate> delegate() const noexcept override;
    [[nodiscard]] platform::Ticket observeDelegate(DelegateObserver observer) noexcept override;
    void connectScene(const std::shared_ptr<platform::Delegate>& delegate) noexcept override;
    [[nodiscard]] platform::Ticket observeScenes(DelegateObserver observer) noexcept override;

private:
    struct State;

    const std::shared_ptr<platform::Scheduler> scheduler_;
    const std::unique_ptr<State> state_;
};

}  // namespace orbinel::headless
