#pragma once

#include <gtk/gtk.h>

#include <chrono>
#include <functional>
#include <string>

#include "hosts/gtk/gobject.hpp"

namespace orbinel::hosts {

/// Iterates GLib's main context until the condition holds; false where it does not in time.
[[nodiscard]] bool turnUntil(const std::function<bool()>& condition,
                             std::chrono::milliseconds limit = std::chrono::seconds{10});

/// Iterates GLib's main context for so long.
void turnFor(std::chrono::milliseconds time);

/// A window on the display, without decoration, as an application makes it: an entry above a button that fills the
/// rest. A person works with it through the display's mouse and keyboard.
class WindowUnderTest {
public:
    WindowUnderTest(int width, int height);
    ~WindowUnderTest();
    WindowUnderTest(const WindowUnderTest&) = delete;
    WindowUnderTest& operator=(const WindowUnderTest&) = delete;

    [[nodiscard]] GtkWindow* get() const { return window_.get(); }
    [[nodiscard]] GtkWidget* entry() const { return entry_; }
    [[nodiscard]] int clicksOnTheButton() const { return clicks_; }

    /// Shows the window; false where it does not become active.
    [[nodiscard]] bool present();
    void click(int x, int y) const;  // points from the upper left corner
    void type(const std::string& text) const;
    void destroy();

    /// The colour of a point of the screen's picture, such as "srgb(255,0,0)".
    [[nodiscard]] std::string colourAt(int x, int y) const;
    /// Keeps the screen's picture where ORBINEL_PICTURES names a directory, to be looked at.
    void keepPicture(const std::string& name) const;

private:
    [[nodiscard]] std::string surface() const;

    ObjectPointer<GtkWindow> window_;
    GtkWidget* entry_ = nullptr;
    int clicks_ = 0;
};

}  // namespace orbinel::hosts
