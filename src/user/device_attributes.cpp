#include "user/device_attributes.hpp"

#include <algorithm>
#include <cmath>

#include "base/guard.hpp"
#include "base/number_reading.hpp"
#include "base/value_content.hpp"
#include "events/data_types.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

constexpr std::string_view VALUE_NOT_AVAILABLE = "N/A";
constexpr float firstVersionWithSummaries = 15.0F;

/// Truncated toward zero and held within 32 bits; nothing for what is no number.
std::optional<std::int32_t> wholePoints(double points) noexcept {
    if (!std::isfinite(points)) return std::nullopt;
    return held<std::int32_t>(points);
}

/// An entry is only written where there is a value.
void write(Dictionary& attributes, std::string_view key, Value value) {
    if (isPresent(value)) attributes.set(key, std::move(value));
}

}  // namespace

OrbinelDeviceAttributes::OrbinelDeviceAttributes(const Needs& needs)
    : reports_(needs.reports),
      helper_(needs.helper),
      collection_(needs.collection),
      lifetime_(needs.lifetime),
      device_(needs.device),
      application_(needs.application),
      notifications_(needs.notifications) {}

/// Reads one fact of the device; a failure leaves it out.
template <typename Get>
auto OrbinelDeviceAttributes::fact(const char* operation, Get&& get) const noexcept {
    using Fact = std::invoke_result_t<Get, const platform::DeviceFacts&>;
    return guarded(reports_, operation, Fact(), [&] { return get(*device_.facts()); });
}

// --- The whole ---

Value OrbinelDeviceAttributes::getDeviceAttributes() noexcept {
    return guarded(reports_, "+[OrbinelDeviceAttributes getDeviceAttributes]", Value(), [&] {
        Dictionary attributes;
        write(attributes, "udid", getUdid());
        write(attributes, "idfv", getIDFV());
        write(attributes, "model", getDeviceModel());
        describeApplication(attributes);
        describeScreen(attributes);
        describePrivacy(attributes);
        askForNotificationSettings();
        describePermissions(attributes);
        return Value(isValidJSONObject(attributes) ? std::move(attributes) : Dictionary());
    });
}

void OrbinelDeviceAttributes::describeApplication(Dictionary& attributes) {
    write(attributes, "app_version", getAppVersion());
    write(attributes, "platform", getPlatform());
    write(attributes, "os_version", getOsVersion());
    write(attributes, "device_language", getDeviceLanguage());
    write(attributes, "timezone", getTimezone());
    write(attributes, "sdk_version", getSDKVersion());
    write(attributes, "package_name", getPackageName());
}

void OrbinelDeviceAttributes::describeScreen(Dictionary& attributes) const {
    write(attributes, "top_safe_zone", getTopSafeZoneDistance());
    write(attributes, "bottom_safe_zone", getBottomSafeZoneDistance());
    write(attributes, "point_per_pixel", getPointsPerPixel());
    write(attributes, "screen_width", getScreenWidth());
    write(attributes, "screen_height", getScreenHeight());
}

void OrbinelDeviceAttributes::describePrivacy(Dictionary& attributes) const {
    write(attributes, "is_location_disabled", collection_.getLocationCollectionStatus());
    write(attributes, "is_ip_disabled", collection_.getIpCollectionStatus());
    const auto advertisingIdentifier = collection_.getIDFACollectionStatus() ? getIDFA() : std::optional<std::string>();
    if (advertisingIdentifier && !advertisingIdentifier->empty()) write(attributes, "idfa", advertisingIdentifier);
    write(attributes, "carrier",
          collection_.getCarrierCollectionStatus() ? getCarrier() : std::string(VALUE_NOT_AVAILABLE));
}

void OrbinelDeviceAttributes::describePermissions(Dictionary& attributes) {
    write(attributes, "push_enabled", isPushEnabled());
    write(attributes, "is_deliver_silently_enabled", deliverSilently_.load());
    write(attributes, "location_enabled", isLocationEnabled());
    const MutexLock lock(mutex_);
    if (!environment_.empty()) attributes.set("environment", environment_);
    if (!deviceToken_.empty()) attributes.set("device_token", deviceToken_);
    write(attributes, "is_time_sensitive", summary_.timeSensitive);
    write(attributes, "is_in_scheduled_summary", summary_.scheduledSummary);
}

