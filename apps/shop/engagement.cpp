#include "shop/engagement.hpp"

#include <chrono>
#include <optional>
#include <utility>

namespace shop {

using orbinel::Array;
using orbinel::Dictionary;
using orbinel::Orbinel;
using orbinel::OrbinelIdentifiers;
using orbinel::OrbinelProduct;
using orbinel::OrbinelVariableTypeContent;
using orbinel::Value;

namespace {

constexpr const char* appGroup = "group.shop";
constexpr const char* locale = "en_US";

// Campaigns as they are set up in the vendor's panel.
constexpr std::int32_t popularNow = 1;
constexpr std::int32_t moreOfThisKind = 2;

/// Numbers by which the library's callback tells what happened.
enum class CallbackType {
    pushed = 0,
    buttonPressed = 1,
    purchased = 2,
    addedToCart = 3,
    custom = 4,
    shown = 5,
    sessionStarted = 6
};

/// The library's console: on the terminal as usual, and in the drawer.
class DrawerConsole final : public orbinel::platform::Console {
public:
    DrawerConsole(std::shared_ptr<Console> terminal, std::shared_ptr<ActivityLog> log)
        : terminal_(std::move(terminal)), log_(std::move(log)) {}

    void writeLine(std::string_view line) noexcept override {
        terminal_->writeLine(line);
        constexpr std::string_view prefix = "[ORBINEL]";
        if (line.starts_with(prefix)) line.remove_prefix(prefix.size());
        log_->add(Activity::Kind::console, line);
    }

private:
    const std::shared_ptr<Console> terminal_;
    const std::shared_ptr<ActivityLog> log_;
};

orbinel::hosts::LinuxHostOptions hostOptions(const EngagementOptions& options) {
    orbinel::hosts::LinuxHostOptions host;
    host.dataDirectory = options.dataDirectory / "orbinel";
    host.applicationVersion = "1.0.0";
    host.applicationIdentifier = "example.shop";
    host.localisation = "en";
    host.urlSchemes = {"shop"};
    return host;
}

/// The shop's product as the library knows products.
OrbinelProduct describe(const Product& product, const Terms& terms, int quantity = 1) {
    const Array taxonomy(product.taxonomy.begin(), product.taxonomy.end());
    auto described = Orbinel::createNewProductWithID(product.id, product.name, taxonomy,
                                                     "https://shop.example/images/" + product.id + ".jpg",
                                                     product.price.euros(), currency)
                         .setQuantity(quantity)
                         .setInStock(true);
    if (terms.reduces(product)) described.setSalePrice(terms.priceOf(product).euros()).setPromotionName("sale");
    return described;
}

std::vector<std::string> textsUnder(const Array& items, std::string_view key) {
    std::vector<std::string> texts;
    for (const auto& item : items) {
        const auto* fields = item.ifDictionary();
        if (fields != nullptr && (*fields)[key].ifString() != nullptr) texts.push_back(*(*fields)[key].ifString());
    }
    return texts;
}

/// What comes from the backend may have any shape: what is no list holds nothing.
const Array& listUnder(const Dictionary& dictionary, std::string_view key) {
    static const Array nothing;
    const auto* list = dictionary[key].ifArray();
    return list != nullptr ? *list : nothing;
}

/// The application's delegate, for what the desktop has the shop open and what the person opens of its notifications.
/// The library hears of both without being told: it stands in front of the delegate's operations.
std::shared_ptr<orbinel::platform::Delegate> makeDelegate(std::function<void(const std::string& link)> opened) {
    namespace operations = orbinel::platform::delegate_operations;
    using orbinel::platform::DelegateResult;
    const auto type = std::make_shared<orbinel::platform::DelegateClass>("ShopDelegate");
    type->addOperation(operations::openUrlWithOptions, [opened](auto&, const auto& arguments) {
        opened(arguments.url);
        return DelegateResult(true);
    });
    type->addOperation(operations::didReceiveNotificationResponse, [opened](auto&, const auto& arguments) {
        opened(arguments.userInfo["link"].stringOrEmpty());
        arguments.completion();
        return DelegateResult();
    });
    return std::make_shared<orbinel::platform::Delegate>(type);
}

SentMessage messageOf(const Dictionary& fields) {
    return {fields["title"].stringOrEmpty(), fields["message"].stringOrEmpty(), fields["deeplink"].stringOrEmpty()};
}

}  // namespace

/// What the library calls. It holds this weakly, so that nothing comes in any more once the shop has let go of it.
class Engagement::Listener : public std::enable_shared_from_this<Listener> {
public:
    explicit Listener(std::shared_ptr<ActivityLog> log) : log_(std::move(log)) {}

