#include "orbinel/headless/headless_host.hpp"

#include <utility>

#include "hosts/common/glib_base64.hpp"
#include "hosts/common/in_process_notification_centre.hpp"
#include "hosts/common/rapidjson_json.hpp"

namespace orbinel::headless {

HeadlessHost::HeadlessHost(double start) : HeadlessHost(std::make_shared<HeadlessScheduler>(start)) {}

HeadlessHost::HeadlessHost(std::shared_ptr<HeadlessScheduler> chosen)
    : scheduler(std::move(chosen)),
      http(std::make_shared<HeadlessHttp>(scheduler)),
      json(std::make_shared<hosts::RapidJson>()),
      base64(std::make_shared<hosts::GlibBase64>()),
      defaults(std::make_shared<HeadlessDefaults>(json)),
      secureItems(std::make_shared<HeadlessSecureItems>()),
      notificationCentre(std::make_shared<hosts::InProcessNotificationCentre>()),
      application(std::make_shared<HeadlessApplication>(scheduler)),
      device(std::make_shared<HeadlessDevice>()),
      notifications(std::make_shared<HeadlessNotifications>()),
      console(std::make_shared<HeadlessConsole>()),
      views(std::make_shared<HeadlessViews>(scheduler, device)),
      accelerometer(std::make_shared<HeadlessAccelerometer>(scheduler)),
      haptics(std::make_shared<HeadlessHaptics>()),
      pasteboard(std::make_shared<HeadlessPasteboard>()),
      reviewPrompt(std::make_shared<HeadlessReviewPrompt>()) {}

platform::Services HeadlessHost::services() const {
    return {scheduler, http,          json,    base64, defaults,      secureItems, notificationCentre, application,
            device,    notifications, console, views,  accelerometer, haptics,     pasteboard,         reviewPrompt};
}

void HeadlessHost::settle() const {
    do {
        scheduler->runUntilIdle();
        if (!http->waitUntilIdle()) return;
    } while (scheduler->hasDueWork());
}

void HeadlessHost::advance(double seconds) const {
    scheduler->advance(seconds, [this] { settle(); });
}

}  // namespace orbinel::headless
