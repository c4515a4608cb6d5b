#pragma once

#include <memory>

#include "orbinel/export.hpp"
#include "orbinel/headless/headless_accelerometer.hpp"
#include "orbinel/headless/headless_application.hpp"
#include "orbinel/headless/headless_console.hpp"
#include "orbinel/headless/headless_defaults.hpp"
#include "orbinel/headless/headless_device.hpp"
#include "orbinel/headless/headless_haptics.hpp"
#include "orbinel/headless/headless_http.hpp"
#include "orbinel/headless/headless_notifications.hpp"
#include "orbinel/headless/headless_pasteboard.hpp"
#include "orbinel/headless/headless_review_prompt.hpp"
#include "orbinel/headless/headless_scheduler.hpp"
#include "orbinel/headless/headless_secure_items.hpp"
#include "orbinel/headless/headless_views.hpp"
#include "orbinel/platform/services.hpp"

namespace orbinel::headless {

/// A whole platform in memory, for tests of applications: every service, made to work together.
///
///     orbinel::headless::HeadlessHost host;
///     host.http->setHandler([](const auto& request) { … });
///     orbinel::start(host.services());
///     host.advance(90);
///
/// Services may be replaced before `services` is asked. Threads: made and driven on the test's thread, which is the
/// main thread.
struct ORBINEL_API HeadlessHost {
    /// A virtual clock that stands at this many seconds since 1970.
    explicit HeadlessHost(double start = 1'767'225'600);

    /// With a scheduler of the caller's choice.
    explicit HeadlessHost(std::shared_ptr<HeadlessScheduler> chosen);

    [[nodiscard]] platform::Services services() const;

    /// Runs due work and waits for scripted answers, in turns, until there is neither. Requests that are never
    /// answered are not waited for.
    void settle() const;

    /// Moves the virtual clock on by so many seconds, settling at each moment at which work falls due.
    void advance(double seconds) const;

    std::shared_ptr<HeadlessScheduler> scheduler;
    std::shared_ptr<HeadlessHttp> http;
    std::shared_ptr<platform::Json> json;
    std::shared_ptr<platform::Base64> base64;
    std::shared_ptr<HeadlessDefaults> defaults;
    std::shared_ptr<HeadlessSecureItems> secureItems;
    std::shared_ptr<platform::NotificationCentre> notificationCentre;
    std::shared_ptr<HeadlessApplication> application;
    std::shared_ptr<HeadlessDevice> device;
    std::shared_ptr<HeadlessNotifications> notifications;
    std::shared_ptr<HeadlessConsole> console;
    std::shared_ptr<HeadlessViews> views;
    std::shared_ptr<HeadlessAccelerometer> accelerometer;
    std::shared_ptr<HeadlessHaptics> haptics;
    std::shared_ptr<HeadlessPasteboard> pasteboard;
    std::shared_ptr<HeadlessReviewPrompt> reviewPrompt;
};

}  // namespace orbinel::headless