    EngagementEvents events;
    int sessionsStarted = 0;
    int messagesShown = 0;

    void hear(const Dictionary& what) {
        const auto type = what["type"].integer().value_or(0);
        static const Dictionary nothing;
        const auto* data = what["data"].ifDictionary();
        take(static_cast<CallbackType>(type), data != nullptr ? *data : nothing);
    }

    void hearLink(const std::string& link) {
        note("the desktop opens " + link);
        if (events.linkOpened) events.linkOpened(link);
    }

    /// On whichever thread sets the ID.
    void hearId(const std::string& orbinelId) { log_->add(Activity::Kind::identity, "Orbinel ID is " + orbinelId); }

private:
    void take(CallbackType type, const Dictionary& data) {
        switch (type) {
            case CallbackType::pushed:
                return note("0: a push was opened, or came while the shop is in front");
            case CallbackType::buttonPressed:
                return note("1: a button of a message was pressed");
            case CallbackType::purchased:
                return note("2: a message reports a purchase");
            case CallbackType::addedToCart:
                note("3: a message puts something into the cart");
                if (events.itemsAdded) events.itemsAdded(textsUnder(listUnder(data, "cart_items"), "product_id"));
                return;
            case CallbackType::custom:
                return takeCustom(data);
            case CallbackType::shown:
                note("5: message " + data["inapp_id"].stringOrEmpty() + " is shown");
                ++messagesShown;
                return;
            case CallbackType::sessionStarted:
                note("6: a session start completed");
                ++sessionsStarted;
                if (events.sessionStarted) events.sessionStarted();
                return;
        }
    }

    /// Our pages and we have agreed on {"open": LINK}; the library only hands it over.
    void takeCustom(const Dictionary& data) {
        const auto& link = data["open"].stringOrEmpty();
        note(link.empty() ? std::string("4: a message has something to say") : "4: a message leads to " + link);
        if (!link.empty() && events.linkOpened) events.linkOpened(link);
    }

    void note(const std::string& text) const { log_->add(Activity::Kind::callback, text); }

