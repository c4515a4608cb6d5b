#include "core/crash_handler.hpp"

#include <exception>

namespace orbinel {

OrbinelCrashHandler::OrbinelCrashHandler(const Needs& needs)
    : reports_(needs.reports), session_(needs.session), device_(needs.device) {}

void OrbinelCrashHandler::sendError(std::string_view error, std::string_view description) noexcept {
    constexpr bool isError = true;
    constexpr bool shouldFeed = true;
    reports_.feed(
        "sendError",
        [&] {
            try {
                return makeReport(error, description);
            } catch (const std::exception& failure) {
                return Dictionary{{"error", failure.what()}};
            }
        },
        isError, shouldFeed);
}

Dictionary OrbinelCrashHandler::makeReport(std::string_view error, std::string_view description) const {
    Dictionary report{{"partner_name", session_.partnerName()},
                      {"platform", OrbinelDeviceAttributes::getPlatform()},
                      {"sdk_version", device_.getSDKVersion()}};
    if (auto udid = device_.getUdid()) report.set("udid", std::move(*udid));
    report.set("error", std::string(error).append(" -- ").append(description));
    return report;
}

}  // namespace orbinel
