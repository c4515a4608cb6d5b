#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "orbinel/content_variable_type.hpp"
#include "orbinel/event.hpp"
#include "orbinel/export.hpp"
#include "orbinel/launch_options.hpp"
#include "orbinel/optional_text.hpp"
#include "orbinel/platform/services.hpp"
#include "orbinel/product.hpp"
#include "orbinel/target_action.hpp"
#include "orbinel/user.hpp"
#include "orbinel/user_activity.hpp"
#include "orbinel/value.hpp"

/// The library's public surface.
///
/// An application makes the library once with `start`, initialises it with `Orbinel::initWithLaunchOptions`, and from
/// then on reports what happens. The platform's notifications open and close sessions; nothing here does.
///
/// Every operation is `noexcept` and may be called at any time and from any thread: before `start` and after
/// `shutdown` it does nothing and returns its neutral value. "Gated" operations also do nothing while a consent is
/// withheld or the backend has switched the library off.
namespace orbinel {

/// Makes the library over the given services. False, with one sentence on the console, where a service is missing or
/// the library is already started. Sends nothing. Call it on the main thread.
///
/// From now on the library stands in front of the delegate that the application sets first (or has set) and of its
/// scenes' delegates, and from initialisation on in front of the notification centre's: the application's own handlers
/// run first. An application keeps it out of single operations by its package's information, {"Orbinel": {"Disabled
/// Swizzlers": ["handleOpenURL", …]}}.
ORBINEL_API bool start(platform::Services services) noexcept;

/// Ends the library: cancels what is under way (session stops among it are sent at the next launch), waits at most one
/// second for what is running on other threads, and leaves nothing running. The application's delegates are as they
/// were. It may be started again afterwards; where stored data is being erased, as soon as that is over.
ORBINEL_API void shutdown() noexcept;

class ORBINEL_API Orbinel {
public:
    Orbinel() = delete;

    // --- Initialisation ---

    /// Initialises the library, once per launch and early in it.
    ///
    /// `launchOptions`: what the platform handed to the application at launch. `partnerName`: the account's name at the
    /// vendor, of two or more lower-case ASCII letters, digits and underscores, not beginning with an underscore; with
    /// any other name the library stays uninitialised. `appGroup`: the name of the store shared with the application's
    /// extensions; where it is absent or empty there is none, and the one of an earlier launch is forgotten.
    /// `customEndpoint`: the origin of the API (RFC 3986 scheme, host and port, without a trailing slash); the empty
    /// text stands for the default origin; where it is absent, nothing can be sent. While the backend has switched the
    /// library off, it stays uninitialised; not gated otherwise.
    static void initWithLaunchOptions(const std::optional<Dictionary>& launchOptions, OptionalText partnerName,
                                      OptionalText appGroup) noexcept;
    static void initWithLaunchOptions(const std::optional<Dictionary>& launchOptions, OptionalText partnerName,
                                      OptionalText appGroup, OptionalText customEndpoint) noexcept;

    /// The common core of both, for cross-platform wrappers, and no more gated than they are: not gated but for a
    /// library that is switched off. It stores neither app group nor origin and does not switch automatic integration
    /// on: where neither of the others has, tokens, pushes and links that reach the delegates are left to the
    /// application.
    static void initSDK(OptionalText partnerName, const std::optional<Dictionary>& launchOptions) noexcept;

    /// Switches to another partner name: closes the session under the old one and opens one under the new. Refused
    /// (with a record in the diagnostic log) before initialisation, with the name already in force, with a name that is
    /// not valid, and while the library is switched off. While a consent is withheld it switches without closing or
    /// opening a session; only the wizard's disconnect is sent. The Orbinel ID, the caps of messages, variables that
    /// were delivered as tests and the addresses of recommendations are dropped; once the start under the new name has
    /// completed, in-app messages are enabled again. Where it gets no answer, the switch ends silently; the new name is
    /// in force all the same. Not gated otherwise.
    static void reinitWithPartnerName(OptionalText partnerName) noexcept;

