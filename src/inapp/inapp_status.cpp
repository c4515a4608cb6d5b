#include "inapp/inapp_status.hpp"

#include <array>

#include "inapp/presented_inapp.hpp"

namespace orbinel {

namespace {

constexpr std::array<std::string_view, 16> reasons{
    "App template not found",
    "Frequency is capped",
    "App template selected",
    "Other app template on screen",
    "Template request failed",
    "Orientation is not portrait",
    "Waiting other orbinel webview",
    "Template URL is invalid",
    "App template load request",
    "OrbinelWKWebbiew initialized",
    "OrbinelWKWebbiew estimated_progress",
    "OrbinelWKWebbiew added to superview",
    "Webview has been drawn",
    "Webview has been removed from superview",
    "Webview has been de-initialized",
    "App template Shake Detected",
};

}  // namespace

std::string_view getReason(int index) noexcept {
    const bool known = index >= 0 && index < static_cast<int>(reasons.size());
    return known ? reasons[static_cast<std::size_t>(index)] : "Unknown log";
}

void logRequestFailed(Reports& reports, const Dictionary& inapp, const std::string& reason) noexcept {
    logStatus(reports, InappStatus::requestFailed, [&] {
        auto attributes = inappIdentity(&inapp);
        attributes.set("reason", reason);
        return attributes;
    });
}

void logRemoval(Reports& reports, const char* reason) noexcept {
    reports.log(LogType::inapp, LogLevel::info, "RemoveFromSuperview is called.", [&] {
        return Dictionary{{"reason", reason}};
    });
}

}  // namespace orbinel
