#include "orbinel/headless/headless_host.hpp"

#include "guide.hpp"

using orbinel::Orbinel;

namespace guide {

bool purchaseIsReported() {
    namespace names = orbinel::platform::notification_names;
    const orbinel::headless::HeadlessHost host;
    host.http->setHandler([](const auto&) { return orbinel::platform::HttpResponse{200, {}, "", ""}; });
    if (!orbinel::start(host.services())) return false;
    Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme");

    host.notificationCentre->post(names::didBecomeActive, {});
    host.settle();
    reportShopping();
    host.advance(90);  // seconds of the virtual clock
    host.notificationCentre->post(names::didEnterBackground, {});
    host.settle();

    orbinel::shutdown();
    const auto sent = host.http->sent();
    return !sent.empty() && sent.back().url.ends_with("/session/stop");
}

}  // namespace guide
