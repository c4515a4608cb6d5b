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
constexpr guint toastMilliseconds = 2600;

struct Destination {
    PageName page;
    Symbol symbol;
    const char* name;
};

constexpr Destination destinations[] = {{PageName::home, Symbol::home, "Shop"},
                                        {PageName::wishlist, Symbol::heart, "Wishlist"},
                                        {PageName::cart, Symbol::bag, "Cart"},
                                        {PageName::messages, Symbol::bell, "Messages"},
                                        {PageName::account, Symbol::person, "Account"}};

/// Which of the five a page belongs to.
PageName destinationOf(PageName page) {
    switch (page) {
        case PageName::product:
            return PageName::home;
        case PageName::checkout:
        case PageName::thanks:
            return PageName::cart;
        case PageName::privacy:
            return PageName::account;
        default:
            return page;
    }
}

std::string stackName(PageName page) { return std::to_string(static_cast<int>(page)); }

gboolean hideInstead(GtkWindow* window, gpointer /*data*/) noexcept {
    gtk_widget_set_visible(GTK_WIDGET(window), FALSE);
    return TRUE;
}

void stopSource(guint& source) {
    if (source != 0) g_source_remove(std::exchange(source, 0));
}

}  // namespace

ShopWindow::ShopWindow(std::shared_ptr<ActivityLog> log, Action closed)
    : window_(retain(GTK_WINDOW(gtk_window_new()))),
      stack_(gtk_stack_new()),
      title_(newLabel("", {"window-title"})),
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
    stopSource(resized_);
    stopSource(silence_);
    gtk_window_destroy(get());
    pages_.clear();
}

GtkWidget* ShopWindow::newHeader() {
    back_ = named(newButton(newIcon(Symbol::back, 18), "Back", {"round"}, [this] { back(); }), "back");
    topNavigation_ = newClamp(newNavigation("top-navigation"), desktopWidth);
    auto* shape =
        newButton(newIcon(Symbol::phone, 18), "Between telephone and desktop", {"round"}, [this] { changeShape(); });
    auto* list = newButton(newIcon(Symbol::list, 18), "What the library does", {"round"},
                           [this] { openDrawer(!drawerIsOpen_); });
    auto* header = gtk_header_bar_new();
    gtk_header_bar_set_title_widget(GTK_HEADER_BAR(header), topNavigation_);
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
    toastText_ = newText("", {"toast"});
    toast_ = gtk_revealer_new();
    gtk_revealer_set_transition_type(GTK_REVEALER(toast_), GTK_REVEALER_TRANSITION_TYPE_CROSSFADE);
    gtk_revealer_set_child(GTK_REVEALER(toast_), toastText_);
    gtk_widget_set_valign(toast_, GTK_ALIGN_END);
    gtk_widget_set_halign(toast_, GTK_ALIGN_CENTER);
    gtk_widget_set_can_target(toast_, FALSE);
    auto* pages = gtk_overlay_new();
    gtk_overlay_set_child(GTK_OVERLAY(pages), stack_);
    gtk_overlay_add_overlay(GTK_OVERLAY(pages), toast_);
    bottomNavigation_ = newNavigation("bottom-navigation");
    gtk_box_set_homogeneous(GTK_BOX(bottomNavigation_), TRUE);
    main_ = newColumn(0);
    append(main_, {pages, bottomNavigation_});
    gtk_widget_set_hexpand(main_, TRUE);
    auto* body = newRow(0);
    append(body, {main_, drawer_.widget()});
    return body;
}