    /// Whether the value is a text that may be a partner name; false before `start`. Not gated.
    [[nodiscard]] static bool partnerNameIsValid(const Value& partnerName) noexcept;

    /// Leaves out automatic integration; to be called before initialisation. Device tokens, pushes and links that reach
    /// the application's delegates are then only reported, and the application hands them over itself. Not gated.
    static void disableAutoIntegration() noexcept;

    /// For cross-platform wrappers: their own version, and the notification that the application became active where
    /// the wrapper delivers it itself. The version is kept across launches (an absent one removes it) and has to be set
    /// before initialisation: while there is one, the notification centre's delegate is left alone, and a push waits
    /// until the application was active once. The notification does nothing without a version, or before
    /// initialisation. Not gated.
    static void setHybridSDKVersion(OptionalText version) noexcept;
    static void hybridApplicationDidBecomeActive() noexcept;

    // --- Events ---

    /// A new event of that name; while the gate is closed, an event with the empty name, which records nothing. Gated.
    [[nodiscard]] static OrbinelEvent tagEvent(OptionalText name) noexcept;

    /// Records that the person signed up. Gated.
    static void signUpConfirmation() noexcept;

    // --- Consent and collection ---

    /// Whether the person consents to data processing (GDPR), and to it on this device. Kept across launches and posted
    /// to the backend. Set both: where a post did not reach the backend, the first consent is posted when the
    /// application next becomes active, but the second one only when it is set again (docs/privacy.md); where only the
    /// second one was ever set, what the backend answers at the next activation replaces it. While either is false,
    /// every gated operation does nothing and no session is started or stopped. Before initialisation the
    /// backend cannot be told: such a consent is in force and kept, but has to be set again afterwards. Not gated.
    static void setGDPRConsent(bool consent) noexcept;
    static void setMobileGDPRConsent(bool consent) noexcept;

    /// Which data of the device may be collected. Kept in memory only: an application sets them after each launch.
    /// Without a call the advertising identifier is not collected and the others are. Not gated.
    static void enableIDFACollection(bool enabled) noexcept;
    static void enableIpCollection(bool enabled) noexcept;
    static void enableLocationCollection(bool enabled) noexcept;
    static void enableCarrierCollection(bool enabled) noexcept;

    /// Erases everything that the library keeps on the device, in files and in memory, for a person who asks for it.
    ///
    /// What goes: the identifiers (of the device, the person, and the vendor identifier where the host has made it),
    /// the person's attributes and contacts, session stops that wait to be sent, remote content, counts of messages,
    /// consents (set them again), the test device's mark, what the extensions left, and whatever the disk still held of
    /// it. A session under way is not stopped but dropped, and a stop being sent is cancelled: the backend may have it,
    /// and keeps what it was told before. What stays: entries of the application's own in the stores, and what the
    /// platform keeps (permissions, the push token, what the application has done on its own).
    ///
    /// Afterwards the library is as after its first `start`; only the development log stays as it is. Where they are in
    /// use, call `disableAutoIntegration`, `setHybridSDKVersion`, `disableInAppMessages`, `enableTemplateDebugging` and
    /// `setActiveForegroundPushView` again, initialise it again, set collection, fonts and callbacks again, and hand
    /// over the push token again (`registerWithQuietPermission` has the platform give it). The next session begins when
    /// the application next becomes active, under new identifiers. Events, users and products made before do nothing
    /// any more.
    ///
    /// Returns at once; until the erasure is over every operation is neutral, as before `start`. `completion` runs on
    /// the main queue: with nothing, or with one sentence about what could not be erased, which is reported as an
    /// error, too; calling it again then is sound. While an erasure is under way, another call waits for that one.
    /// Without a library (before `start`, after `shutdown`) nothing happens and no completion runs; after a `shutdown`
    /// meanwhile, the erasure is finished all the same and the library stays ended. Without the memory to begin nothing
    /// is erased, the library stays as it is, and the completion is told so; inside the call where a task cannot be
    /// made, either. Threads: any. Not gated.
    static void eraseStoredData() noexcept;
    static void eraseStoredDataWithCompletionHandler(
        std::function<void(const std::optional<std::string>& problem)> completion) noexcept;

