#pragma once

#include <cstddef>

#include "base/reports.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/value.hpp"

namespace orbinel {

/// The switches of the operations that an application can keep the library out of. The numbers are part of the design.
namespace swizzlers {
inline constexpr std::size_t didRegisterForRemoteNotificationsWithDeviceToken = 0;
inline constexpr std::size_t openURLWithOptions = 1;
inline constexpr std::size_t handleOpenURL = 2;
inline constexpr std::size_t openURLWithSourceApplication = 3;
inline constexpr std::size_t continueUserActivity = 4;
inline constexpr std::size_t didReceiveNotificationResponse = 5;
inline constexpr std::size_t willPresentNotification = 6;
}  // namespace swizzlers

/// What the application's package tells the library: {"Orbinel": {"Disabled Swizzlers": [names of switches]}}.
///
/// Threads: any.
class OrbinelConfigurations {
public:
    struct Needs {
        Reports& reports;
        const platform::Application& application;
    };

    explicit OrbinelConfigurations(const Needs& needs) : reports_(needs.reports), application_(needs.application) {}

    /// No only where the application lists the switch's name.
    [[nodiscard]] bool isSwizzlerEnabled(std::size_t swizzler) const noexcept;

    /// Empty where the application lists none.
    [[nodiscard]] Array getDisabledSwizzlers() const noexcept;

private:
    Reports& reports_;
    const platform::Application& application_;
};

}  // namespace orbinel
