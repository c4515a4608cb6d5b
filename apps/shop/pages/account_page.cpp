#include "shop/pages/account_page.hpp"

#include "shop/widgets/icon.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

AccountPage::AccountPage(Shop& shop, Navigator& navigator) : shop_(shop), navigator_(navigator) {
    form_ = newForm();
    welcome_ = newWelcome();
    auto* content = newColumn(20);
    append(content, {form_, welcome_, newLinks()});
    page_ = newScrolledPage(content, 560);
    shop_.personChanged.follow([this] { show(); });
    show();
}

GtkWidget* AccountPage::newForm() {
    auto* form = newColumn(14, {"card", "form"});
    append(form,
           {newText("Log in", {"heading"}),
            newText("Any name and address will do: they stay on this machine and go to the local backend.", {"muted"}),
            name_.widget(), email_.widget(), named(newButton("Log in", {"primary"}, [this] { logIn(); }), "log-in")});
    return form;
}

GtkWidget* AccountPage::newWelcome() {
    greeting_ = newText("", {"heading"});
    address_ = newText("", {"muted"});
    auto* welcome = newColumn(10, {"card", "form"});
    auto* logOut = newButton("Log out", {"plain"}, [this] {
        shop_.logOut();
        navigator_.say("You are logged out.");
    });
    append(welcome, {greeting_, address_, named(logOut, "log-out")});
    return welcome;
}

GtkWidget* AccountPage::newLinks() {
    struct Link {
        const char* text;
        Symbol symbol;
        PageName page;
    };
    constexpr Link links[] = {{"Messages", Symbol::bell, PageName::messages},
                              {"Wishlist", Symbol::heart, PageName::wishlist},
                              {"Privacy and settings", Symbol::list, PageName::privacy}};
    auto* list = newColumn(0, {"card", "rows"});
    for (const auto& link : links) {
        auto* row = newRow(14);
        append(row, {newIcon(link.symbol, 20), newLabel(link.text)});
        auto* button = newButton(row, link.text, {"flat", "row"}, [this, page = link.page] { navigator_.open(page); });
        gtk_widget_set_tooltip_text(button, nullptr);
        gtk_box_append(GTK_BOX(list), button);
    }
    return list;
}

void AccountPage::show() {
    const auto& preferences = shop_.preferences();
    setText(greeting_, "Good to see you, " + preferences.person.name);
    setText(address_, "Logged in as " + preferences.person.email);
    gtk_widget_set_visible(form_, !preferences.isLoggedIn());
    gtk_widget_set_visible(welcome_, preferences.isLoggedIn());
}

void AccountPage::logIn() {
    const Person person{name_.text(), email_.text()};
    name_.complain(person.name.empty() ? "Please tell us your first name." : "");
    email_.complain(looksLikeEmail(person.email) ? "" : "Please enter an e-mail address, such as ada@shop.example.");
    if (person.name.empty()) return name_.focus();
    if (!looksLikeEmail(person.email)) return email_.focus();
    shop_.logIn(person);
    navigator_.say("Welcome, " + person.name + ".");
}

}  // namespace shop
