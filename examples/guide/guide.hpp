#pragma once

#include <memory>
#include <string>
#include <vector>

#include "orbinel/orbinel.hpp"

// The code that the pages of docs/guide quote. The tests compile it and run it over a device in memory.
namespace guide {

/// Of the README.
bool useWhatThereIs();

void reportEvents();

void describeUser();
void logIn();
void logOut();

void reportShopping();

/// What an application hears from the library. Kept alive by the application: the library holds it weakly.
class Engagement {
public:
    void onOrbinel(const orbinel::Dictionary& what);
    std::vector<std::string> shownMessages;
};
void listenForMessages(const std::shared_ptr<Engagement>& engagement);
void keepMessagesAwayDuringCheckout(bool atCheckout);

std::string titleOfHomePage();

void showRecommendations(std::int32_t campaign);
std::vector<std::string> productIdsOf(const orbinel::Dictionary& answer);

void respectPrivacy(bool processing, bool location);

/// To be called before the initialisation. Every link that opens the application is added to `opened`.
void listenForLinks(const orbinel::platform::Services& services, std::vector<std::string>& opened);
void askForPushes();
void handOverPushes(const std::vector<std::uint8_t>& deviceToken, const orbinel::Dictionary& payload);
void handOverLinks(const std::string& pageAddress);

void eraseEverything(std::string& toldToThePerson);

/// Whether the purchase reached the backend, over a device in memory.
bool purchaseIsReported();

}  // namespace guide