    // --- The user ---

    /// The user, to describe and to log in or out. Begins with empty attributes: what was set before and has not left
    /// with a session yet is dropped. Gated in that: while the gate is closed, the attributes stay as they are.
    [[nodiscard]] static OrbinelUser getCurrentUser() noexcept;

    /// The Orbinel ID of the person on this device; until the backend has given one, the device's own identifier stands
    /// for it. Nothing while the gate is closed. Gated.
    [[nodiscard]] static std::optional<std::string> getOrbinelID() noexcept;

    /// Performs `selector` (a member function of the sender that takes a `const std::string&`, or a function that takes
    /// the sender and that) whenever an Orbinel ID is set, on whichever thread sets it. The sender is held weakly;
    /// registering it again replaces its selector. Gated.
    template <typename Selector, typename Sender>
    static void registerOrbinelIDListenerWithSelector(Selector selector, std::weak_ptr<Sender> sender) noexcept {
        setIdListener(TargetAction<const std::string&>(std::move(sender), std::move(selector)));
    }

    // --- Products, cart, wishlist and pages. All gated. ---

    /// A new product. `productID`, `name`, `imageURL` and `currency` (ISO 4217, not checked) are texts of at least one
    /// byte, `taxonomy` the texts of its categories, a list that is not empty (what is no text in it is not sent), and
    /// `price` the finite price of one unit, zero or more. With any other argument, and while the gate is closed, the
    /// result is a product that is not valid: calls on it and with it do nothing.
    [[nodiscard]] static OrbinelProduct createNewProductWithID(OptionalText productID, OptionalText name,
                                                               const Array& taxonomy, OptionalText imageURL,
                                                               double price, OptionalText currency) noexcept;

    /// Pages that the person saw. An empty list and products that are not valid are skipped. A message that a product's
    /// page brought about is removed.
    static void visitHomepage() noexcept;
    static void visitListingPageWithTaxonomy(const Array& taxonomy) noexcept;
    static void visitProductDetailPageWithProduct(const OrbinelProduct& product) noexcept;
    static void visitCartPageWithProducts(const std::vector<OrbinelProduct>& products) noexcept;
    static void visitWishlistWithProducts(const std::vector<OrbinelProduct>& products) noexcept;

    /// The cart. A product that is not valid and an empty ID are skipped.
    static void itemAddedToCartWithProduct(const OrbinelProduct& product) noexcept;
    static void itemRemovedFromCartWithProductID(OptionalText productID) noexcept;
    static void cartCleared() noexcept;

    /// One product of a purchase. Stores the sale's ID in the product, as `setSaleID` does. The cart counts as empty
    /// afterwards.
    static void itemPurchasedWithSaleID(OptionalText saleID, const OrbinelProduct& product) noexcept;

    /// The wishlist, by the same rules as the cart.
    static void itemAddedToWishlistWithProduct(const OrbinelProduct& product) noexcept;
    static void itemRemovedFromWishlistWithProductID(OptionalText productID) noexcept;
    static void wishlistCleared() noexcept;

    // --- Remote content. Gated: while the gate is closed, the default is returned. ---

    /// The value that the vendor set for the variable, or the default where there is none: the one that the latest
    /// session start delivered, also in an earlier launch. A value of another kind is converted: to a text by its JSON
    /// form; to a number and a switch by what it reads as from its beginning ("12 pieces" is 12, "yes" is true). Reads
    /// memory only, once the store has been read. Notes for the session which campaign was shown.
    [[nodiscard]] static std::string getContentStringWithName(OptionalText name, OptionalText defaultString,
                                                              OrbinelVariableType dataType) noexcept;
    [[nodiscard]] static bool getContentBoolWithName(OptionalText name, bool defaultBool,
                                                     OrbinelVariableType dataType) noexcept;
    [[nodiscard]] static std::int32_t getContentIntWithName(OptionalText name, std::int32_t defaultInt,
                                                            OrbinelVariableType dataType) noexcept;

