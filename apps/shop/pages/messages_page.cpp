#include "shop/pages/messages_page.hpp"

#include "shop/widgets/product_card.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

MessagesPage::MessagesPage(Shop& shop, Navigator& navigator)
    : shop_(shop), navigator_(navigator), list_(newColumn(12)) {
    empty_ =
        newEmptyState("No messages yet", "What we send to this device is kept here. It takes a connection to see it.",
                      newButton("Look again", {"plain"}, [this] { read(); }));
    auto* content = newColumn(0);
    append(content, {list_, empty_});
    page_ = newScrolledPage(content, 640);
}

void MessagesPage::read() {
    shop_.engagement.readMessages([this](const auto& messages) { show(messages); });
}

void MessagesPage::show(const std::vector<SentMessage>& messages) {
    removeChildren(list_);
    for (const auto& message : messages) gtk_box_append(GTK_BOX(list_), newMessage(message));
    gtk_widget_set_visible(list_, !messages.empty());
    gtk_widget_set_visible(empty_, messages.empty());
}

GtkWidget* MessagesPage::newMessage(const SentMessage& message) {
    auto* card = newColumn(6, {"card", "form"});
    append(card, {newText(message.title, {"product-name"}), newText(message.text)});
    if (message.link.empty()) return card;
    auto* button = newButton("Take me there", {"plain"}, [this, link = message.link] { navigator_.openLink(link); });
    gtk_widget_set_halign(button, GTK_ALIGN_START);
    gtk_widget_set_margin_top(button, 6);
    append(card, {button});
    return card;
}

}  // namespace shop
