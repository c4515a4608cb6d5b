#include "orbinel/linux/orbinel_linux.h"

#include <chrono>
#include <memory>
#include <string_view>
#include <utility>

#include "hosts/linux/c_interface/linux_options.hpp"
#include "orbinel/c_interface.hpp"
#include "orbinel/linux/linux_host.hpp"

using orbinel::hosts::LinuxHost;
namespace c_interface = orbinel::c_interface;
namespace notification_names = orbinel::platform::notification_names;

struct orbinel_linux {
    LinuxHost host;
};

namespace {

template <typename Result, typename Step>
Result onHost(const char* function, orbinel_linux* host, Result neutral, Step&& step) noexcept {
    return c_interface::run(function, neutral, [&] { return host != nullptr ? step(host->host) : neutral; });
}

template <typename Step>
void onHost(const char* function, orbinel_linux* host, Step&& step) noexcept {
    c_interface::run(function, [&] {
        if (host != nullptr) step(host->host);
    });
}

void post(const char* function, orbinel_linux* host, std::string_view name) noexcept {
    onHost(function, host, [&](const LinuxHost& it) { it.services().notificationCentre->post(name, {}); });
}

}  // namespace

orbinel_linux* orbinel_start_linux(const char* options) {
    return c_interface::run(__func__, static_cast<orbinel_linux*>(nullptr), [&] {
        std::unique_ptr<orbinel_linux> made(new orbinel_linux{LinuxHost(orbinel::hosts::linuxOptionsOf(options))});
        c_interface::start(made->host.services());
        return made.release();
    });
}

void orbinel_linux_free(orbinel_linux* host) { delete host; }

void orbinel_linux_did_become_active(orbinel_linux* host) { post(__func__, host, notification_names::didBecomeActive); }

void orbinel_linux_did_enter_background(orbinel_linux* host) {
    post(__func__, host, notification_names::didEnterBackground);
}

void orbinel_linux_will_terminate(orbinel_linux* host) { post(__func__, host, notification_names::willTerminate); }

size_t orbinel_linux_run_main_queue(orbinel_linux* host) {
    return onHost(__func__, host, size_t{0}, [](LinuxHost& it) { return it.runMainQueue(); });
}

bool orbinel_linux_run_until(orbinel_linux* host, bool (*predicate)(void* user_data), void* user_data,
                             int64_t milliseconds) {
    return onHost(__func__, host, false, [&](LinuxHost& it) {
        return it.runUntil([&] { return predicate != nullptr && predicate(user_data); },
                           std::chrono::milliseconds(milliseconds));
    });
}

void orbinel_linux_run(orbinel_linux* host) {
    onHost(__func__, host, [](LinuxHost& it) { it.run(); });
}

void orbinel_linux_quit(orbinel_linux* host) {
    onHost(__func__, host, [](LinuxHost& it) { it.quit(); });
}

void orbinel_linux_attach_to_glib_main_context(orbinel_linux* host) {
    onHost(__func__, host, [](LinuxHost& it) { it.attachToGlibMainContext(); });
}
