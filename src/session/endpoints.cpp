#include "session/endpoints.hpp"

namespace orbinel {

namespace {

constexpr std::string_view prod = ORBINEL_API_ORIGIN;

}  // namespace

void OrbinelEndpoints::setCustomEndpoint(std::optional<std::string> endpoint) {
    const MutexLock lock(mutex_);
    custom_ = std::move(endpoint);
}

std::string OrbinelEndpoints::endPoint() const {
    const MutexLock lock(mutex_);
    if (custom_ && custom_->empty()) return std::string(prod);
    return custom_.value_or(std::string());
}

std::string OrbinelEndpoints::createEndPoint(std::string_view path) const {
    return endPoint().append("/api/").append(path);
}

std::string OrbinelEndpoints::logAPI() { return ORBINEL_LEGACY_LOGGING_ORIGIN "/api/logging/sdk/v1"; }
std::string OrbinelEndpoints::mailSessionLogAPI() { return ORBINEL_MAIL_LOGGING_ORIGIN "/v2/collect?"; }

bool OrbinelEndpoints::shouldEncryptEndpoint(std::string_view url) const {
    return url == sessionStop() || url == getMessageCenterData() || url == getIdentity();
}

bool OrbinelEndpoints::shouldDecryptEndpoint(std::string_view url) const { return url == getIdentity(); }

}  // namespace orbinel
