#include "guide.hpp"

using orbinel::Dictionary;
using orbinel::Orbinel;

namespace guide {

void listenForLinks(const orbinel::platform::Services& services, std::vector<std::string>& opened) {
    using namespace orbinel::platform;
    auto type = std::make_shared<DelegateClass>("Shop");
    type->addOperation(delegate_operations::openUrlWithOptions,
                       [&opened](Delegate&, const DelegateArguments& arguments) {
                           opened.push_back(arguments.url);
                           return true;
                       });
    const auto delegate = std::make_shared<Delegate>(type);
    services.application->setDelegate(delegate);    // before the initialisation
    services.notifications->setDelegate(delegate);  // tokens, pushes and notifications that are opened
}

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
