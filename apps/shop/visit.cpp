#include "shop/visit.hpp"

#include <webkit/webkit.h>

#include <chrono>
#include <cstdio>
#include <system_error>
#include <utility>

#include "shop/widgets/picture_of.hpp"

namespace shop {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::chrono::seconds longestWait{20};  // the first page of a web engine takes its time on a slow machine
constexpr milliseconds settling{700};            // transitions, and the drawing of pages
constexpr milliseconds fading{1200};             // of a message

void iterateUntil(const std::function<bool()>& condition, Clock::duration limit) {
    const auto end = Clock::now() + limit;
    while (!condition() && Clock::now() < end) {
        if (g_main_context_iteration(nullptr, FALSE) == FALSE) g_usleep(2000);
    }
}

void iterateFor(Clock::duration time) {
    iterateUntil([] { return false; }, time);
}

/// The first below this one, and this one, of which the predicate holds.
GtkWidget* search(GtkWidget* widget, const std::function<bool(GtkWidget*)>& predicate) {
    if (predicate(widget)) return widget;
    for (auto* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (auto* found = search(child, predicate)) return found;
    }
    return nullptr;
}

}  // namespace

Visit::Visit(ShopWindow& window, Shop& shop, std::filesystem::path pictures)
    : window_(window), shop_(shop), pictures_(std::move(pictures)) {}

void Visit::begin(Action done) {
    done_ = std::move(done);
    std::error_code ignored;
    std::filesystem::create_directories(pictures_, ignored);
    g_idle_add(
        [](gpointer self) -> gboolean {
            auto& visit = *static_cast<Visit*>(self);
            visit.play();
            visit.done_();
            return G_SOURCE_REMOVE;
        },
        this);
}

void Visit::play() {
    arrive();
    chooseOnPhone();
    followMessage();
    logInOnPhone();
    buyOnPhone();
    answerOurSurvey();
    lookAround();
    visitOnDesktop();
}

void Visit::arrive() {
    waitFor("a session is open", [&] { return shop_.engagement.sessionsStarted() > 0; });
    iterateFor(fading);
    picture("home-phone");
    press("card-mug-blue");
    picture("product-phone");
    press("add-to-cart");
    picture("added-phone");
}

void Visit::chooseOnPhone() {
    window_.goTo(PageName::wishlist);
    picture("wishlist-empty-phone");
    window_.goTo(PageName::home);
    shop_.toggleWish(*shop_.catalogue.find("plate-moss"));
    shop_.toggleWish(*shop_.catalogue.find("vase-tall"));
    window_.goTo(PageName::wishlist);
    picture("wishlist-phone");
    window_.goTo(PageName::home);
}

/// The second product page brings a message, which leads to the lamp.
void Visit::followMessage() {
    const int before = shop_.engagement.messagesShown();
    press("card-bowl-white");
    awaitMessage(before + 1);
    picture("message-phone");
    clickInMessage("#open");
    waitFor("the message's link is open", [&] { return window_.product() == shop_.catalogue.find("lamp-desk"); });
    iterateFor(fading);
    picture("linked-phone");
    press("add-to-cart");
    window_.goTo(PageName::cart);
    picture("cart-phone");
}

void Visit::logInOnPhone() {
    window_.goTo(PageName::account);
    press("log-in");
    picture("login-refused-phone");
    type("login-name", "Ada");
    type("login-email", "ada@shop.example");
    const int before = shop_.engagement.sessionsStarted();
    press("log-in");
    waitFor("the person's session is open", [&] { return shop_.engagement.sessionsStarted() > before; });
    picture("account-phone");
}

/// A survey comes after the first order.
void Visit::buyOnPhone() {
    window_.goTo(PageName::cart);
    press("go-to-checkout");
    type("checkout-street", "Kiln Lane 7");
    type("checkout-city", "1010 Clayton");
    press("checkout-terms");
    picture("checkout-phone");
    const int before = shop_.engagement.messagesShown();
    press("place-order");
    awaitMessage(before + 1);
    picture("survey-phone");
    clickInMessage("[name=satisfaction][value=\"5\"]");
    clickInMessage("[value=Quality]");
    clickInMessage("[type=submit]");
    iterateFor(fading);
    picture("survey-answered-phone");
    clickInMessage("#thanks button");
    iterateFor(fading);
}

void Visit::answerOurSurvey() {
    press("idea-0");
    press("idea-2");
    iterateFor(milliseconds(150));  // in the middle of its movement
    savePicture(root(), pictures_ / "check-boxes-moving.png");
    picture("thanks-phone");
    press("send-survey");
}

