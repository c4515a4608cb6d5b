#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <vector>

#include "shop/pages/page.hpp"

namespace shop {

/// Which of the five destinations a page belongs to; one of them to itself.
[[nodiscard]] PageName destinationOf(PageName page);

/// The five destinations in a row, with the number of things in the cart on its own.
class NavigationBar {
public:
    using Open = std::function<void(PageName destination)>;

    NavigationBar(const char* style, const Open& open);

    [[nodiscard]] GtkWidget* widget() const { return row_; }

    void choose(PageName destination);
    void showCartCount(int count);

private:
    struct Button {
        PageName page;
        GtkWidget* button;
        GtkWidget* badge;
    };

    GtkWidget* const row_;
    std::vector<Button> buttons_;
};

}  // namespace shop