/// A dictionary that is built before the answer comes lacks the two entries. Both follow the scheduled delivery.
void OrbinelDeviceAttributes::askForNotificationSettings() {
    const auto keep = [this](bool scheduled) {
        const MutexLock lock(mutex_);
        summary_ = {scheduled, scheduled};
    };
    if (!helper_.isIOSVersionGreaterOrEqual(firstVersionWithSummaries)) return keep(false);
    {
        const MutexLock lock(mutex_);
        summary_ = {};
    }
    notifications_.readSettings(lifetime_.whileAlive(
        [keep](const platform::NotificationSettings& settings) { keep(settings.scheduledDelivery); }));
}

// --- Stored and remembered ---

void OrbinelDeviceAttributes::storeDeviceToken(std::string token) noexcept {
    const MutexLock lock(mutex_);
    deviceToken_.swap(token);
}

void OrbinelDeviceAttributes::storeEnvironment(std::string environment) noexcept {
    const MutexLock lock(mutex_);
    environment_.swap(environment);
}

void OrbinelDeviceAttributes::setHybridSDKVersion(std::optional<std::string> version) noexcept {
    guarded(reports_, "+[OrbinelDeviceAttributes setHybridSDKVersion:]", [&] {
        helper_.standardStore().set(keys::hybridSdkVersion, std::move(version));
        helper_.standardStore().synchronize();
    });
}

bool OrbinelDeviceAttributes::isHybridSDK() const noexcept {
    return guarded(reports_, "+[OrbinelDeviceAttributes isHybridSDK]", false,
                   [&] { return !helper_.standardStore().value(keys::hybridSdkVersion).isAbsent(); });
}

bool OrbinelDeviceAttributes::isFlutterSDK() const noexcept {
    return guarded(reports_, "+[OrbinelDeviceAttributes isFlutterSDK]", false, [&] {
        return helper_.standardStore().value(keys::hybridSdkVersion).stringOrEmpty().find("F-") != std::string::npos;
    });
}

bool OrbinelDeviceAttributes::optedIn(std::string_view key, bool permission) const {
    const auto stored = helper_.standardStore().value(key);
    return permission && (stored.isAbsent() || stored.truth());
}

bool OrbinelDeviceAttributes::isPushEnabled() noexcept {
    return guarded(reports_, "+[OrbinelDeviceAttributes isPushEnabled]", false,
                   [&] { return optedIn(keys::pushEnabled, isPushEnabledInSettings()); });
}

bool OrbinelDeviceAttributes::isLocationEnabled() noexcept {
    return guarded(reports_, "+[OrbinelDeviceAttributes isLocationEnabled]", false,
                   [&] { return optedIn(keys::locationEnabled, isLocationEnabledInSettings()); });
}

bool OrbinelDeviceAttributes::isLocationEnabledInSettings() const noexcept {
    return fact("+[OrbinelDeviceAttributes isLocationEnabledInSettings]",
                [](const platform::DeviceFacts& facts) { return facts.locationAllowed; });
}

// --- Single facts ---

std::optional<std::string> OrbinelDeviceAttributes::getIDFV() const noexcept {
    return fact("+[OrbinelDeviceAttributes getIDFV]",
                [](const platform::DeviceFacts& facts) { return facts.vendorIdentifier; });
}

std::optional<std::string> OrbinelDeviceAttributes::getDeviceModel() const noexcept {
    return fact("+[OrbinelDeviceAttributes getDeviceModel]", [](const platform::DeviceFacts& facts) {
        const bool known = facts.machine && !facts.machine->empty() && *facts.machine != "Unknown";
        return known ? facts.machine : facts.modelName;
    });
}

