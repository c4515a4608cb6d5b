#include "session/helper.hpp"

#include <array>
#include <charconv>
#include <cstdio>

#include "base/guard.hpp"
#include "base/number_reading.hpp"
#include "session/stored_keys.hpp"

namespace orbinel {

namespace {

/// The digits and at most one point that the text begins with, as a number.
float leadingNumber(std::string_view text) noexcept {
    float number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    return number;
}

}  // namespace

OrbinelHelper::OrbinelHelper(const Needs& needs)
    : reports_(needs.reports),
      scheduler_(needs.scheduler),
      device_(needs.device),
      json_(needs.json),
      defaults_(needs.defaults),
      secureItems_(needs.secureItems),
      lifetime_(needs.lifetime),
      standard_(needs.defaults.standard()) {}

bool OrbinelHelper::shouldProceed() noexcept {
    const bool session = sessionGdprConsent_;
    const bool disabled = sdkDisabled_;
    const bool mobile = mobileSessionGdprConsent_;
    if (!session) {
        reports_.log(LogType::common, LogLevel::error, "SessionGdprConsent is false. Cannot proceed.");
    }
    if (disabled) reports_.log(LogType::common, LogLevel::error, "sdkDisabled is true.");
    if (!mobile) reports_.log(LogType::common, LogLevel::error, "MobileGdprConsent is false. Cannot proceed.");
    return session && !disabled && mobile;
}

std::int32_t OrbinelHelper::getNowAsTimestamp() const noexcept { return held<std::int32_t>(scheduler_.now()); }

std::string OrbinelHelper::getTimestampAsString() const { return std::to_string(held<std::int64_t>(scheduler_.now())); }

std::string OrbinelHelper::getRFCFromNSDate(Date date) const noexcept {
    return guarded(reports_, "+[OrbinelHelper getRFCFromNSDate:]", std::string(), [&] {
        const auto time = scheduler_.localTime(date.secondsSince1970);
        std::array<char, 64> text{};
        const int length = std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", time.year,
                                         time.month, time.day, time.hour, time.minute, time.second, time.millisecond);
        return std::string(text.data(), static_cast<std::size_t>(length));
    });
}

std::string OrbinelHelper::getCurrentTime() const noexcept {
    return guarded(reports_, "-[OrbinelHelper getCurrentTime]", std::string(), [&] {
        const auto time = scheduler_.localTime(scheduler_.now());
        std::array<char, 64> text{};
        const int length = std::snprintf(text.data(), text.size(), "%04d.%02d.%02d %02d:%02d:%02d", time.year,
                                         time.month, time.day, time.hour, time.minute, time.second);
        return std::string(text.data(), static_cast<std::size_t>(length));
    });
}

std::shared_ptr<platform::DefaultsStore> OrbinelHelper::appGroupStore() const {
    const auto name = getAppGroup();
    return name && !name->empty() ? defaults_.appGroup(*name) : nullptr;
}

void OrbinelHelper::saveAppGroup(const std::optional<std::string>& name) noexcept {
    guarded(reports_, "+[OrbinelHelper saveAppGroup:]", [&] {
        if (standard_->value(keys::appGroup) == Value(name)) return;  // as at most launches: no work for the disk
        standard_->set(keys::appGroup, name);
        standard_->synchronize();
    });
}

std::optional<std::string> OrbinelHelper::getAppGroup() const noexcept {
    return guarded(reports_, "+[OrbinelHelper getAppGroup]", std::optional<std::string>(), [&] {
        const auto stored = standard_->value(keys::appGroup);
        const auto* name = stored.ifString();
        return name != nullptr ? std::optional(*name) : std::nullopt;
    });
}

void OrbinelHelper::storeDataInKeychain(std::string_view key, const Value& value) noexcept {
    guarded(reports_, "-[OrbinelHelper storeDataInKeychain:value:]", [&] {
        const auto archive = json_.serialise(value, platform::JsonStyle::compact);
        if (archive) secureItems_.store(key, key, *archive);
    });
}

Value OrbinelHelper::retrieveDataFromKeychain(std::string_view key) const noexcept {
    return guarded(reports_, "-[OrbinelHelper retrieveDataFromKeychain:]", Value(), [&] {
        const auto archive = secureItems_.find(key, key);
        if (!archive) return Value();
        auto parsed = json_.parse(*archive);
        auto* value = std::get_if<Value>(&parsed);
        return value != nullptr ? std::move(*value) : Value();
    });
}

