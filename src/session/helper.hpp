#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/lifetime.hpp"
#include "base/mutex.hpp"
#include "base/reports.hpp"
#include "orbinel/platform/defaults.hpp"
#include "orbinel/platform/device.hpp"
#include "orbinel/platform/json.hpp"
#include "orbinel/platform/scheduler.hpp"
#include "orbinel/platform/secure_items.hpp"

namespace orbinel {

/// The run-time gate of the library, its clock, and the state that it keeps across launches.
///
/// Threads: any.
class OrbinelHelper {
public:
    struct Needs {
        Reports& reports;
        platform::Scheduler& scheduler;
        platform::Device& device;
        platform::Json& json;
        platform::Defaults& defaults;
        platform::SecureItems& secureItems;
        Lifetime& lifetime;
    };

    explicit OrbinelHelper(const Needs& needs);

    // --- The gate. Its flags live in memory only: every launch begins open. ---

    /// Whether the library may do anything: both consents given and not switched off by the backend. Every condition
    /// that fails leaves a diagnostic record of its own.
    [[nodiscard]] bool shouldProceed() noexcept;

    [[nodiscard]] bool sdkDisabled() const noexcept { return sdkDisabled_; }
    void setSdkDisabled(bool disabled) noexcept { sdkDisabled_ = disabled; }
    [[nodiscard]] bool sessionGdprConsent() const noexcept { return sessionGdprConsent_; }
    void setSessionGdprConsent(bool consent) noexcept { sessionGdprConsent_ = consent; }
    [[nodiscard]] bool mobileSessionGdprConsent() const noexcept { return mobileSessionGdprConsent_; }
    void setMobileSessionGdprConsent(bool consent) noexcept { mobileSessionGdprConsent_ = consent; }

    // --- The clock. ---

    /// Seconds since 1970, with fractions.
    [[nodiscard]] double now() const noexcept { return scheduler_.now(); }

    /// Whole seconds since 1970, truncated toward zero and held within 32 bits.
    [[nodiscard]] std::int32_t getNowAsTimestamp() const noexcept;

    /// The same as decimal text, held within 64 bits.
    [[nodiscard]] std::string getTimestampAsString() const;

    /// "yyyy-MM-dd'T'HH:mm:ss.SSS'Z'". The digits are the device's local time although the text ends in "Z": the
    /// backend expects it so.
    [[nodiscard]] std::string getRFCFromNSDate(Date date) const noexcept;

    /// Whether neither consent is withheld. Unlike `shouldProceed`, leaves no record where one is.
    [[nodiscard]] bool consentsAreGiven() const noexcept { return sessionGdprConsent_ && mobileSessionGdprConsent_; }

    /// The current local time as "YYYY.MM.dd HH:mm:ss".
    [[nodiscard]] std::string getCurrentTime() const noexcept;

    // --- Stored state. ---

    /// The application's own store.
    [[nodiscard]] platform::DefaultsStore& standardStore() const noexcept { return *standard_; }

    /// The store shared with the application's extensions; nothing while no app group is set.
    [[nodiscard]] std::shared_ptr<platform::DefaultsStore> appGroupStore() const;

    /// An absent name is stored as absent.
    void saveAppGroup(const std::optional<std::string>& name) noexcept;
    [[nodiscard]] std::optional<std::string> getAppGroup() const noexcept;

    /// Secure items under one key as service and account; the data is the value's JSON.
    void storeDataInKeychain(std::string_view key, const Value& value) noexcept;
    [[nodiscard]] Value retrieveDataFromKeychain(std::string_view key) const noexcept;
    void removeDataFromKeychain(std::string_view key) noexcept;

    /// True exactly once in the life of an installation, each.
    [[nodiscard]] bool isFirstRun() noexcept;
    [[nodiscard]] bool isFirstSession() noexcept;

    /// The device's identifier: 32 upper-case hexadecimal digits, made once per installation. A record that an earlier
    /// installation left in the secure store is taken only when this is not the first run. Nothing when it fails.
    ///
    /// Waits for the secure store only where the first run is over and nothing has been made, so never at a first
    /// launch.
    [[nodiscard]] std::optional<std::string> getUdid() noexcept;
    void storeUDID(const std::string& udid);

    // --- The platform. ---

    /// Whether the operating system's version, read as one number ("16.4.1" counts as 16.4), is at least this.
    [[nodiscard]] bool isIOSVersionGreaterOrEqual(float version) const noexcept;

    /// Which push environment the device token belongs to. Always true in this build.
    [[nodiscard]] bool isDevelopmentEnviroment() const noexcept { return true; }

private:
    [[nodiscard]] bool onlyOnce(std::string_view key);
    [[nodiscard]] std::string madeUdid() const;
    [[nodiscard]] std::string makeUdid() ORBINEL_REQUIRES(udidMutex_);
    [[nodiscard]] std::string madeOrMakeUdid();
    [[nodiscard]] std::optional<std::string> udidOfFirstRun();
    [[nodiscard]] Dictionary recordOfEarlierInstallation() const;
    [[nodiscard]] std::optional<std::string> udidOfEarlierInstallation();
    void useUpFirstRunLater();
    void mirrorUdid(const std::string& udid);

    Reports& reports_;
    platform::Scheduler& scheduler_;
    platform::Device& device_;
    platform::Json& json_;
    platform::Defaults& defaults_;
    platform::SecureItems& secureItems_;
    Lifetime& lifetime_;
    const std::shared_ptr<platform::DefaultsStore> standard_;

    std::atomic<bool> sdkDisabled_{false};
    std::atomic<bool> sessionGdprConsent_{true};
    std::atomic<bool> mobileSessionGdprConsent_{true};

    Mutex firstTimesMutex_;  // keeps two askers from both being the first

    // Keeps two threads from making two identifiers. Nothing that can report is called under it: a crash report asks
    // for the identifier.
    Mutex udidMutex_;
    std::string mirroredUdid_ ORBINEL_GUARDED_BY(udidMutex_);
    std::string mirroredGroup_ ORBINEL_GUARDED_BY(udidMutex_);
};

}  // namespace orbinel