GtkWidget* ShopWindow::newNavigation(const char* style) {
    auto* navigation = newRow(0, {"navigation", style});
    for (const auto& destination : destinations) {
        auto* badge = gtk_label_new("");
        gtk_widget_add_css_class(badge, "badge");
        gtk_widget_set_halign(badge, GTK_ALIGN_END);
        gtk_widget_set_valign(badge, GTK_ALIGN_START);
        gtk_widget_set_visible(badge, FALSE);
        auto* picture = gtk_overlay_new();
        gtk_overlay_set_child(GTK_OVERLAY(picture), newIcon(destination.symbol, 20));
        gtk_overlay_add_overlay(GTK_OVERLAY(picture), badge);
        gtk_widget_set_halign(picture, GTK_ALIGN_CENTER);
        auto* content = newColumn(3);
        append(content, {picture, gtk_label_new(destination.name)});
        auto* button = newButton(content, destination.name, {"flat"}, [this, page = destination.page] { open(page); });
        gtk_widget_set_tooltip_text(button, nullptr);
        gtk_box_append(GTK_BOX(navigation), button);
        buttons_.push_back({destination.page, button, badge});
    }
    return navigation;
}

void ShopWindow::fill(Shop& shop) {
    catalogue_ = &shop.catalogue;
    addPages(shop);
    listen(shop);
    show(PageName::home);
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
            history_.clear();
            show(PageName::thanks);
        }));
}

void ShopWindow::add(PageName name, std::unique_ptr<Page> page) {
    gtk_stack_add_named(GTK_STACK(stack_), page->widget(), stackName(name).c_str());
    pages_.emplace(name, std::move(page));
}

void ShopWindow::listen(Shop& shop) {
    shop.cart.changes.follow([this, &shop] { showCartCount(shop.cart.itemCount()); });
    shop.termsChanged.follow([this] { setText(title_, pages_.at(current_)->title()); });
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
    if (current_ == PageName::product && currentProduct_ == &product) return;
    history_.emplace_back(current_, currentProduct_);
    currentProduct_ = &product;
    show(PageName::product);
}

void ShopWindow::openCategory(const std::string& category) {
    home_->showCategory(category);
    open(PageName::home);
}

/// The five destinations are beginnings: nothing is behind them.
void ShopWindow::open(PageName page) {
    if (page == current_) return;
    const bool isBeginning = destinationOf(page) == page;
    if (isBeginning) history_.clear();
    if (!isBeginning) history_.emplace_back(current_, currentProduct_);
    show(page);
}

void ShopWindow::back() {
    if (history_.empty()) return open(PageName::home);
    const auto [page, product] = history_.back();
    history_.pop_back();
    currentProduct_ = product;
    show(page);
}

void ShopWindow::show(PageName page) {
    current_ = page;
    gtk_revealer_set_reveal_child(GTK_REVEALER(toast_), FALSE);
    gtk_window_set_focus(get(), nullptr);  // a field that kept the keyboard would keep messages away
    if (page == PageName::product) product_->setProduct(*currentProduct_);
    gtk_stack_set_visible_child_name(GTK_STACK(stack_), stackName(page).c_str());
    auto& shown = *pages_.at(page);
    setText(title_, shown.title());
    gtk_widget_set_visible(back_, destinationOf(page) != page);
    for (const auto& button : buttons_) setClass(button.button, "chosen", button.page == destinationOf(page));
    if (!wide_ && drawerIsOpen_) openDrawer(false);
    shown.shown();
}

void ShopWindow::say(const std::string& sentence) {
    setText(toastText_, sentence);
    gtk_revealer_set_reveal_child(GTK_REVEALER(toast_), TRUE);
    stopSource(silence_);
    silence_ = g_timeout_add(
        toastMilliseconds,
        [](gpointer self) -> gboolean {
            auto& window = *static_cast<ShopWindow*>(self);
            window.silence_ = 0;
            gtk_revealer_set_reveal_child(GTK_REVEALER(window.toast_), FALSE);
            return G_SOURCE_REMOVE;
        },
        this);
}

void ShopWindow::showCartCount(int count) {
    for (const auto& [page, button, badge] : buttons_) {
        if (page != PageName::cart) continue;
        setText(badge, count > 99 ? "99+" : std::to_string(count));
        gtk_widget_set_visible(badge, count > 0);
    }
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
    gtk_widget_set_visible(topNavigation_, wide_);
    gtk_widget_set_visible(title_, !wide_);
    gtk_widget_set_visible(bottomNavigation_, !wide_);
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
