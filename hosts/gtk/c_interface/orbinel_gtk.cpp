#include "orbinel/gtk/orbinel_gtk.h"

#include <memory>
#include <optional>
#include <string>

#include "hosts/linux/c_interface/linux_options.hpp"
#include "orbinel/c_interface.hpp"
#include "orbinel/gtk/gtk_host.hpp"

using orbinel::hosts::DesktopNotification;
using orbinel::hosts::GtkHost;
namespace c_interface = orbinel::c_interface;

struct orbinel_gtk {
    orbinel_gtk(_GtkWindow* window, const char* options) : host(window, orbinel::hosts::linuxOptionsOf(options)) {}

    GtkHost host;
};

namespace {

DesktopNotification notificationOf(const char* text) {
    orbinel::hosts::COptions given(orbinel::hosts::RapidJson(), text, "notification");
    DesktopNotification notification;
    given.text("identifier", notification.identifier);
    given.text("title", notification.title);
    given.text("body", notification.body);
    given.dictionary("user_info", notification.userInfo);
    given.expectNoOthers();
    return notification;
}

}  // namespace

orbinel_gtk* orbinel_start_gtk(_GtkWindow* window, const char* options) {
    return c_interface::run(__func__, static_cast<orbinel_gtk*>(nullptr), [&] {
        if (window == nullptr) throw c_interface::WrongArgument("window must not be NULL.");
        auto made = std::make_unique<orbinel_gtk>(window, options);
        c_interface::start(made->host.services());
        return made.release();
    });
}

void orbinel_gtk_free(orbinel_gtk* host) { delete host; }

void orbinel_gtk_present(orbinel_gtk* host, const char* notification, orbinel_callback completion, void* user_data,
                         orbinel_destroy destroy) {
    c_interface::run(__func__, [&] {
        const auto userData = c_interface::takeUserData(user_data, destroy);
        if (host == nullptr) return;
        host->host.present(notificationOf(notification), [=](const std::optional<std::string>& problem) {
            if (completion != nullptr) completion(userData.get(), problem ? problem->c_str() : nullptr);
        });
    });
}