void Visit::lookAround() {
    shop_.engagement.setDevelopmentLog(true);
    window_.goTo(PageName::messages);
    picture("messages-phone");
    window_.goTo(PageName::privacy);
    picture("privacy-phone");
    window_.openDrawer(true);
    picture("drawer-phone");
    window_.openDrawer(false);
    shop_.engagement.setDevelopmentLog(false);
    window_.goTo(PageName::home);
    resize(360, 740);
    picture("home-360");
    window_.goTo(*shop_.catalogue.find("plate-moss"));
    picture("product-360");
    shop_.addToCart(*shop_.catalogue.find("plate-moss"), 12);
    shop_.addToCart(*shop_.catalogue.find("lamp-desk"), 1);
    window_.goTo(PageName::cart);
    picture("cart-360");
}

void Visit::visitOnDesktop() {
    resize(1200, 800);
    picture("cart-desktop");
    window_.goTo(PageName::home);
    window_.openDrawer(true);
    picture("home-desktop-drawer");
    window_.openDrawer(false);
    picture("home-desktop");
    window_.goTo(*shop_.catalogue.find("lamp-desk"));
    picture("product-desktop");
    window_.goTo(PageName::account);
    picture("account-desktop");
    window_.goTo(PageName::privacy);
    picture("privacy-desktop");
    g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", TRUE, nullptr);
    window_.goTo(PageName::home);
    picture("home-desktop-dark");
    window_.goTo(PageName::cart);
    press("go-to-checkout");
    picture("checkout-desktop-dark");
    resize(ShopWindow::phoneWidth, ShopWindow::phoneHeight);
    window_.goTo(PageName::home);
    picture("home-phone-dark");
}

void Visit::resize(int width, int height) {
    gtk_window_set_default_size(window_.get(), width, height);
    auto* surface = gtk_native_get_surface(gtk_widget_get_native(root()));
    waitFor("the window is " + std::to_string(width) + " points wide",
            [&] { return gdk_surface_get_width(surface) == width; });
}

GtkWidget* Visit::find(const std::string& name) {
    auto* found = search(root(), [&](GtkWidget* widget) {
        return gtk_widget_get_name(widget) == name && gtk_widget_get_mapped(widget) != FALSE;
    });
    if (found == nullptr) fail("there is no \"" + name + "\" to press");
    return found;
}

void Visit::press(const std::string& name) {
    iterateFor(settling);
    auto* found = find(name);
    if (found == nullptr) return;
    if (GTK_IS_BUTTON(found)) return g_signal_emit_by_name(found, "clicked");
    gtk_widget_activate(found);
}

void Visit::type(const std::string& name, const std::string& text) {
    iterateFor(settling);
    auto* field = find(name);
    if (field != nullptr) gtk_editable_set_text(GTK_EDITABLE(field), text.c_str());
}

void Visit::picture(const std::string& name) {
    iterateFor(settling);
    auto fileName = std::to_string(++number_) + "-" + name + ".png";
    if (number_ < 10) fileName.insert(0, 1, '0');
    const auto file = pictures_ / fileName;
    bool saved = false;  // not while the window has nothing to show yet, as on a busy machine
    iterateUntil([&] { return saved = savePicture(root(), file); }, longestWait);
    if (!saved) fail("the picture " + file.string() + " cannot be written");
}

void Visit::waitFor(const std::string& what, const std::function<bool()>& condition) {
    iterateUntil(condition, longestWait);
    if (!condition()) fail("it did not happen that " + what);
}

void Visit::awaitMessage(int count) {
    waitFor("a message is shown", [&] { return shop_.engagement.messagesShown() >= count; });
    runInMessage("await new Promise(drawn => requestAnimationFrame(() => requestAnimationFrame(drawn)))");
    iterateFor(fading);
}

void Visit::clickInMessage(const std::string& selector) {
    runInMessage("document.querySelector('" + selector + "').click()");
    iterateFor(settling);
}

/// Waits for what the script awaits.
void Visit::runInMessage(const std::string& script) {
    auto* found = search(root(), [](GtkWidget* widget) { return WEBKIT_IS_WEB_VIEW(widget) != FALSE; });
    if (found == nullptr) return fail("there is no message to run " + script + " in");
    const auto done = std::make_shared<bool>(false);
    webkit_web_view_call_async_javascript_function(
        WEBKIT_WEB_VIEW(found), script.c_str(), -1, nullptr, nullptr, nullptr, nullptr,
        [](GObject*, GAsyncResult*, gpointer data) {
            const std::unique_ptr<std::shared_ptr<bool>> kept(static_cast<std::shared_ptr<bool>*>(data));
            **kept = true;
        },
        new std::shared_ptr<bool>(done));
    waitFor("the message ran " + script, [&] { return *done; });
}

void Visit::fail(const std::string& sentence) {
    failed_ = true;
    std::fprintf(stderr, "shop: during the visit, %s.\n", sentence.c_str());
}

}  // namespace shop
