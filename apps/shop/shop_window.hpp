#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "shop/activity_log.hpp"
#include "shop/drawer.hpp"
#include "shop/history.hpp"
#include "shop/navigation_bar.hpp"
#include "shop/pages/page.hpp"
#include "shop/shop.hpp"
#include "shop/widgets/toast.hpp"
#include "shop/widgets/ui.hpp"

namespace shop {

class HomePage;
class ProductPage;
class ThanksPage;

/// The window: header, pages, navigation and drawer, from a telephone's width to a desktop's.
///
/// It exists before the library is started, since that lies over it, and gets its pages afterwards.
class ShopWindow final : private Navigator {
public:
    static constexpr int phoneWidth = 390;
    static constexpr int phoneHeight = 844;

    ShopWindow(std::shared_ptr<ActivityLog> log, Action closed);
    ~ShopWindow() override;
    ShopWindow(const ShopWindow&) = delete;
    ShopWindow& operator=(const ShopWindow&) = delete;

    [[nodiscard]] GtkWindow* get() const { return window_.get(); }

    /// Puts the pages in, and has what the library tells take effect on them. `shop` stays until `end`.
    void fill(Shop& shop);

    /// Takes the window away.
    void end();

    void openDrawer(bool open);
    void goTo(PageName page) { open(page); }
    void goTo(const Product& product) { openProduct(product); }

    /// Null on every page but a product's.
    [[nodiscard]] const Product* product() const { return history_.here().product; }

private:
    void open(PageName page) override;
    void openProduct(const Product& product) override;
    void openCategory(const std::string& category) override;
    void openLink(const std::string& link) override;
    void say(const std::string& sentence) override { toast_.say(sentence); }

    void addPages(Shop& shop);
    void add(PageName name, std::unique_ptr<Page> page);
    void listen(Shop& shop);
    void takeIntoCart(Shop& shop, const std::vector<std::string>& productIds);
    void back();
    void show();
    [[nodiscard]] GtkWidget* newHeader();
    [[nodiscard]] GtkWidget* newBody();
    void followSize();
    void applySize();
    void arrange();
    void changeShape();

    const ObjectPointer<GtkWindow> window_;
    GtkWidget* const stack_;
    GtkWidget* const title_;
    GtkWidget* back_ = nullptr;
    GtkWidget* main_ = nullptr;
    GtkWidget* topEdge_ = nullptr;  // the navigation above, in the width of the page
    NavigationBar topNavigation_;
    NavigationBar bottomNavigation_;
    Toast toast_;
    Drawer drawer_;
    std::map<PageName, std::unique_ptr<Page>> pages_;
    HomePage* home_ = nullptr;
    ProductPage* product_ = nullptr;
    ThanksPage* thanks_ = nullptr;
    const Catalogue* catalogue_ = nullptr;
    History history_;
    int width_ = phoneWidth;
    bool wide_ = false;
    bool roomy_ = false;  // room for two columns on the page, beside the drawer
    bool drawerIsOpen_ = false;
    bool ended_ = false;
    guint resized_ = 0;  // an idle source, or 0
};

}  // namespace shop
