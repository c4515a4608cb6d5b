#pragma once

#include <gtk/gtk.h>

#include <atomic>
#include <memory>
#include <utility>

#include "hosts/common/application_delegates.hpp"
#include "hosts/gtk/deferred_calls.hpp"
#include "hosts/gtk/foreground.hpp"
#include "hosts/gtk/gobject.hpp"
#include "hosts/gtk/opened_links.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/notification_centre.hpp"

namespace orbinel::hosts {

/// An application with windows: in the foreground as they are, upright while the given one is at least as high as wide.
/// It tells the notification centre when it turns, at the next turn of the main loop.
///
/// What the package says comes from the application that it stands in for.
class WindowedApplication final : public platform::Application {
public:
    WindowedApplication(GtkWindow* window, std::shared_ptr<const platform::Application> package,
                        std::shared_ptr<platform::NotificationCentre> notifications);

    [[nodiscard]] bool backgroundMaySuspend() const noexcept override { return package_->backgroundMaySuspend(); }
    [[nodiscard]] bool isPortrait() const noexcept override { return portrait_; }
    [[nodiscard]] platform::ApplicationState state() const noexcept override { return foreground_.state(); }
    [[nodiscard]] platform::ApplicationBundle bundle() const noexcept override { return package_->bundle(); }

    void openUrl(const std::string& url, std::function<void(bool opened)> completion) noexcept override;
    void openSettings() noexcept override;
    void openNotificationSettings() noexcept override;

    void setDelegate(std::shared_ptr<platform::Delegate> delegate) noexcept override {
        if (delegate != nullptr) openedLinks_.delegateIsSet(*delegate);
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
    using Signals = SignalConnections<WindowedApplication>;

    static void realized(GtkWidget* window, gpointer self) noexcept;
    static void laidOut(GdkSurface*, int width, int height, gpointer self) noexcept;

    void followShape(GtkWidget* window);
    void setShape(int width, int height);

    const std::shared_ptr<const platform::Application> package_;
    const std::shared_ptr<platform::NotificationCentre> notifications_;
    ApplicationDelegates delegates_;
    OpenedLinks openedLinks_{*this};
    Foreground foreground_;
    std::atomic<bool> portrait_{true};
    bool upright_ = true;  // as the window is; told at the next turn
    DeferredCalls turns_;
    Signals signals_{*this};
};

}  // namespace orbinel::hosts
