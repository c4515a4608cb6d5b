#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/late.hpp"
#include "orbinel/value.hpp"

/// What a session needs of the folders above it: exactly the operations that it calls, bound by core. None of them
/// may be called with a lock held.
namespace orbinel {

using Completion = std::function<void()>;

/// The user's identity.
class SessionIdentity {
public:
    virtual ~SessionIdentity() = default;
    [[nodiscard]] virtual std::optional<std::string> getOrbinelID() = 0;
    virtual void setUnifiedOrbinelID(const std::string& orbinelId) = 0;
    virtual void setRetryIdentityRequestStatus(bool retry) = 0;
    virtual void resetOrbinelIdWithCompletionBlock(Completion completion) = 0;
    [[nodiscard]] virtual Dictionary getIdentifiersForStopPayload() = 0;
};

/// What the session's payloads say of the device.
class SessionDevice {
public:
    virtual ~SessionDevice() = default;
    /// Everything, for the stop: a dictionary, unless collecting failed.
    [[nodiscard]] virtual Value getDeviceAttributes() = 0;
    [[nodiscard]] virtual std::optional<std::string> getAppVersion() = 0;
    [[nodiscard]] virtual std::optional<std::string> getOsVersion() = 0;
    [[nodiscard]] virtual std::optional<std::int32_t> getBattery() = 0;  // percent
    [[nodiscard]] virtual bool isPushEnabled() = 0;
    [[nodiscard]] virtual bool isLocationEnabled() = 0;
    [[nodiscard]] virtual std::string getSDKVersion() = 0;
    virtual void setPushEnabledInSettings(bool enabled) = 0;
};

/// The user's attributes, taken out for a stop.
struct TakenAttributes {
    Dictionary user_attributes;
    Dictionary custom_attributes;
    Value removed_attributes;
};

class SessionAttributes {
public:
    virtual ~SessionAttributes() = default;
    /// Hands the attributes out and begins anew, in one step: what is set meanwhile belongs to the next session.
    [[nodiscard]] virtual TakenAttributes takeAndResetUser() = 0;
    /// Copies of the attributes as they are now.
    [[nodiscard]] virtual TakenAttributes attributesNow() const = 0;
};

/// Events, as far as a session makes and filters them itself.
class SessionEvents {
public:
    virtual ~SessionEvents() = default;
    /// Builds the internal event of that name.
    virtual void recordInternalEvent(std::string_view name) = 0;
    virtual void filterInvalidEventParams(Dictionary& payload) = 0;
    virtual void clearTotalEventCount() = 0;
};

/// The in-app campaigns.
class SessionCampaigns {
public:
    virtual ~SessionCampaigns() = default;
    virtual void setStartRequestCompleted(bool completed) = 0;
    /// Forgets every campaign of either kind.
    virtual void forgetCampaigns() = 0;
    virtual void cleanFrequencyCache() = 0;
    virtual void inappToMemory(const Array& inapps) = 0;
    /// Checks for a message that is due for the internal event of that name; true when one was chosen.
    virtual bool checkInapp(std::string_view eventName, std::int32_t triggerCount) = 0;
    [[nodiscard]] virtual bool doesTestInAppExist() = 0;
};

/// Remote content.
class SessionContents {
public:
    virtual ~SessionContents() = default;
    virtual void insertContentCampaigns(const Value& variables, const Value& contentId, const Value& variantId) = 0;
    virtual void insertNonCachedContentCampaigns(const Value& variables, const Value& contentId,
                                                 const Value& variantId) = 0;
    virtual void removeContentsFromCache(const Value& passiveVariables) = 0;
};

/// Recommendations.
class SessionRecommendations {
public:
    virtual ~SessionRecommendations() = default;
    virtual void storeEndpoints(const Dictionary& endpoints) = 0;
    virtual void clearEndpoints() = 0;
    virtual void emptyRecommendationLogs() = 0;
};

/// The switches of the diagnostic log.
class SessionLogSwitches {
public:
    virtual ~SessionLogSwitches() = default;
    virtual void setLogFlushTimeInterval(double seconds) = 0;
    virtual void setSessionId(const std::string& sessionId) = 0;
    virtual void setIsLoggingEnabled(bool enabled) = 0;
    virtual void startSendingLogsIfAppropriate() = 0;
};

/// Where a consent goes whose post did not reach the backend.
class FailedConsent {
public:
    virtual ~FailedConsent() = default;
    virtual void saveFailedGdprPost(bool consent) = 0;
};

/// All of them, as one world binds them.
struct SessionCollaborators {
    Late<SessionIdentity> identity;
    Late<SessionDevice> device;
    Late<SessionAttributes> attributes;
    Late<SessionEvents> events;
    Late<SessionCampaigns> campaigns;
    Late<SessionContents> contents;
    Late<SessionRecommendations> recommendations;
    Late<SessionLogSwitches> logSwitches;
    Late<FailedConsent> failedConsent;
};

}  // namespace orbinel
