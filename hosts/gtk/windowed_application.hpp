#pragma once

#include <gtk/gtk.h>

#include <atomic>
#include <memory>
#include <utility>

#include "hosts/gtk/deferred_calls.hpp"
#include "hosts/gtk/foreground.hpp"
#include "hosts/gtk/gobject.hpp"
#include "hosts/gtk/opened_links.hpp"
#include "orbinel/platform/notification_centre.hpp"
#include "platform/forwarding_application.hpp"

namespace orbinel::hosts {

/// An application with windows: in the foreground as they are, upright while the given one is at least as high as wide.
/// It tells the notification centre when it turns, at the next turn of the main loop.
///
/// What the package says, and who the delegates are, comes from the application that it stands in for.
class WindowedApplication final : public platform::ForwardingApplication {
public:
    WindowedApplication(GtkWindow* window, std::shared_ptr<platform::Application> package,
                        std::shared_ptr<platform::NotificationCentre> notifications);

    [[nodiscard]] bool isPortrait() const noexcept override { return portrait_; }
    [[nodiscard]] platform::ApplicationState state() const noexcept override { return foreground_.state(); }

    void openUrl(const std::string& url, std::function<void(bool opened)> completion) noexcept override;
    void openSettings() noexcept override;
    void openNotificationSettings() noexcept override;

    void setDelegate(std::shared_ptr<platform::Delegate> delegate) noexcept override {
        if (delegate != nullptr) openedLinks_.delegateIsSet(*delegate);
        ForwardingApplication::setDelegate(std::move(delegate));
    }

private:
    using Signals = SignalConnections<WindowedApplication>;

    static void realized(GtkWidget* window, gpointer self) noexcept;
    static void laidOut(GdkSurface*, int width, int height, gpointer self) noexcept;

    void followShape(GtkWidget* window);
    void setShape(int width, int height);

    const std::shared_ptr<platform::NotificationCentre> notifications_;
    OpenedLinks openedLinks_{*this};
    Foreground foreground_;
    std::atomic<bool> portrait_{true};
    bool upright_ = true;  // as the window is; told at the next turn
    DeferredCalls turns_;
    Signals signals_{*this};
};

}  // namespace orbinel::hosts
