#include <fcntl.h>
#include <unistd.h>

#include <iostream>
#include <string>
#include <string_view>
#include <thread>

#include "orbinel/linux/linux_host.hpp"
#include "orbinel/orbinel.hpp"
#include "session/stored_keys.hpp"
#include "tests/linux/temporary_directory.hpp"

// An application that is watched from outside: between two marks, its thread calls one operation. A mark is a write to
// no file, which the kernel refuses and a tracer sees.
namespace orbinel::testing {

namespace {

void mark(const std::string& text) { static_cast<void>(::write(-1, text.data(), text.size())); }

template <typename Call>
void watch(const char* name, Call&& call) {
    mark(std::string("begin ") + name);
    call();
    mark("end");
}

/// What an application calls while it is used: everything but the moments at which the app group may be read.
void useEverything() {
    const OrbinelProduct shoe = Orbinel::createNewProductWithID("shoe", "Shoe", {"Shoes"}, "https://img", 9.5, "EUR");
    watch("tagEvent", [] { Orbinel::tagEvent("seen").addParameterWithString("colour", "red").build(); });
    watch("signUpConfirmation", [] { Orbinel::signUpConfirmation(); });
    watch("attributes", [] {
        Orbinel::getCurrentUser().setName("Ada").setAge(36).setEmailOptin(true).setCustomAttributeWithInt("pets", 2);
    });
    watch("login", [] { Orbinel::getCurrentUser().login(OrbinelIdentifiers().addEmail("ada@acme.com")); });
    watch("logout", [] { Orbinel::getCurrentUser().logout(); });
    watch("getOrbinelID", [] { static_cast<void>(Orbinel::getOrbinelID()); });
    watch("consents", [] {
        Orbinel::setGDPRConsent(true);
        Orbinel::setMobileGDPRConsent(true);
    });
    watch("collection", [] {
        Orbinel::enableIDFACollection(true);
        Orbinel::enableIpCollection(true);
        Orbinel::enableLocationCollection(true);
        Orbinel::enableCarrierCollection(true);
    });
    watch("createNewProduct",
          [] { static_cast<void>(Orbinel::createNewProductWithID("a", "A", {"B"}, "https://img", 1, "EUR")); });
    watch("pages", [&] {
        Orbinel::visitHomepage();
        Orbinel::visitListingPageWithTaxonomy({"Shoes"});
        Orbinel::visitProductDetailPageWithProduct(shoe);
        Orbinel::visitCartPageWithProducts({shoe});
        Orbinel::visitWishlistWithProducts({shoe});
    });
    watch("cart and wishlist", [&] {
        Orbinel::itemAddedToCartWithProduct(shoe);
        Orbinel::itemRemovedFromCartWithProductID("shoe");
        Orbinel::cartCleared();
        Orbinel::itemPurchasedWithSaleID("sale", shoe);
        Orbinel::itemAddedToWishlistWithProduct(shoe);
        Orbinel::itemRemovedFromWishlistWithProductID("shoe");
        Orbinel::wishlistCleared();
    });
    watch("contents", [] {
        static_cast<void>(Orbinel::getContentStringWithName("title", "x", OrbinelVariableTypeContent));
        static_cast<void>(Orbinel::getContentBoolWithName("title", true, OrbinelVariableTypeElement));
        static_cast<void>(Orbinel::getContentIntWithoutCache("title", 1, OrbinelVariableTypeContent));
        Orbinel::removeTestVariables();
    });
    watch("recommendations", [&] {
        Orbinel::getSmartRecommendationWithID(1, "en", "EUR", [](const Dictionary&) {});
        Orbinel::getSmartRecommendationWithProduct(shoe, 1, "en", [](const Dictionary&) {});
        Orbinel::clickSmartRecommendationProductWithID(1, shoe);
    });
    watch("message center", [] {
        Orbinel::getMessageCenterDataWithLimit(3, Date{1'767'000'000}, Date{1'767'200'000}, [](const Array&) {});
    });
    watch("messages", [] {
        Orbinel::disableInAppMessages();
        Orbinel::enableInAppMessages();
        Orbinel::removeInapp();
        Orbinel::setCustomBoldFont("serif");
    });
    watch("push", [] {
        Orbinel::setPushToken("0102");
        Orbinel::registerWithQuietPermission(true);
        Orbinel::setActiveForegroundPushView();
    });
    watch("links", [] { Orbinel::handleUrl("acme://somewhere"); });
    watch("sendError", [] { Orbinel::sendError("error", "here"); });
    watch("reinit", [] { Orbinel::reinitWithPartnerName("acme_two"); });
}

/// The tripwire itself: an operation that does what none may.
void openAFile() {
    watch("a file that is opened", [] { ::close(::open("/proc/self/stat", O_RDONLY | O_CLOEXEC)); });
}

/// What every launch but an installation's first finds.
void rememberEarlierLaunch(const platform::Services& services) {
    const auto store = services.defaults->standard();
    store->set(keys::gdprConsent, true);
    store->set(keys::orbinelId, "known");
    store->set(keys::udidCache, "0123456789ABCDEF0123456789ABCDEF");
}

int run(bool firstLaunch) {
    hosts::TemporaryDirectory directory;
    hosts::LinuxHostOptions options;
    options.dataDirectory = directory.path();
    hosts::LinuxHost host(options);
    const auto services = host.services();
    if (!firstLaunch) rememberEarlierLaunch(services);
    if (!start(services)) return 1;
    watch("initWithLaunchOptions",
          [] { Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme", "http://127.0.0.1:1"); });
    if (firstLaunch) useEverything();  // while nobody has needed the device ID
    services.notificationCentre->post(platform::notification_names::didBecomeActive, {});
    host.runMainQueue();
    openAFile();
    useEverything();
    std::thread(useEverything).join();
    services.notificationCentre->post(platform::notification_names::didEnterBackground, {});
    shutdown();
    host.runMainQueue();
    return 0;
}

}  // namespace

}  // namespace orbinel::testing

int main(int count, char** arguments) {
    return orbinel::testing::run(count > 1 && std::string_view(arguments[1]) == "first-launch");
}
