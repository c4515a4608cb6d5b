#pragma once

namespace orbinel {

/// The key of the launch options under which the platform hands over the push that opened the application.
inline constexpr const char* launchOptionsRemoteNotificationKey = "UIApplicationLaunchOptionsRemoteNotificationKey";

}  // namespace orbinel
