#include "push/device_token.hpp"

#include <utility>

#include "base/guard.hpp"
#include "base/hexadecimal.hpp"

namespace orbinel {

void DeviceToken::registerDeviceToken(std::span<const std::uint8_t> deviceToken) noexcept {
    guarded(reports_, "+[Orbinel registerDeviceTokenWithApplication:deviceToken:]", [&] {
        auto token = lowerCaseHex(deviceToken);
        reports_.feed("registerDeviceToken", [&] { return Dictionary{{"deviceToken", token}}; });
        store(std::move(token));
    });
}

void DeviceToken::setPushToken(std::string_view token) noexcept {
    guarded(reports_, "+[Orbinel setPushToken:]", [&] { store(std::string(token)); });
}

void DeviceToken::store(std::string token) {
    if (token.empty()) return reports_.note("Ignored a push token: it is empty.");
    device_.storeDeviceToken(std::move(token));
    device_.storeEnvironment(helper_.isDevelopmentEnviroment() ? "development" : "production");
}

}  // namespace orbinel
