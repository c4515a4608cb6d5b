#pragma once

#include <functional>
#include <vector>

#include "apps/orbinel/play/play_interface.hpp"
#include "orbinel/headless/headless_accelerometer.hpp"
#include "orbinel/headless/headless_application.hpp"
#include "orbinel/headless/headless_device.hpp"
#include "orbinel/headless/headless_notifications.hpp"
#include "orbinel/headless/headless_scheduler.hpp"
#include "orbinel/value.hpp"

namespace orbinel::tool {

/// Where the facts of the device lie.
struct DeviceParts {
    headless::HeadlessDevice& device;
    headless::HeadlessApplication& application;
    headless::HeadlessNotifications& notifications;
    headless::HeadlessScheduler& scheduler;
    PlayInterface& interface;
    headless::HeadlessAccelerometer& accelerometer;
};

/// One fact that has been read and checked, ready to be set.
using FactChange = std::function<void(const DeviceParts&)>;

/// Reads a `device` object: one change a fact, in its order. Throws `Unusable` for a fact that does not exist and for
/// content that a fact cannot have.
[[nodiscard]] std::vector<FactChange> readFacts(const Value& json);

}  // namespace orbinel::tool