    /// The same, but only what the start of this session delivered.
    [[nodiscard]] static std::string getContentStringWithoutCache(OptionalText name, OptionalText defaultString,
                                                                  OrbinelVariableType dataType) noexcept;
    [[nodiscard]] static bool getContentBoolWithoutCache(OptionalText name, bool defaultBool,
                                                         OrbinelVariableType dataType) noexcept;
    [[nodiscard]] static std::int32_t getContentIntWithoutCache(OptionalText name, std::int32_t defaultInt,
                                                                OrbinelVariableType dataType) noexcept;

    /// Removes the variables that were delivered as tests. Not gated.
    static void removeTestVariables() noexcept;

    // --- Recommendations. All gated. ---

    /// Asks the vendor's service for the products of a recommendation campaign, for a language and a currency (as the
    /// service knows them, such as "en_US" and "EUR"); none of the arguments may be empty. `smartRecommendation` gets
    /// the answer as it came, on a background thread; an empty dictionary at once, on the caller's thread, where the
    /// backend has set up no such campaign; and is not called at all when the service fails or takes longer than two
    /// seconds, or an argument is refused.
    static void getSmartRecommendationWithID(std::int32_t recommendationID, OptionalText locale, OptionalText currency,
                                             std::function<void(const Dictionary&)> smartRecommendation) noexcept;

    /// The same beside a product that the person looks at, in its currency.
    static void getSmartRecommendationWithProduct(const OrbinelProduct& product, std::int32_t recommendationID,
                                                  OptionalText locale,
                                                  std::function<void(const Dictionary&)> smartRecommendation) noexcept;

    /// The same beside products known by their IDs only; the first three that are not empty count.
    static void getSmartRecommendationWithProductIDs(
        const Array& productIDs, std::int32_t recommendationID, OptionalText locale, OptionalText currency,
        std::function<void(const Dictionary&)> smartRecommendation) noexcept;

    /// The person chose a recommended product: its later way into the cart and its purchase count for the campaign,
    /// until the session ends. Skipped for ID 0, for a campaign whose answers held no products, and for a product that
    /// is not valid.
    static void clickSmartRecommendationProductWithID(std::int32_t recommendationID,
                                                      const OrbinelProduct& product) noexcept;

    // --- Message center ---

    /// Asks the backend for the messages sent to this device between two moments, at most `limit` of them. `success`
    /// gets them as they came, on the main queue; an empty list at once, on the caller's thread, where a date is
    /// missing, the start is not before the end, or the library is not initialised; an empty list, too, where the
    /// answer is none; and is not called at all when the backend cannot be reached or reports an error. Moments are
    /// told to the backend in whole seconds, `limit` as it is. Not gated.
    static void getMessageCenterDataWithLimit(std::int32_t limit, std::optional<Date> startDate,
                                              std::optional<Date> endDate,
                                              std::function<void(const Array&)> success) noexcept;

    // --- In-app messages ---

    /// Removes the message that is on the screen or on its way to it, if any; nothing is logged of its close. Gated: a
    /// message stays on the screen while the gate is closed.
    static void removeInapp() noexcept;

    /// The same, not gated; the completion, which may be empty, is called on the main thread when the message is gone;
    /// where there was nothing to remove, also inside the call if that is made on the main thread; not at all while the
    /// library is not started.
    static void removeInappWithCompletionHandler(std::function<void()> completion) noexcept;

    /// Shows messages again, from the next one on. Not gated.
    static void enableInAppMessages() noexcept;

