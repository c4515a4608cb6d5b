#pragma once

#include <functional>
#include <string>

#include "shop/pages/page.hpp"
#include "shop/shop.hpp"

namespace shop {

/// What the person allows, and what a developer may want to see.
class PrivacyPage final : public Page {
public:
    PrivacyPage(Shop& shop, Navigator& navigator);

    [[nodiscard]] GtkWidget* widget() const override { return page_; }
    [[nodiscard]] std::string title() const override { return "Privacy"; }

private:
    using Switched = std::function<void(bool on)>;

    void addConsents(GtkWidget* content);
    void addCollection(GtkWidget* content);
    void addMessages(GtkWidget* content);
    void addDeveloper(GtkWidget* content);
    [[nodiscard]] GtkWidget* newPreference(const char* title, const char* text, bool Preferences::*preference);

    Shop& shop_;
    Navigator& navigator_;
    GtkWidget* page_ = nullptr;
};

}  // namespace shop
