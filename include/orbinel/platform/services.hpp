#pragma once

#include <memory>

#include "orbinel/platform/accelerometer.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/base64.hpp"
#include "orbinel/platform/console.hpp"
#include "orbinel/platform/defaults.hpp"
#include "orbinel/platform/device.hpp"
#include "orbinel/platform/haptics.hpp"
#include "orbinel/platform/http.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/notification_centre.hpp"
#include "orbinel/platform/notifications.hpp"
#include "orbinel/platform/pasteboard.hpp"
#include "orbinel/platform/review_prompt.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/platform/secure_items.hpp"
#include "orbinel/platform/views.hpp"

namespace orbinel::platform {

/// Everything that the library reaches outside itself: one shared pointer a service, all of them required. Hosts may
/// be mixed: take HTTP and storage from one and the rest from another.
struct Services {
    std::shared_ptr<Scheduler> scheduler;
    std::shared_ptr<Http> http;
    std::shared_ptr<Json> json;
    std::shared_ptr<Base64> base64;
    std::shared_ptr<Defaults> defaults;
    std::shared_ptr<SecureItems> secureItems;
    std::shared_ptr<NotificationCentre> notificationCentre;
    std::shared_ptr<Application> application;
    std::shared_ptr<Device> device;
    std::shared_ptr<Notifications> notifications;
    std::shared_ptr<Console> console;
    std::shared_ptr<Views> views;
    std::shared_ptr<Accelerometer> accelerometer;
    std::shared_ptr<Haptics> haptics;
    std::shared_ptr<Pasteboard> pasteboard;
    std::shared_ptr<ReviewPrompt> reviewPrompt;
};

}  // namespace orbinel::platform
