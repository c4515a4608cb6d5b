#include "apps/orbinel/backend/endpoints.hpp"

#include <algorithm>
#include <array>

#include "apps/orbinel/backend/service.hpp"
#include "apps/orbinel/backend/summary.hpp"

namespace orbinel::tool {
namespace {

constexpr std::string_view startAnswer =
    R"({"session_id": "${uuid}", "sdk_disabled": false, "is_logging_enabled": false, "log_flush_time_interval": 30, )"
    R"("inapps": [], "contents": [], "smart_recommendations": {}})";
constexpr std::string_view success = R"({"success": true})";
constexpr std::string_view consents = R"({"gdpr_consent": true, "mobile_gdpr_consent": true})";

constexpr std::array table{
    Endpoint{"/api/v3/session/start", "session_start.json", startAnswer, BodyForm::plain, "ts", summariseStart,
             &Service::answerFromFile},
    Endpoint{"/api/v3/session/stop", "session_stop.json", success, BodyForm::envelopeOrPlain, "ts", summariseStop,
             &Service::answerFromFile},
    Endpoint{"/api/identity/v3/get", "identity_get.json", "{}", BodyForm::envelope, "ts", summariseIdentity,
             &Service::getIdentity},
    Endpoint{"/api/v1/privacy/gdpr/consent/set", "consent_set.json", success, BodyForm::plain, "ts", summariseConsent,
             &Service::setConsent},
    Endpoint{"/api/v1/privacy/gdpr/consent/get", "consent_get.json", consents, BodyForm::plain, "ts", summariseConsent,
             &Service::getConsent},
    Endpoint{"/api/message_center/v2/sdk/get", "message_center.json", "[]", BodyForm::envelope, "ts",
             summariseMessageCenter, &Service::getMessages},
    Endpoint{"/api/v1/test_device/add", "test_device_add.json", success, BodyForm::plain, "ts", summariseToken,
             &Service::answerFromFile},
    Endpoint{"/api/v1/geofences", "geofences.json", R"({"geofences": []})", BodyForm::plain, "ts", summariseNothing,
             &Service::answerFromFile},
    Endpoint{"/api/v1/geofences/notify", "geofences_notify.json", success, BodyForm::plain, "ts", summariseNothing,
             &Service::answerFromFile},
    // Two slashes: the path that is joined to "/api/" begins with one itself, and clients in the field send it so.
    Endpoint{"/api//logging/sdk/v2", "logging.json", success, BodyForm::envelope, "ts", summariseLogs,
             &Service::takeLogs},
    Endpoint{"/api/logging/sdk/v1", "logging_legacy.json", success, BodyForm::plain, "ts", summariseLogs,
             &Service::takeLogs},
    Endpoint{"/v2/collect", "collect.json", success, BodyForm::plain, "ts", summariseNothing, &Service::answerFromFile},
    Endpoint{"/api/wizard/v1/init_new_integration", "wizard_init.json", success, BodyForm::plain, "Authorization",
             summariseWizardDevice, &Service::connectWizard},
    Endpoint{"/api/wizard/v1/disconnect", "wizard_disconnect.json", success, BodyForm::plain, "Authorization",
             summariseNothing, &Service::disconnectWizard},
    Endpoint{"/api/wizard/v1/feed_data", "wizard_feed_data.json", success, BodyForm::plain, "Authorization",
             summariseFeed, &Service::feedWizard},
    Endpoint{"/recommend", "recommendations.json", "{}", BodyForm::none, "", summariseNothing,
             &Service::getRecommendations},
};

}  // namespace

std::span<const Endpoint> endpoints() { return table; }

const Endpoint* findEndpoint(std::string_view path) {
    const auto found =
        std::find_if(table.begin(), table.end(), [&](const Endpoint& endpoint) { return endpoint.path == path; });
    return found == table.end() ? nullptr : &*found;
}

}  // namespace orbinel::tool
