#pragma once

#include <gtk/gtk.h>

#include <memory>

#include "shop/activity_log.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

/// A side of the window that lists what the library just did, the newest on top.
class Drawer {
public:
    Drawer(std::shared_ptr<ActivityLog> log, Action close);
    ~Drawer();
    Drawer(const Drawer&) = delete;
    Drawer& operator=(const Drawer&) = delete;

    [[nodiscard]] GtkWidget* widget() const { return box_; }

    /// Whether the window stands upright, as messages need it.
    void setUpright(bool upright);

private:
    void add(const Activity& activity);

    const std::shared_ptr<ActivityLog> log_;
    GtkWidget* const box_;
    GtkWidget* const hint_;
    GtkWidget* const list_;
    int rows_ = 0;
};

}  // namespace shop
