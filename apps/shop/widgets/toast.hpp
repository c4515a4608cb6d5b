#pragma once

#include <gtk/gtk.h>

#include <string>

namespace shop {

/// One sentence at the lower edge of what it lies over, for a moment.
class Toast {
public:
    Toast();
    ~Toast();
    Toast(const Toast&) = delete;
    Toast& operator=(const Toast&) = delete;

    [[nodiscard]] GtkWidget* widget() const { return revealer_; }

    void say(const std::string& sentence);
    void hide();

private:
    void stopWaiting();

    GtkWidget* const text_;
    GtkWidget* const revealer_;
    guint silence_ = 0;  // a timeout, or 0
};

}  // namespace shop