    /// Shows no messages until they are enabled again: one on the screen is recorded as blocked and removed, and so is
    /// recorded every one that would have been shown. Not gated.
    static void disableInAppMessages() noexcept;

    /// The same two without a record of the change, and leaving a message on the screen to reappear. Not gated.
    static void reenableTemplates() noexcept;
    static void disableTemplates() noexcept;

    /// Writes on the console of test devices what pages of messages write to theirs. Not gated.
    static void enableTemplateDebugging() noexcept;

    /// The fonts that pages of messages may use, by the family's name as CSS has it: as the custom properties
    /// "--orbinel-regular-font", "--orbinel-bold-font" and "--orbinel-italic-font". Pages built later have them. Gated.
    static void setCustomRegularFont(OptionalText font) noexcept;
    static void setCustomBoldFont(OptionalText font) noexcept;
    static void setCustomItalicFont(OptionalText font) noexcept;

    /// Shows a message that the vendor's panel sent for a try: its content, and the push that it came with. It takes
    /// the place of every campaign that counts occurrences. Gated: while the gate is closed, it does not appear.
    static void showTestInapp(const Dictionary& inapp, const Dictionary& pushInfo) noexcept;

    /// Asks for a rating of the application by the platform's own question. Not gated.
    static void showNativeAppReview() noexcept;

    // --- Push ---

    /// Asks the person to allow pushes; quietly where the platform can deliver them without asking first. Does nothing
    /// while the library is switched off; not gated otherwise.
    static void registerWithQuietPermission(bool quiet) noexcept;

    /// The token by which the platform's push service reaches this device, in bytes, as the application's delegate
    /// receives it; sent with each session from then on, as lower-case hexadecimal digits, until the library ends: the
    /// platform gives it anew at each launch. An empty one is ignored. `application` is not looked at and may be null.
    /// Not gated.
    static void registerDeviceTokenWithApplication(const platform::Application* application,
                                                   std::span<const std::uint8_t> deviceToken) noexcept;

    /// The same for the token of another push service, which is a text and sent as it stands. Not gated.
    static void setPushToken(OptionalText token) noexcept;

    // The operations from here to `trackInteractiveLogWithUserInfo` are for an application that handles pushes itself.
    // They take what the platform handed to it; what is nested deeper than 512 levels is ignored. They read what the
    // application's notification extension left in the app group, which may wait for the disk.

    /// Handles a push that the person opened, or that came while the application was in the foreground; given by its
    /// payload, or by the launch options that hold one. Where the vendor sent it ("source" is "Orbinel"), the session
    /// notes it, the callback is told (type 0), and a second later its address is opened: "orb_dl_internal" in the
    /// library's own browser, else "orb_dl_external" or "orb_dl_url_scheme" by the system; only http, https, mailto,
    /// tel and the application's own schemes. Contents and messages that the vendor's panel sent for a try are served
    /// whoever sent it. Under a cross-platform wrapper, a push that comes before the application was ever active waits
    /// until it is. Gated.
    static void handlePushLogWithUserInfo(const std::optional<Dictionary>& userInfo) noexcept;

    /// The same under the name by which wrappers know it. Gated.
    static void triggerPushProcessWithUserInfo(const std::optional<Dictionary>& userInfo) noexcept;

    /// Only what a push of the vendor's brings about by itself, without the gate: the note for the session, its
    /// address, the callback. `pushInfo`: a payload. Not gated.
    static void setPushActionWithPushInfo(const std::optional<Dictionary>& pushInfo) noexcept;

    /// The payload of a push among what the platform handed over: the launch options' entry, or the dictionary itself;
    /// nothing where it has no "aps". Not gated.
    [[nodiscard]] static std::optional<Dictionary> getPushInfo(const std::optional<Dictionary>& userInfo) noexcept;

    /// Notes for the session what the person did with the push in an interactive notification or a carousel, where the
    /// application's notification extension left anything of it in the app group. `userInfo` as above; it has to name
    /// its campaign. Not gated.
    static void trackInteractiveLogWithUserInfo(const std::optional<Dictionary>& userInfo) noexcept;

