#pragma once

#include <array>
#include <string_view>

/// Every key that the library keeps across launches, so that no two places disagree on one. An application's data on a
/// device depends on them: they never change. A key without a remark is in the application's own store.
namespace orbinel::keys {

inline constexpr std::string_view appGroup = "orbinelAppGroup";
inline constexpr std::string_view orbinelId = "ORBINEL_ID";                // text; mirrored in the app group
inline constexpr std::string_view partnerName = "ORBINEL_PARTNER_NAME";    // text; app group only
inline constexpr std::string_view udidCache = "ORBINEL_UDID_CACHE";        // text
inline constexpr std::string_view udidKeychain = "ORBINEL_UDID_KEYCHAIN";  // text in the app group; secure item
inline constexpr std::string_view firstRun = "ORBINEL_FIRST_RUN";          // boolean, true once asked for
inline constexpr std::string_view firstSession = "ORBINEL_FIRST_SESSION";  // boolean, true once asked for
inline constexpr std::string_view sessionStartTime = "ORBINEL_SESSION_START_TIME";  // seconds since 1970, double
inline constexpr std::string_view offlineQueue = "orbinelQueue";                    // array of session stops
inline constexpr std::string_view retryIdentityRequest = "RETRY_IDENTITY_REQUEST";  // boolean
inline constexpr std::string_view userIdentifiers = "ORBINEL_SET_USER_IDENTIFIER";  // dictionary
inline constexpr std::string_view inappFrequency = "ORBINEL_INAPP_FREQUENCY";       // dictionary
inline constexpr std::string_view pushEnabled = "ORBINEL_PUSH_ENABLED";             // boolean, the opt-in
inline constexpr std::string_view locationEnabled = "ORBINEL_LOCATION_ENABLED";     // boolean, the opt-in
inline constexpr std::string_view hybridSdkVersion = "ORBINEL_HYBRID_SDK_VERSION";  // text
inline constexpr std::string_view gdprConsent = "OrbinelGDPRConsent";               // boolean, once set or adopted
inline constexpr std::string_view mobileConsent = "OrbinelMobileConsent";           // boolean, once set
inline constexpr std::string_view savedGdprConsent = "OrbinelSavedGDPRConsent";  // boolean that waits to be sent again
inline constexpr std::string_view debugCheck = "OrbinelDebugCheck";              // the text "1" on a test device
inline constexpr std::string_view autoIntegration = "OrbinelAutoIntegration";    // the text "1" while it is on
inline constexpr std::string_view deviceLocation = "deviceLocation";             // dictionary
inline constexpr std::string_view recommendationEndpoints = "orbinel_recommendation_endpoints";  // dictionary of texts

/// What the application's notification extension leaves in the app group.
inline constexpr std::string_view placeholderLog = "orbinelPlaceholderLog";            // dictionary: a push log
inline constexpr std::string_view interactivePushSeen = "orbinelInteractivePushSeen";  // text
inline constexpr std::string_view carouselId = "orbinelCarouselID";                    // text
inline constexpr std::string_view carouselCampId = "orbinelCarouselCampId";            // integer
inline constexpr std::string_view carouselDeepLink = "orbinelCarouselDeepLink";        // dictionary
inline constexpr std::string_view carouselDeepLinkTimestamp = "orbinelCarouselDeepLinkTimestamp";  // seconds since 1970

/// Remote content has a store of its own: a record under the name of each variable, and this list of names.
inline constexpr std::string_view contentSuite = "orbinel_content_optimizer";  // the name of the store
inline constexpr std::string_view testContents = "OrbinelTestContents";

/// All of them by the store that they are in: what erasing removes.
inline constexpr std::array ofStandardStore{
    appGroup,         orbinelId,        udidCache,      firstRun,
    firstSession,     sessionStartTime, offlineQueue,   retryIdentityRequest,
    userIdentifiers,  inappFrequency,   pushEnabled,    locationEnabled,
    hybridSdkVersion, gdprConsent,      mobileConsent,  savedGdprConsent,
    debugCheck,       autoIntegration,  deviceLocation, recommendationEndpoints};
inline constexpr std::array ofAppGroup{orbinelId,      partnerName,         udidKeychain,
                                       placeholderLog, interactivePushSeen, carouselId,
                                       carouselCampId, carouselDeepLink,    carouselDeepLinkTimestamp};

}  // namespace orbinel::keys
