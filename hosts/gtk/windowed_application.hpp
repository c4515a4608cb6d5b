#pragma once

#include <gtk/gtk.h>

#include <atomic>
#include <memory>

#include "hosts/gtk/deferred_calls.hpp"
#include "hosts/gtk/gobject.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/notification_centre.hpp"

namespace orbinel::hosts {

/// An application with windows: active while one of them is, upright while the given one is at least as high as wide.
/// It tells the notification centre when it becomes active and when it turns, at the next turn of the main loop. The
/// keyboard passes from one of its windows to another with a gap between, during which it stays active.
///
/// What the package says comes from the application that it stands in for.
class WindowedApplication final : public platform::Application {
public:
    WindowedApplication(GtkWindow* window, std::shared_ptr<const platform::Application> package,
                        std::shared_ptr<platform::NotificationCentre> notifications);
    ~WindowedApplication() override;
    WindowedApplication(const WindowedApplication&) = delete;
    WindowedApplication& operator=(const WindowedApplication&) = delete;

    [[nodiscard]] bool backgroundMaySuspend() const noexcept override { return package_->backgroundMaySuspend(); }
    [[nodiscard]] bool isPortrait() const noexcept override { return portrait_; }
    [[nodiscard]] platform::ApplicationState state() const noexcept override { return state_; }
    [[nodiscard]] platform::ApplicationBundle bundle() const noexcept override { return package_->bundle(); }

    void openUrl(const std::string& url, std::function<void(bool opened)> completion) noexcept override;
    void openSettings() noexcept override;
    void openNotificationSettings() noexcept override;

private:
    using Signals = SignalConnections<WindowedApplication>;

    static void windowsChanged(GListModel* windows, guint position, guint removed, guint added, gpointer self) noexcept;
    static void activeChanged(GtkWindow*, GParamSpec*, gpointer self) noexcept;
    static void realized(GtkWidget* window, gpointer self) noexcept;
    static void laidOut(GdkSurface*, int width, int height, gpointer self) noexcept;

    void follow(GListModel* windows, guint position, guint count);
    void followShape(GtkWidget* window);
    static gboolean gapIsOver(gpointer self) noexcept;

    void lookSoon();
    void look();
    void waitForAnotherWindow();

    const std::shared_ptr<const platform::Application> package_;
    const std::shared_ptr<platform::NotificationCentre> notifications_;
    std::atomic<platform::ApplicationState> state_{platform::ApplicationState::inactive};
    std::atomic<bool> portrait_{true};
    bool upright_ = true;  // as the window is; told at the next look
    guint gap_ = 0;        // timer
    DeferredCalls looks_;
    Signals signals_{*this};
};

}  // namespace orbinel::hosts
