#pragma once

#include <gtk/gtk.h>

#include <string>

#include "shop/model/product.hpp"

namespace shop {

enum class PageName { home, product, cart, wishlist, checkout, thanks, account, privacy, messages };

/// Where pages lead the person to.
class Navigator {
public:
    virtual ~Navigator() = default;

    virtual void open(PageName page) = 0;
    virtual void openProduct(const Product& product) = 0;
    virtual void openCategory(const std::string& category) = 0;

    /// "shop://products/ID", "shop://categories/NAME", "shop://cart", …; anything else leads home.
    virtual void openLink(const std::string& link) = 0;

    /// A sentence at the lower edge, for a moment.
    virtual void say(const std::string& sentence) = 0;
};

/// One page of the shop. Its widget lives in the window as long as the page does.
class Page {
public:
    virtual ~Page() = default;

    [[nodiscard]] virtual GtkWidget* widget() const = 0;
    [[nodiscard]] virtual std::string title() const = 0;

    /// The person has come here.
    virtual void shown() {}

    /// Whether there is room for two columns.
    virtual void setWide(bool /*wide*/) {}
};

}  // namespace shop
