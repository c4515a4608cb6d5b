#pragma once

#include <gtk/gtk.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "orbinel/gtk/gtk_host.hpp"
#include "orbinel/orbinel.hpp"
#include "shop/activity_log.hpp"
#include "shop/model/cart.hpp"
#include "shop/model/preferences.hpp"
#include "shop/model/product.hpp"
#include "shop/model/terms.hpp"

namespace shop {

struct EngagementOptions {
    std::string endpoint;     // the API's origin, such as "http://127.0.0.1:8787"; empty: the default one
    std::string partnerName;  // the account's name at the vendor
    std::filesystem::path dataDirectory;
};

/// A message that was sent to this device before.
struct SentMessage {
    std::string title;
    std::string text;
    std::string link;  // "shop://…", or empty
};

/// What the library tells the shop. All on the main thread.
struct EngagementEvents {
    std::function<void()> sessionStarted;                     // remote content may be different now
    std::function<void(const std::string& link)> linkOpened;  // a message, or the desktop, leads into the shop
    std::function<void(const std::vector<std::string>& productIds)> itemsAdded;  // a message put them into the cart
};

/// The shop's side of the library: every call to it is in this class, and everything it says comes in here.
///
/// It needs the window, because messages are shown over it, and lives as long as the shop. Sessions open and close by
/// themselves, as the window is used and left.
///
/// Threads: main.
class Engagement {
public:
    using RecommendedProducts = std::function<void(const std::vector<std::string>& productIds)>;
    using Messages = std::function<void(const std::vector<SentMessage>&)>;

    Engagement(GtkWindow* window, const EngagementOptions& options, const Preferences& preferences,
               std::shared_ptr<ActivityLog> log);
    ~Engagement();
    Engagement(const Engagement&) = delete;
    Engagement& operator=(const Engagement&) = delete;

    void setEvents(EngagementEvents events);

    /// Since the launch: sessions whose start was answered, and messages that came onto the screen.
    [[nodiscard]] int sessionsStarted() const;
    [[nodiscard]] int messagesShown() const;

    // --- Where the person goes ---

    void sawHome();
    void sawCategory(const std::string& category);
    void sawProduct(const Product& product, const Terms& terms);
    void sawCart(const std::vector<CartLine>& lines, const Terms& terms);
    void sawWishlist(const std::vector<const Product*>& products, const Terms& terms);
    void sawOffer();

    // --- What the person does ---

    void addedToCart(const Product& product, int quantity, const Terms& terms);
    void removedFromCart(const Product& product);
    void clearedCart();
    void addedToWishlist(const Product& product, const Terms& terms);
    void removedFromWishlist(const Product& product);
    void clearedWishlist();
    void bought(const std::string& saleId, const std::vector<CartLine>& lines, const Terms& terms);
    void announceOrder(const std::string& saleId);
    void answeredSurvey(const std::vector<std::string>& answers, bool wantsReply);

    // --- Who the person is, and what they allow ---

    void loggedIn(const Person& person);
    void loggedOut();
    void setConsents(const Preferences& preferences);
    void setCollection(const Preferences& preferences);
    void askForPushes();

    // --- What the vendor's panel decides ---

    [[nodiscard]] Terms terms() const;
    void recommendPopular(RecommendedProducts show);
    void recommendBeside(const Product& product, RecommendedProducts show);
    void choseRecommended(const Product& product, bool beside, const Terms& terms);
    void readMessages(Messages show);

    // --- For developers ---

    void setMessagesWanted(bool wanted);
    void setDevelopmentLog(bool on);
    void becomeTestDevice();

private:
    class Listener;

    void note(std::string_view call) const;
    [[nodiscard]] RecommendedProducts onMainThread(RecommendedProducts show) const;

    const std::shared_ptr<ActivityLog> log_;
    const std::shared_ptr<Listener> listener_;
    orbinel::hosts::GtkHost host_;
};

}  // namespace shop