    const std::shared_ptr<ActivityLog> log_;
};

Engagement::Engagement(GtkWindow* window, const EngagementOptions& options, const Preferences& preferences,
                       std::shared_ptr<ActivityLog> log)
    : log_(std::move(log)), listener_(std::make_shared<Listener>(log_)), host_(window, hostOptions(options)) {
    auto services = host_.services();
    services.console = std::make_shared<DrawerConsole>(services.console, log_);
    const std::weak_ptr listener = listener_;
    const auto delegate = makeDelegate([listener](const std::string& link) {
        if (const auto heard = listener.lock()) heard->hearLink(link);
    });
    services.application->setDelegate(delegate);
    services.notifications->setDelegate(delegate);
    orbinel::start(std::move(services));
    Orbinel::registerOrbinelCallbackWithSelector(&Listener::hear, listener);
    Orbinel::registerOrbinelIDListenerWithSelector(&Listener::hearId, listener);
    setCollection(preferences);
    note("initWithLaunchOptions(nullopt, \"" + options.partnerName + "\", \"" + appGroup + "\", \"" + options.endpoint +
         "\")");
    Orbinel::initWithLaunchOptions(std::nullopt, options.partnerName, appGroup, options.endpoint);
}

Engagement::~Engagement() { orbinel::shutdown(); }

void Engagement::setEvents(EngagementEvents events) { listener_->events = std::move(events); }

int Engagement::sessionsStarted() const { return listener_->sessionsStarted; }

int Engagement::messagesShown() const { return listener_->messagesShown; }

void Engagement::note(std::string_view call) const { log_->add(Activity::Kind::call, call); }

// --- Where the person goes ---

void Engagement::sawHome() {
    note("visitHomepage()");
    Orbinel::visitHomepage();
}

void Engagement::sawCategory(const std::string& category) {
    note("visitListingPageWithTaxonomy({\"" + category + "\"})");
    Orbinel::visitListingPageWithTaxonomy({category});
}

void Engagement::sawProduct(const Product& product, const Terms& terms) {
    note("visitProductDetailPageWithProduct(" + product.id + ")");
    Orbinel::visitProductDetailPageWithProduct(describe(product, terms));
}

void Engagement::sawCart(const std::vector<CartLine>& lines, const Terms& terms) {
    std::vector<OrbinelProduct> products;
    for (const auto& line : lines) products.push_back(describe(*line.product, terms, line.quantity));
    note("visitCartPageWithProducts(" + std::to_string(products.size()) + " products)");
    Orbinel::visitCartPageWithProducts(products);
}

void Engagement::sawWishlist(const std::vector<const Product*>& products, const Terms& terms) {
    std::vector<OrbinelProduct> described;
    for (const auto* product : products) described.push_back(describe(*product, terms));
    note("visitWishlistWithProducts(" + std::to_string(described.size()) + " products)");
    Orbinel::visitWishlistWithProducts(described);
}

void Engagement::sawOffer() {
    note("tagEvent(\"discount_seen\").build()");
    Orbinel::tagEvent("discount_seen").build();
}

// --- What the person does ---

void Engagement::addedToCart(const Product& product, int quantity, const Terms& terms) {
    note("itemAddedToCartWithProduct(" + product.id + ", quantity " + std::to_string(quantity) + ")");
    Orbinel::itemAddedToCartWithProduct(describe(product, terms, quantity));
}

void Engagement::removedFromCart(const Product& product) {
    note("itemRemovedFromCartWithProductID(" + product.id + ")");
    Orbinel::itemRemovedFromCartWithProductID(product.id);
}

void Engagement::clearedCart() {
    note("cartCleared()");
    Orbinel::cartCleared();
}

void Engagement::addedToWishlist(const Product& product, const Terms& terms) {
    note("itemAddedToWishlistWithProduct(" + product.id + ")");
    Orbinel::itemAddedToWishlistWithProduct(describe(product, terms));
}

void Engagement::removedFromWishlist(const Product& product) {
    note("itemRemovedFromWishlistWithProductID(" + product.id + ")");
    Orbinel::itemRemovedFromWishlistWithProductID(product.id);
}

void Engagement::clearedWishlist() {
    note("wishlistCleared()");
    Orbinel::wishlistCleared();
}

void Engagement::bought(const std::string& saleId, const std::vector<CartLine>& lines, const Terms& terms) {
    for (const auto& [product, quantity] : lines) {
        note("itemPurchasedWithSaleID(\"" + saleId + "\", " + product->id + ")");
        Orbinel::itemPurchasedWithSaleID(saleId, describe(*product, terms, quantity));
    }
    note("tagEvent(\"checkout_done\").addParameterWithString(…).build()");
    Orbinel::tagEvent("checkout_done").addParameterWithString("sale_id", saleId).build();
}

/// Stands in for a push: the vendor's reach no desktop.
void Engagement::announceOrder(const std::string& saleId) {
    note("GtkHost::present({\"" + saleId + "\", …})");
    const Dictionary push{{"aps", Dictionary{}}, {"source", "Orbinel"}, {"camp_id", 501},
                          {"camp_type", 1},      {"variant_id", 1},     {"link", "shop://home"}};
    host_.present({saleId, "Your order is packed", "Number " + saleId + " leaves the kiln tomorrow.", push},
                  [log = log_](const std::optional<std::string>& failure) {
                      if (failure) log->add(Activity::Kind::callback, *failure);
                  });
}

void Engagement::answeredSurvey(const std::vector<std::string>& answers, bool wantsReply) {
    note("tagEvent(\"survey_answered\").addParameterWithArray(…).build()");
    Orbinel::tagEvent("survey_answered")
        .addParameterWithArray("answers", Array(answers.begin(), answers.end()))
        .addParameterWithBoolean("wants_reply", wantsReply)
        .build();
}

// --- Who the person is, and what they allow ---

/// Attributes are set once the library knows who it is: what was set before belongs to the person before.
void Engagement::loggedIn(const Person& person) {
    note("getCurrentUser().login(OrbinelIdentifiers().addEmail(…), …)");
    auto user = Orbinel::getCurrentUser();
    user.login(OrbinelIdentifiers().addEmail(person.email), [user, person, log = log_](const std::string&) mutable {
        log->add(Activity::Kind::callback, "login: the person is known");
        user.setName(person.name).setEmail(person.email).setCustomAttributeWithBoolean("shop_account", true);
    });
}

void Engagement::loggedOut() {
    note("getCurrentUser().logout()");
    Orbinel::getCurrentUser().logout();
}

void Engagement::setConsents(const Preferences& preferences) {
    note(std::string("setGDPRConsent(") + (preferences.consent ? "true" : "false") + "), setMobileGDPRConsent(" +
         (preferences.consentOnDevice ? "true" : "false") + ")");
    Orbinel::setGDPRConsent(preferences.consent);
    Orbinel::setMobileGDPRConsent(preferences.consentOnDevice);
}

void Engagement::setCollection(const Preferences& preferences) {
    note("enableIDFACollection, enableIpCollection, enableLocationCollection, enableCarrierCollection");
    Orbinel::enableIDFACollection(preferences.collectAdvertisingId);
    Orbinel::enableIpCollection(preferences.collectIpAddress);
    Orbinel::enableLocationCollection(preferences.collectLocation);
    Orbinel::enableCarrierCollection(preferences.collectCarrier);
}

void Engagement::askForPushes() {
    note("registerWithQuietPermission(false)");
    Orbinel::registerWithQuietPermission(false);
}

// --- What the vendor's panel decides ---

Terms Engagement::terms() const {
    const Terms own;  // what holds where the panel says nothing
    const auto euros = static_cast<std::int32_t>(own.freeDeliveryFrom.cents / 100);
    note("getContentStringWithName, getContentBoolWithName, getContentIntWithName");
    Terms terms;
    terms.title = Orbinel::getContentStringWithName("shop_title", own.title, OrbinelVariableTypeContent);
    terms.saleIsOn = Orbinel::getContentBoolWithName("summer_sale", own.saleIsOn, OrbinelVariableTypeContent);
    terms.freeDeliveryFrom.cents =
        std::int64_t{100} * Orbinel::getContentIntWithName("free_delivery_from", euros, OrbinelVariableTypeContent);
    return terms;
}

/// An answer comes on a background thread, perhaps after the page that asked has gone.
Engagement::RecommendedProducts Engagement::onMainThread(RecommendedProducts show) const {
    return [scheduler = std::weak_ptr(host_.services().scheduler), listener = std::weak_ptr(listener_),
            show = std::move(show)](const std::vector<std::string>& productIds) {
        const auto queue = scheduler.lock();
        if (queue == nullptr) return;
        queue->postMain([listener, show, productIds] {
            if (listener.lock() != nullptr) show(productIds);
        });
    };
}

void Engagement::recommendPopular(RecommendedProducts show) {
    note("getSmartRecommendationWithID(1, …)");
    Orbinel::getSmartRecommendationWithID(popularNow, locale, currency,
                                          [show = onMainThread(std::move(show))](const Dictionary& answer) {
                                              show(textsUnder(listUnder(answer, "data"), "product_id"));
                                          });
}

void Engagement::recommendBeside(const Product& product, RecommendedProducts show) {
    note("getSmartRecommendationWithProduct(" + product.id + ", 2, …)");
    Orbinel::getSmartRecommendationWithProduct(describe(product, Terms()), moreOfThisKind, locale,
                                               [show = onMainThread(std::move(show))](const Dictionary& answer) {
                                                   show(textsUnder(listUnder(answer, "data"), "product_id"));
                                               });
}

void Engagement::choseRecommended(const Product& product, bool beside, const Terms& terms) {
    note("clickSmartRecommendationProductWithID(" + product.id + ")");
    Orbinel::clickSmartRecommendationProductWithID(beside ? moreOfThisKind : popularNow, describe(product, terms));
}

void Engagement::readMessages(Messages show) {
    constexpr std::int32_t atMost = 50;
    const auto now = std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    note("getMessageCenterDataWithLimit(50, …)");
    Orbinel::getMessageCenterDataWithLimit(
        atMost, orbinel::Date{1}, orbinel::Date{now},
        [listener = std::weak_ptr(listener_), show = std::move(show)](const Array& received) {
            if (listener.lock() == nullptr) return;
            std::vector<SentMessage> messages;
            for (const auto& message : received) {
                if (const auto* fields = message.ifDictionary()) messages.push_back(messageOf(*fields));
            }
            show(messages);
        });
}

// --- For developers ---

void Engagement::setMessagesWanted(bool wanted) {
    note(wanted ? "enableInAppMessages()" : "disableInAppMessages()");
    wanted ? Orbinel::enableInAppMessages() : Orbinel::disableInAppMessages();
}

void Engagement::setDevelopmentLog(bool on) {
    note(std::string("setDevelopmentLog(") + (on ? "true)" : "false)"));
    Orbinel::setDevelopmentLog(on);
}

void Engagement::becomeTestDevice() {
    note("handleUrl(\"shop://test_device/…\")");
    Orbinel::handleUrl("shop://test_device/shop-demo");
}

}  // namespace shop
