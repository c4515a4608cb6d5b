#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/lifetime.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "orbinel/platform/application.hpp"
#include "orbinel/platform/device.hpp"
#include "orbinel/platform/notifications.hpp"
#include "privacy/collection_switches.hpp"
#include "session/collaborators.hpp"
#include "session/helper.hpp"

namespace orbinel {

/// Describes the device, the application and its permissions to the backend.
///
/// A getter answers nothing where the platform does not know. Threads: any.
class OrbinelDeviceAttributes final : public SessionDevice {
public:
    struct Needs {
        Reports& reports;
        OrbinelHelper& helper;
        const CollectionSwitches& collection;
        const Lifetime& lifetime;
        platform::Device& device;
        platform::Application& application;
        platform::Notifications& notifications;
    };

    explicit OrbinelDeviceAttributes(const Needs& needs);

    /// Everything that is known, under the backend's keys; an empty dictionary where it could not be sent as JSON.
    [[nodiscard]] Value getDeviceAttributes() noexcept override;

    /// The device's identifier, and the vendor identifier as a fresh one, which is not stored.
    [[nodiscard]] std::optional<std::string> getUdid() noexcept { return helper_.getUdid(); }
    void storeUDID(const std::string& udid) { helper_.storeUDID(udid); }
    [[nodiscard]] std::optional<std::string> getFreshUdid() const noexcept { return getIDFV(); }

    /// The push token and its environment, for as long as the process lives.
    void storeDeviceToken(std::string token) noexcept;
    void storeEnvironment(std::string environment) noexcept;

    /// The version of a cross-platform wrapper that drives the library.
    void setHybridSDKVersion(std::optional<std::string> version) noexcept;
    [[nodiscard]] bool isHybridSDK() const noexcept;
    [[nodiscard]] bool isFlutterSDK() const noexcept;

    /// The device's own permissions.
    [[nodiscard]] bool isPushEnabledInSettings() const noexcept { return pushEnabledInSettings_; }
    void setPushEnabledInSettings(bool enabled) noexcept override { pushEnabledInSettings_ = enabled; }
    [[nodiscard]] bool isLocationEnabledInSettings() const noexcept;
    void setDeliverSilently(bool silently) noexcept { deliverSilently_ = silently; }

    /// The same, and the application's opt-in for the user where one is stored.
    [[nodiscard]] bool isPushEnabled() noexcept override;
    [[nodiscard]] bool isLocationEnabled() noexcept override;

    [[nodiscard]] std::optional<std::string> getIDFV() const noexcept;
    [[nodiscard]] std::optional<std::string> getDeviceModel() const noexcept;
    [[nodiscard]] std::optional<std::string> getAppVersion() noexcept override;
    [[nodiscard]] static std::string_view getPlatform() noexcept { return "iOS"; }
    [[nodiscard]] std::optional<std::string> getOsVersion() noexcept override;
    [[nodiscard]] std::optional<std::string> getDeviceLanguage() const noexcept;  // such as "tr"
    [[nodiscard]] std::optional<std::string> getTimezone() const noexcept;        // such as "Europe/Istanbul"
    [[nodiscard]] std::string getSDKVersion() noexcept override;
    [[nodiscard]] std::optional<std::string> getPackageName() const noexcept;
    [[nodiscard]] std::optional<std::int32_t> getTopSafeZoneDistance() const noexcept;     // points
    [[nodiscard]] std::optional<std::int32_t> getBottomSafeZoneDistance() const noexcept;  // points
    [[nodiscard]] std::optional<std::int32_t> getPointsPerPixel() const noexcept;
    [[nodiscard]] std::optional<std::int32_t> getScreenWidth() const noexcept;   // points
    [[nodiscard]] std::optional<std::int32_t> getScreenHeight() const noexcept;  // points
    [[nodiscard]] std::optional<std::string> getIDFA() const noexcept;
    [[nodiscard]] std::optional<std::string> getCarrier() const noexcept;
    [[nodiscard]] std::optional<std::int32_t> getBattery() noexcept override;  // percent

private:
    /// What the person's notification settings said last.
    struct SummarySettings {
        std::optional<bool> timeSensitive;
        std::optional<bool> scheduledSummary;
    };

    void describeApplication(Dictionary& attributes);
    void describeScreen(Dictionary& attributes) const;
    void describePermissions(Dictionary& attributes);
    void describePrivacy(Dictionary& attributes) const;
    void askForNotificationSettings();
    [[nodiscard]] bool optedIn(std::string_view key, bool permission) const;

    template <typename Get>
    [[nodiscard]] auto fact(const char* operation, Get&& get) const noexcept;

    Reports& reports_;
    OrbinelHelper& helper_;
    const CollectionSwitches& collection_;
    const Lifetime& lifetime_;
    platform::Device& device_;
    platform::Application& application_;
    platform::Notifications& notifications_;

    std::atomic<bool> pushEnabledInSettings_{false};
    std::atomic<bool> deliverSilently_{false};

    mutable Mutex mutex_;
    std::string deviceToken_ ORBINEL_GUARDED_BY(mutex_);
    std::string environment_ ORBINEL_GUARDED_BY(mutex_);
    SummarySettings summary_ ORBINEL_GUARDED_BY(mutex_);
};

}  // namespace orbinel
