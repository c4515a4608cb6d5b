#pragma once

#include "shop/pages/page.hpp"
#include "shop/shop.hpp"
#include "shop/widgets/field.hpp"

namespace shop {

/// Logging in and out, and the way to everything that concerns the person.
class AccountPage final : public Page {
public:
    AccountPage(Shop& shop, Navigator& navigator);

    [[nodiscard]] GtkWidget* widget() const override { return page_; }
    [[nodiscard]] std::string title() const override { return "Your account"; }

private:
    [[nodiscard]] GtkWidget* newForm();
    [[nodiscard]] GtkWidget* newWelcome();
    [[nodiscard]] GtkWidget* newLinks();
    void show();
    void logIn();

    Shop& shop_;
    Navigator& navigator_;
    Field name_{"First name", "login-name", GTK_INPUT_PURPOSE_NAME};
    Field email_{"E-mail address", "login-email", GTK_INPUT_PURPOSE_EMAIL};
    GtkWidget* greeting_ = nullptr;
    GtkWidget* address_ = nullptr;
    GtkWidget* form_ = nullptr;
    GtkWidget* welcome_ = nullptr;
    GtkWidget* page_ = nullptr;
};

}  // namespace shop
