#include "shop/shop_window.hpp"

#include <string_view>
#include <utility>

#include "shop/pages/account_page.hpp"
#include "shop/pages/cart_page.hpp"
#include "shop/pages/checkout_page.hpp"
#include "shop/pages/home_page.hpp"
#include "shop/pages/messages_page.hpp"
#include "shop/pages/privacy_page.hpp"
#include "shop/pages/product_page.hpp"
#include "shop/pages/thanks_page.hpp"
#include "shop/pages/wishlist_page.hpp"
#include "shop/widgets/clamp.hpp"
#include "shop/widgets/icon.hpp"

namespace shop {

namespace {

constexpr int wideFrom = 760;  // points: room for two columns
constexpr int desktopWidth = 1200;
constexpr int desktopHeight = 800;
constexpr int drawerWidth = 340;

std::string stackName(PageName page) { return std::to_string(static_cast<int>(page)); }

gboolean hideInstead(GtkWindow* window, gpointer /*data*/) noexcept {
    gtk_widget_set_visible(GTK_WIDGET(window), FALSE);
    return TRUE;
}

}  // namespace

ShopWindow::ShopWindow(std::shared_ptr<ActivityLog> log, Action closed)
    : window_(retain(GTK_WINDOW(gtk_window_new()))),
      stack_(gtk_stack_new()),
      title_(newLabel("", {"window-title"})),
      topNavigation_("top-navigation", [this](PageName page) { open(page); }),
      bottomNavigation_("bottom-navigation", [this](PageName page) { open(page); }),
      drawer_(std::move(log), [this] { openDrawer(false); }) {
    gtk_window_set_title(get(), "Shop");
    gtk_window_set_default_size(get(), phoneWidth, phoneHeight);
    gtk_widget_add_css_class(GTK_WIDGET(get()), "shop");
    gtk_window_set_titlebar(get(), newHeader());
    gtk_window_set_child(get(), newBody());
    // The window stays until the last session is closed; whoever made it takes it away. The wish to close it ends here.
    connect(get(), "close-request", std::move(closed));
    g_signal_connect(get(), "close-request", G_CALLBACK(&hideInstead), nullptr);
    connect(get(), "realize", [this] { followSize(); });
    openDrawer(false);
}

ShopWindow::~ShopWindow() { end(); }

void ShopWindow::end() {
    if (std::exchange(ended_, true)) return;
    if (resized_ != 0) g_source_remove(std::exchange(resized_, 0));
    toast_.hide();
    gtk_window_destroy(get());
    pages_.clear();
}

GtkWidget* ShopWindow::newHeader() {
    back_ = named(newButton(newIcon(Symbol::back, 18), "Back", {"round"}, [this] { back(); }), "back");
    topEdge_ = newClamp(topNavigation_.widget(), desktopWidth);
    auto* shape =
        newButton(newIcon(Symbol::phone, 18), "Between telephone and desktop", {"round"}, [this] { changeShape(); });
    auto* list = newButton(newIcon(Symbol::list, 18), "What the library does", {"round"},
                           [this] { openDrawer(!drawerIsOpen_); });
    auto* header = gtk_header_bar_new();
    gtk_header_bar_set_title_widget(GTK_HEADER_BAR(header), topEdge_);
    gtk_header_bar_pack_start(GTK_HEADER_BAR(header), back_);
    gtk_header_bar_pack_start(GTK_HEADER_BAR(header), title_);
    gtk_header_bar_pack_end(GTK_HEADER_BAR(header), named(list, "drawer"));
    gtk_header_bar_pack_end(GTK_HEADER_BAR(header), named(shape, "shape"));
    gtk_header_bar_set_decoration_layout(GTK_HEADER_BAR(header), ":close");
    return header;
}

GtkWidget* ShopWindow::newBody() {
    gtk_stack_set_transition_type(GTK_STACK(stack_), GTK_STACK_TRANSITION_TYPE_CROSSFADE);
    gtk_stack_set_hhomogeneous(GTK_STACK(stack_), FALSE);
    gtk_widget_set_vexpand(stack_, TRUE);
    auto* pages = gtk_overlay_new();
    gtk_overlay_set_child(GTK_OVERLAY(pages), stack_);
    gtk_overlay_add_overlay(GTK_OVERLAY(pages), toast_.widget());
    gtk_box_set_homogeneous(GTK_BOX(bottomNavigation_.widget()), TRUE);
    main_ = newColumn(0);
    append(main_, {pages, bottomNavigation_.widget()});
    gtk_widget_set_hexpand(main_, TRUE);
    auto* body = newRow(0);
    append(body, {main_, drawer_.widget()});
    return body;
}

void ShopWindow::fill(Shop& shop) {
    catalogue_ = &shop.catalogue;
    addPages(shop);
    listen(shop);
    show();
    for (const auto& [name, page] : pages_) page->setWide(roomy_);
    arrange();
}

void ShopWindow::addPages(Shop& shop) {
    Navigator& navigator = *this;
    auto home = std::make_unique<HomePage>(shop, navigator);
    auto product = std::make_unique<ProductPage>(shop, navigator);
    auto thanks = std::make_unique<ThanksPage>(shop, navigator);
    home_ = home.get();
    product_ = product.get();
    thanks_ = thanks.get();
    add(PageName::home, std::move(home));
    add(PageName::product, std::move(product));
    add(PageName::thanks, std::move(thanks));
    add(PageName::cart, std::make_unique<CartPage>(shop, navigator));
    add(PageName::wishlist, std::make_unique<WishlistPage>(shop, navigator));
    add(PageName::account, std::make_unique<AccountPage>(shop, navigator));
    add(PageName::privacy, std::make_unique<PrivacyPage>(shop, navigator));
    add(PageName::messages, std::make_unique<MessagesPage>(shop, navigator));
    add(PageName::checkout, std::make_unique<CheckoutPage>(shop, [this](const std::string& saleId) {
            thanks_->setOrder(saleId);
            history_.begin(PageName::thanks);
            show();
        }));
}

void ShopWindow::add(PageName name, std::unique_ptr<Page> page) {
    gtk_stack_add_named(GTK_STACK(stack_), page->widget(), stackName(name).c_str());
    pages_.emplace(name, std::move(page));
}

void ShopWindow::listen(Shop& shop) {
    shop.cart.changes.follow([this, &shop] {
        for (auto* bar : {&topNavigation_, &bottomNavigation_}) bar->showCartCount(shop.cart.itemCount());
    });
    shop.termsChanged.follow([this] { setText(title_, pages_.at(history_.here().page)->title()); });
    EngagementEvents events;
    events.sessionStarted = [this, &shop] {
        shop.readTerms();
        home_->recommend();
    };
    events.linkOpened = [this](const std::string& link) { openLink(link); };
    events.itemsAdded = [this, &shop](const auto& productIds) { takeIntoCart(shop, productIds); };
    shop.engagement.setEvents(std::move(events));
}

/// The library has recorded them itself.
void ShopWindow::takeIntoCart(Shop& shop, const std::vector<std::string>& productIds) {
    for (const auto& id : productIds) {
        if (shop.cart.add(id)) say(shop.catalogue.find(id)->name + " is in your cart.");
    }
}

void ShopWindow::openLink(const std::string& link) {
    const auto rest = [&link](std::string_view prefix) {
        return link.starts_with(prefix) ? link.substr(prefix.size()) : std::string();
    };
    if (const auto* product = catalogue_->find(rest("shop://products/"))) return openProduct(*product);
    if (const auto category = rest("shop://categories/"); !category.empty()) return openCategory(category);
    open(link == "shop://cart" ? PageName::cart : PageName::home);
}

void ShopWindow::openProduct(const Product& product) {
    const Place place{PageName::product, &product};
    if (history_.here() == place) return;
    history_.goOn(place);
    show();
}

void ShopWindow::openCategory(const std::string& category) {
    home_->showCategory(category);
    open(PageName::home);
}

/// The five destinations are beginnings: nothing is behind them.
void ShopWindow::open(PageName page) {
    if (page == history_.here().page) return;
    if (destinationOf(page) == page) {
        history_.begin(page);
    } else {
        history_.goOn({page, nullptr});
    }
    show();
}

void ShopWindow::back() {
    if (!history_.goBack()) return open(PageName::home);
    show();
}

void ShopWindow::show() {
    const auto [page, product] = history_.here();
    toast_.hide();
    gtk_window_set_focus(get(), nullptr);  // a field that kept the keyboard would keep messages away
    if (product != nullptr) product_->setProduct(*product);
    gtk_stack_set_visible_child_name(GTK_STACK(stack_), stackName(page).c_str());
    auto& shown = *pages_.at(page);
    setText(title_, shown.title());
    gtk_widget_set_visible(back_, destinationOf(page) != page);
    for (auto* bar : {&topNavigation_, &bottomNavigation_}) bar->choose(destinationOf(page));
    if (!wide_ && drawerIsOpen_) openDrawer(false);
    shown.shown();
}

void ShopWindow::openDrawer(bool open) {
    drawerIsOpen_ = open;
    arrange();
}

/// Size changes arrive in the middle of the layout; the pages change at the next turn of the main loop.
void ShopWindow::followSize() {
    connect(gtk_native_get_surface(GTK_NATIVE(get())), "layout", [this] {
        if (resized_ != 0) return;
        resized_ = g_idle_add(
            [](gpointer self) -> gboolean {
                static_cast<ShopWindow*>(self)->applySize();
                return G_SOURCE_REMOVE;
            },
            this);
    });
}

void ShopWindow::applySize() {
    resized_ = 0;
    const int width = gtk_widget_get_width(GTK_WIDGET(get()));
    drawer_.setUpright(gtk_widget_get_height(GTK_WIDGET(get())) >= width);
    if (std::exchange(width_, width) != width) arrange();
}

/// A narrow window shows either the page or the drawer; a wide one has room for both.
void ShopWindow::arrange() {
    wide_ = width_ >= wideFrom;
    const bool roomy = wide_ && (!drawerIsOpen_ || width_ >= wideFrom + drawerWidth);
    if (std::exchange(roomy_, roomy) != roomy) {
        for (const auto& [name, page] : pages_) page->setWide(roomy);
    }
    gtk_widget_set_visible(topEdge_, wide_);
    gtk_widget_set_visible(title_, !wide_);
    gtk_widget_set_visible(bottomNavigation_.widget(), !wide_);
    gtk_widget_set_visible(main_, wide_ || !drawerIsOpen_);
    gtk_widget_set_visible(drawer_.widget(), drawerIsOpen_);
    gtk_widget_set_hexpand(drawer_.widget(), !wide_);
    gtk_widget_set_size_request(drawer_.widget(), wide_ ? drawerWidth : -1, -1);
    setClass(GTK_WIDGET(get()), "wide", wide_);
}

void ShopWindow::changeShape() {
    if (wide_) {
        gtk_window_set_default_size(get(), phoneWidth, phoneHeight);
    } else {
        gtk_window_set_default_size(get(), desktopWidth, desktopHeight);
    }
}

}  // namespace shop
