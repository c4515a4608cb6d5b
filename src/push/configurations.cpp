#include "push/configurations.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/guard.hpp"

namespace orbinel {

namespace {

/// In the order of the switches.
constexpr std::array<std::string_view, 7> names{"didRegisterForRemoteNotificationsWithDeviceToken",
                                                "openURLWithOptions",
                                                "handleOpenURL",
                                                "openURLWithSourceApplication",
                                                "continueUserActivity",
                                                "didReceiveNotificationResponse",
                                                "willPresentNotification"};

}  // namespace

bool OrbinelConfigurations::isSwizzlerEnabled(std::size_t swizzler) const noexcept {
    return guarded(reports_, "-[OrbinelConfigurations isSwizzlerEnabled:]", true, [&] {
        if (swizzler >= names.size()) return true;
        const auto disabled = getDisabledSwizzlers();
        return std::none_of(disabled.begin(), disabled.end(), [&](const Value& name) {
            return name.ifString() != nullptr && *name.ifString() == names[swizzler];
        });
    });
}

Array OrbinelConfigurations::getDisabledSwizzlers() const noexcept {
    return guarded(reports_, "-[OrbinelConfigurations getDisabledSwizzlers]", Array(), [&] {
        const auto information = application_.bundle().information;
        const auto* ours = information["Orbinel"].ifDictionary();
        const auto* disabled = ours != nullptr ? (*ours)["Disabled Swizzlers"].ifArray() : nullptr;
        return disabled != nullptr ? *disabled : Array();
    });
}

}  // namespace orbinel
