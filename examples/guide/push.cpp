#include "guide.hpp"

using orbinel::Dictionary;
using orbinel::Orbinel;

namespace guide {

void askForPushes() { Orbinel::registerWithQuietPermission(false); }

void handOverPushes(const std::vector<std::uint8_t>& deviceToken, const Dictionary& payload) {
    Orbinel::registerDeviceTokenWithApplication(nullptr, deviceToken);
    Orbinel::handlePushLogWithUserInfo(payload);
}

void handOverLinks(const std::string& pageAddress) {
    Orbinel::handleUniversalLink({orbinel::browsingWebActivityType, pageAddress});
    Orbinel::handleUrl("shop://test_device/TOKEN");  // a link of the vendor's panel
}

}  // namespace guide
