#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <memory>
#include <string>

#include "hosts/gtk/gobject.hpp"
#include "hosts/gtk/gtk_view.hpp"
#include "hosts/gtk/keyboard_focus.hpp"
#include "hosts/gtk/sandbox_probe.hpp"
#include "orbinel/platform/views.hpp"

namespace orbinel::hosts {

/// Views over what a window shows. The window's child is wrapped into a GtkOverlay, and wrapped again whenever the
/// application sets another one.
class GtkViews final : public platform::Views {
public:
    explicit GtkViews(GtkWindow* window);
    ~GtkViews() override;
    GtkViews(const GtkViews&) = delete;
    GtkViews& operator=(const GtkViews&) = delete;

    [[nodiscard]] bool isKeyboardOpen() const noexcept override { return keyboard_->isOpen(); }
    [[nodiscard]] std::shared_ptr<platform::View> overlay() noexcept override;
    void setOverlayVisible(bool visible, double seconds) noexcept override;
    [[nodiscard]] std::shared_ptr<platform::View> makeView(platform::Backdrop backdrop) noexcept override;
    [[nodiscard]] std::shared_ptr<platform::View> makeCloseButton(std::string accessibleName,
                                                                  std::function<void()> pressed) noexcept override;
    [[nodiscard]] platform::WebViewOrReason makeWebView(
        platform::WebViewSettings settings, std::weak_ptr<platform::WebViewDelegate> delegate) noexcept override;

private:
    using Signals = SignalConnections<GtkViews>;

    static void childChanged(GtkWindow*, GParamSpec*, gpointer self) noexcept;
    static void focusChanged(GtkWindow*, GParamSpec*, gpointer self) noexcept;
    static void mapped(GtkWidget* window, gpointer self) noexcept;

    [[nodiscard]] bool windowIsThere() const;
    void wrapChild();
    void mirrorFocus();

    const WeakObject<GtkWindow> window_;  // a reference would keep it from ending
    const ObjectPointer<GtkOverlay> stack_;
    bool wrapping_ = false;
    SandboxProbe sandbox_;
    const std::shared_ptr<KeyboardFocus> keyboard_ = std::make_shared<KeyboardFocus>();
    const std::shared_ptr<GtkView> curtain_;  // holds the overlay view, so that its alpha is the caller's
    const std::shared_ptr<GtkView> overlay_;
    Signals signals_{*this};
};

}  // namespace orbinel::hosts