    /// Performs `callback` (a member function of the sender that takes a `const Dictionary&`, or a function that takes
    /// the sender and that) on the main queue with the payload of each push that the platform hands to the
    /// application's delegate while it is in the foreground (not of those that the application hands over itself),
    /// messages for a try excepted. The sender is held weakly; a registration replaces the one before. Not gated.
    template <typename Callback, typename Sender>
    static void setForegroundPushCallback(Callback callback, std::weak_ptr<Sender> sender) noexcept {
        setForegroundCallback(TargetAction<const Dictionary&>(std::move(sender), std::move(callback)));
    }

    /// The application shows pushes that come in the foreground in a view of its own: an item that was picked in a
    /// carousel notification does not count for them. Not gated.
    static void setActiveForegroundPushView() noexcept;

    // --- Links ---

    /// An activity that a person continues in this application. A web page that opened it is followed through its
    /// redirections; where the final address is one of the vendor's link service (its query has "isOrb=1"), the
    /// session notes it. Any other activity is ignored. Gated.
    static void handleUniversalLink(const UserActivity& activity) noexcept;

    // --- Testing one's integration ---

    /// Takes a link of the vendor's panel that opened the application: "SCHEME://test_device/TOKEN" makes this a test
    /// device when the application next becomes active, on which the library writes what it does on the console;
    /// "SCHEME://connect_wizard/TOKEN" connects it to the panel, which then shows what the application calls. Any other
    /// link is ignored. Not gated.
    static void handleUrl(OptionalText url) noexcept;

    // --- Callbacks ---

    /// Performs `selector` (a member function of the sender that takes a `const Dictionary&`, or a function that takes
    /// the sender and that) on the main queue with {"type", "data"} when something happened:
    ///
    /// | type | when | data |
    /// |---|---|---|
    /// | 0 | a push was opened, or came in the foreground | what of its payload is not the library's own |
    /// | 1 | a native button of a message was pressed | what the button carries |
    /// | 2 | a page of a message reported a purchase | {"purchased_items"} |
    /// | 3 | a page put something into the cart | {"cart_items"} |
    /// | 4 | a page has something of its own to say | what it says |
    /// | 5 | a message was shown | {"inapp_id", "variant_id"}, texts |
    /// | 6 | a session start was answered | none |
    ///
    /// Beside the data of a push stands its "source"; of an item that was picked in a carousel, the data are the item's
    /// entries alone. A start that brings a message of its push, or one for a try, is not told.
    ///
    /// The sender is held weakly; a registration replaces the one before. Not gated.
    template <typename Selector, typename Sender>
    static void registerOrbinelCallbackWithSelector(Selector selector, std::weak_ptr<Sender> sender) noexcept {
        setCallback(TargetAction<const Dictionary&>(std::move(sender), std::move(selector)));
    }

    // --- Diagnosis ---

    /// Hands an application's own failure to the crash handler: what happened, and where. Not gated.
    static void sendError(OptionalText error, OptionalText desc) noexcept;

    /// The library's version, such as "13.9.0". Not gated.
    [[nodiscard]] static std::string getSDKVersion() noexcept;

    /// Writes on the console what the library does, and what it drops and why. Off at every start; never sent. E-mail
    /// addresses, telephone numbers, identifiers, tokens, values of user attributes, texts of pushes and whole requests
    /// are shortened to their first two characters and their length, so that a log may be passed on; names, event
    /// parameters and whatever else a push carries are not: look at them before. Not gated.
    static void setDevelopmentLog(bool on) noexcept;

private:
    static void setIdListener(TargetAction<const std::string&> listener) noexcept;
    static void setCallback(TargetAction<const Dictionary&> callback) noexcept;
    static void setForegroundCallback(TargetAction<const Dictionary&> callback) noexcept;
};

}  // namespace orbinel