std::optional<std::string> OrbinelDeviceAttributes::getAppVersion() noexcept {
    return guarded(reports_, "+[OrbinelDeviceAttributes getAppVersion]", std::optional<std::string>(),
                   [&] { return application_.bundle().version; });
}

std::optional<std::string> OrbinelDeviceAttributes::getOsVersion() noexcept {
    return fact("+[OrbinelDeviceAttributes getOsVersion]",
                [](const platform::DeviceFacts& facts) { return facts.osVersion; });
}

std::optional<std::string> OrbinelDeviceAttributes::getDeviceLanguage() const noexcept {
    return fact("+[OrbinelDeviceAttributes getDeviceLanguage]", [&](const platform::DeviceFacts& facts) {
        auto language = application_.bundle().preferredLocalisation;
        if (!language) language = facts.preferredLanguage;
        if (language) language->erase(std::min(language->find('-'), language->size()));
        return language;
    });
}

std::optional<std::string> OrbinelDeviceAttributes::getTimezone() const noexcept {
    return fact("+[OrbinelDeviceAttributes getTimezone]",
                [](const platform::DeviceFacts& facts) { return facts.timezone; });
}

std::string OrbinelDeviceAttributes::getSDKVersion() noexcept { return ORBINEL_VERSION; }

std::optional<std::string> OrbinelDeviceAttributes::getPackageName() const noexcept {
    return guarded(reports_, "+[OrbinelDeviceAttributes getPackageName]", std::optional<std::string>(),
                   [&] { return application_.bundle().identifier; });
}

std::optional<std::int32_t> OrbinelDeviceAttributes::getTopSafeZoneDistance() const noexcept {
    return fact("+[OrbinelDeviceAttributes getTopSafeZoneDistance]", [](const platform::DeviceFacts& facts) {
        return facts.safeArea ? wholePoints(facts.safeArea->top) : std::nullopt;
    });
}

std::optional<std::int32_t> OrbinelDeviceAttributes::getBottomSafeZoneDistance() const noexcept {
    return fact("+[OrbinelDeviceAttributes getBottomSafeZoneDistance]", [](const platform::DeviceFacts& facts) {
        return facts.safeArea ? wholePoints(facts.safeArea->bottom) : std::nullopt;
    });
}

std::optional<std::int32_t> OrbinelDeviceAttributes::getPointsPerPixel() const noexcept {
    return fact("+[OrbinelDeviceAttributes getPointsPerPixel]", [](const platform::DeviceFacts& facts) {
        return facts.screen ? wholePoints(facts.screen->scale) : std::nullopt;
    });
}

std::optional<std::int32_t> OrbinelDeviceAttributes::getScreenWidth() const noexcept {
    return fact("+[OrbinelDeviceAttributes getScreenWidth]", [](const platform::DeviceFacts& facts) {
        return facts.screen ? wholePoints(facts.screen->width) : std::nullopt;
    });
}

std::optional<std::int32_t> OrbinelDeviceAttributes::getScreenHeight() const noexcept {
    return fact("+[OrbinelDeviceAttributes getScreenHeight]", [](const platform::DeviceFacts& facts) {
        return facts.screen ? wholePoints(facts.screen->height) : std::nullopt;
    });
}

std::optional<std::string> OrbinelDeviceAttributes::getIDFA() const noexcept {
    return fact("+[OrbinelDeviceAttributes getIDFA]",
                [](const platform::DeviceFacts& facts) { return facts.advertisingIdentifier; });
}

std::optional<std::string> OrbinelDeviceAttributes::getCarrier() const noexcept {
    return fact("+[OrbinelDeviceAttributes getCarrier]",
                [](const platform::DeviceFacts& facts) { return facts.carrier; });
}

std::optional<std::int32_t> OrbinelDeviceAttributes::getBattery() noexcept {
    return fact("+[OrbinelDeviceAttributes getBattery]", [](const platform::DeviceFacts& facts) {
        return facts.battery ? wholePoints(*facts.battery) : std::nullopt;
    });
}

}  // namespace orbinel
