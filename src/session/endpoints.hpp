#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/mutex.hpp"

namespace orbinel {

/// The one place where the URLs of the vendor's API are formed.
///
/// Threads: any. URLs are formed when they are asked for, so that a custom endpoint counts from then on.
class OrbinelEndpoints {
public:
    /// The origin given by the application (scheme, host and port without a trailing slash; nothing is normalised).
    /// The empty text stands for the default origin; an absent one leaves URLs without a usable origin.
    void setCustomEndpoint(std::optional<std::string> endpoint);

    /// The base endpoint in force.
    [[nodiscard]] std::string endPoint() const;
    [[nodiscard]] std::string createEndPoint(std::string_view path) const;

    [[nodiscard]] std::string getConfig() const { return createEndPoint("v3/session/start"); }
    [[nodiscard]] std::string sessionStop() const { return createEndPoint("v3/session/stop"); }
    [[nodiscard]] std::string getIdentity() const { return createEndPoint("identity/v3/get"); }
    [[nodiscard]] std::string sendGDPRConsent() const { return createEndPoint("v1/privacy/gdpr/consent/set"); }
    [[nodiscard]] std::string getGDPRConsent() const { return createEndPoint("v1/privacy/gdpr/consent/get"); }
    [[nodiscard]] std::string getMessageCenterData() const { return createEndPoint("message_center/v2/sdk/get"); }
    [[nodiscard]] std::string getAddTestDeviceEndpoint() const { return createEndPoint("v1/test_device/add"); }
    [[nodiscard]] std::string getGeofence() const { return createEndPoint("v1/geofences"); }
    [[nodiscard]] std::string notifyGeofence() const { return createEndPoint("v1/geofences/notify"); }
    /// The doubled slash that comes of this path is part of the contract with the backend.
    [[nodiscard]] std::string logAPIv2() const { return createEndPoint("/logging/sdk/v2"); }
    [[nodiscard]] std::string initWizardConnection() const {
        return endPoint() + "/api/wizard/v1/init_new_integration";
    }
    [[nodiscard]] std::string terminateWizardConnection() const { return endPoint() + "/api/wizard/v1/disconnect"; }
    [[nodiscard]] std::string feedDataURL() const { return endPoint() + "/api/wizard/v1/feed_data"; }

    // Independent of the custom endpoint.
    [[nodiscard]] static std::string logAPI();
    [[nodiscard]] static std::string mailSessionLogAPI();

    /// Whether a request to exactly this URL travels scrambled, and whether its answer does.
    [[nodiscard]] bool shouldEncryptEndpoint(std::string_view url) const;
    [[nodiscard]] bool shouldDecryptEndpoint(std::string_view url) const;

private:
    mutable Mutex mutex_;
    std::optional<std::string> custom_ ORBINEL_GUARDED_BY(mutex_) = std::string();
};

}  // namespace orbinel