void OrbinelHelper::removeDataFromKeychain(std::string_view key) noexcept {
    guarded(reports_, "-[OrbinelHelper removeDataFromKeychain:]", [&] { secureItems_.remove(key, key); });
}

bool OrbinelHelper::isFirstRun() noexcept {
    return guarded(reports_, "+[OrbinelHelper isFirstRun]", false, [&] { return onlyOnce(keys::firstRun); });
}

bool OrbinelHelper::isFirstSession() noexcept {
    return guarded(reports_, "+[OrbinelHelper isFirstSession]", false, [&] { return onlyOnce(keys::firstSession); });
}

bool OrbinelHelper::onlyOnce(std::string_view key) {
    const MutexLock lock(firstTimesMutex_);
    if (standard_->value(key).truth()) return false;
    standard_->set(key, true);
    standard_->synchronize();
    return true;
}

std::optional<std::string> OrbinelHelper::getUdid() noexcept {
    return guarded(reports_, "+[OrbinelDeviceAttributes getUdid]", std::optional<std::string>(), [&] {
        const auto cached = madeUdid();
        if (!cached.empty()) {
            mirrorUdid(cached);
            return std::optional(cached);
        }
        if (auto first = udidOfFirstRun()) {
            useUpFirstRunLater();
            return first;
        }
        if (auto earlier = udidOfEarlierInstallation()) {
            mirrorUdid(*earlier);
            return earlier;
        }
        return std::optional(madeOrMakeUdid());
    });
}

/// Whatever an earlier installation has left, the first run makes an identifier of its own.
std::optional<std::string> OrbinelHelper::udidOfFirstRun() {
    const MutexLock lock(udidMutex_);
    if (madeUdid().empty() && standard_->value(keys::firstRun).truth()) return std::nullopt;
    return makeUdid();
}

/// Asking for the identifier uses the first-run mark up where an earlier installation has left a record. Whether it has
/// is looked up in the background: the identifier does not depend on it, and the look may take a disk's time.
void OrbinelHelper::useUpFirstRunLater() {
    scheduler_.postGlobal(lifetime_.whileAlive([this] {
        if (!recordOfEarlierInstallation().empty()) static_cast<void>(isFirstRun());
    }));
}

Dictionary OrbinelHelper::recordOfEarlierInstallation() const {
    const auto item = retrieveDataFromKeychain(keys::udidKeychain);
    const auto* record = item.ifDictionary();
    return record != nullptr ? *record : Dictionary();
}

std::optional<std::string> OrbinelHelper::udidOfEarlierInstallation() {
    const auto record = recordOfEarlierInstallation();
    const auto* udid = record[keys::udidKeychain].ifString();
    return udid != nullptr && !udid->empty() ? std::optional(*udid) : std::nullopt;
}

std::string OrbinelHelper::madeUdid() const { return standard_->value(keys::udidCache).stringOrEmpty(); }

std::string OrbinelHelper::madeOrMakeUdid() {
    const MutexLock lock(udidMutex_);
    return makeUdid();
}

std::string OrbinelHelper::makeUdid() {
    auto udid = madeUdid();
    if (!udid.empty()) return udid;
    udid = device_.makeUuid();
    std::erase(udid, '-');
    storeUDID(udid);
    return udid;
}

void OrbinelHelper::storeUDID(const std::string& udid) {
    standard_->set(keys::udidCache, udid);
    standard_->synchronize();
}

void OrbinelHelper::mirrorUdid(const std::string& udid) {
    const auto group = getAppGroup().value_or(std::string());
    if (group.empty()) return;
    {
        const MutexLock lock(udidMutex_);
        if (group == mirroredGroup_ && udid == mirroredUdid_) return;
        mirroredGroup_ = group;
        mirroredUdid_ = udid;
    }
    const auto store = defaults_.appGroup(group);
    store->set(keys::udidKeychain, udid);
    store->synchronize();
}

bool OrbinelHelper::isIOSVersionGreaterOrEqual(float version) const noexcept {
    return leadingNumber(device_.facts()->osVersion.value_or(std::string())) >= version;
}

}  // namespace orbinel
