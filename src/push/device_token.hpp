#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/reports.hpp"
#include "session/helper.hpp"
#include "user/device_attributes.hpp"

namespace orbinel {

/// Takes the token by which the push service reaches this device.
///
/// Threads: any.
class DeviceToken {
public:
    struct Needs {
        Reports& reports;
        const OrbinelHelper& helper;
        OrbinelDeviceAttributes& device;
    };

    explicit DeviceToken(const Needs& needs) : reports_(needs.reports), helper_(needs.helper), device_(needs.device) {}

    /// The token as the platform's push service gives it, in bytes: sent as lower-case hexadecimal digits.
    void registerDeviceToken(std::span<const std::uint8_t> deviceToken) noexcept;

    /// The token as another push service gives it, sent as it stands.
    void setPushToken(std::string_view token) noexcept;

private:
    void store(std::string token);

    Reports& reports_;
    const OrbinelHelper& helper_;
    OrbinelDeviceAttributes& device_;
};

}  // namespace orbinel
