// The smallest application: one session with one purchase. Usage: first_application http://127.0.0.1:8787
#include <chrono>

#include "orbinel/linux/linux_host.hpp"
#include "orbinel/orbinel.hpp"

using orbinel::Orbinel;

int main(int count, char** words) {
    orbinel::hosts::LinuxHost host;
    if (!orbinel::start(host.services())) return 1;
    Orbinel::setDevelopmentLog(true);
    Orbinel::initWithLaunchOptions(std::nullopt, "acme", "group.acme", count > 1 ? words[1] : "");

    const auto turn = [&] { host.runUntil([] { return false; }, std::chrono::milliseconds(500)); };
    host.services().notificationCentre->post(orbinel::platform::notification_names::didBecomeActive, {});
    turn();  // an application with a window runs its own loop here
    Orbinel::tagEvent("purchase").addParameterWithString("sku", "a1").addParameterWithDouble("price", 9.5).build();
    host.services().notificationCentre->post(orbinel::platform::notification_names::didEnterBackground, {});
    turn();
    orbinel::shutdown();
}
