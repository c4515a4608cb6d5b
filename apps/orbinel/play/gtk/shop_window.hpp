#pragma once

#include <gtk/gtk.h>

#include "hosts/gtk/gobject.hpp"

namespace orbinel::tool {

/// A window of a phone's size that shows a page of a shop: something for messages to lie over.
class ShopWindow {
public:
    ShopWindow();
    ~ShopWindow();
    ShopWindow(const ShopWindow&) = delete;
    ShopWindow& operator=(const ShopWindow&) = delete;

    [[nodiscard]] GtkWindow* get() const { return window_.get(); }

private:
    const hosts::ObjectPointer<GtkWindow> window_;
};

}  // namespace orbinel::tool
