// A session of an application that knows only what is installed; fails where its start or its stop was not sent.
#include <orbinel/headless/headless_host.hpp>
#include <orbinel/linux/linux_host.hpp>
#include <orbinel/orbinel.hpp>

using orbinel::Orbinel;
namespace names = orbinel::platform::notification_names;

int main() {
    const orbinel::headless::HeadlessHost host;
    host.http->setHandler([](const auto&) { return orbinel::platform::HttpResponse{200, {}, "", ""}; });
    if (!orbinel::hosts::makeLinuxHttp() || !orbinel::start(host.services())) return 1;
    Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme", "");
    host.notificationCentre->post(names::didBecomeActive, {});
    host.settle();
    Orbinel::tagEvent("purchase").addParameterWithString("sku", "a1").build();
    host.advance(90);
    host.notificationCentre->post(names::didEnterBackground, {});
    host.settle();
    orbinel::shutdown();
    const auto sent = host.http->sent();
    return sent.size() >= 2 && sent.back().url.ends_with("/session/stop") ? 0 : 1;
}
