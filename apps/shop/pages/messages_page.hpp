#pragma once

#include <vector>

#include "shop/pages/page.hpp"
#include "shop/shop.hpp"

namespace shop {

/// The messages that were sent to this device.
class MessagesPage final : public Page {
public:
    MessagesPage(Shop& shop, Navigator& navigator);

    [[nodiscard]] GtkWidget* widget() const override { return page_; }
    [[nodiscard]] std::string title() const override { return "Messages"; }
    void shown() override { read(); }

private:
    void read();
    void show(const std::vector<SentMessage>& messages);
    [[nodiscard]] GtkWidget* newMessage(const SentMessage& message);

    Shop& shop_;
    Navigator& navigator_;
    GtkWidget* const list_;
    GtkWidget* empty_ = nullptr;
    GtkWidget* page_ = nullptr;
};

}  // namespace shop
