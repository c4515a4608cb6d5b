#include "hosts/linux/linux_device.hpp"

#include <glib.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <string>
#include <utility>

#include "base/mutex.hpp"
#include "hosts/linux/device_facts_reader.hpp"
#include "hosts/linux/file_system.hpp"

namespace orbinel::hosts {

namespace {

using std::chrono::steady_clock;

constexpr std::chrono::seconds factsAge{5};
constexpr const char* vendorIdentifierFile = "vendor-identifier";

/// A random UUID of version 4. From the kernel's call, because GLib's opens a file on the caller's thread.
std::string newUuid() {
    std::array<unsigned char, 16> bytes{};
    if (::getentropy(bytes.data(), bytes.size()) != 0) {
        for (auto& byte : bytes) byte = static_cast<unsigned char>(g_random_int_range(0, 256));
    }
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);
    std::string uuid;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        constexpr char digits[] = "0123456789ABCDEF";
        if (i == 4 || i == 6 || i == 8 || i == 10) uuid += '-';
        uuid += digits[bytes[i] >> 4];
        uuid += digits[bytes[i] & 0x0F];
    }
    return uuid;
}

/// Where it cannot be kept, it lasts as long as the process.
std::string readOrMakeIdentifier(const std::filesystem::path& directory) {
    const auto path = directory / vendorIdentifierFile;
    constexpr std::size_t uuidLength = 36;
    if (auto kept = readWholeFile(path, uuidLength); kept && g_uuid_string_is_valid(kept->c_str())) return *kept;
    auto made = newUuid();
    makePrivateDirectory(directory);
    replaceFile(path, made);
    return made;
}

}  // namespace

class LinuxDevice::Mirror {
public:
    Mirror(std::filesystem::path dataDirectory, const LocaleEnvironment& environment)
        : dataDirectory_(std::move(dataDirectory)), reader_("/", environment) {
        platform::DeviceFacts cheap;
        cheap.modelName = "Linux";
        cheap.preferredLanguage = preferredLanguage(environment);
        MutexLock lock(mutex_);
        facts_ = std::make_shared<const platform::DeviceFacts>(std::move(cheap));
    }

    std::shared_ptr<const platform::DeviceFacts> facts() const {
        MutexLock lock(mutex_);
        return facts_;
    }

    /// True once each time the facts are old; the caller then has them read.
    bool beginReading() {
        MutexLock lock(mutex_);
        if (reading_ || steady_clock::now() < nextReading_) return false;
        reading_ = true;
        return true;
    }

    void read() {
        const MutexLock readingLock(readingMutex_);
        auto facts = reader_.read();
        {
            MutexLock lock(mutex_);
            facts.vendorIdentifier = facts_->vendorIdentifier;
        }
        if (!facts.vendorIdentifier) facts.vendorIdentifier = readOrMakeIdentifier(dataDirectory_);
        MutexLock lock(mutex_);
        facts_ = std::make_shared<const platform::DeviceFacts>(std::move(facts));
        nextReading_ = steady_clock::now() + factsAge;
        reading_ = false;
    }

    bool renewVendorIdentifier() {
        const MutexLock lock(readingMutex_);
        std::error_code error;
        std::filesystem::remove(dataDirectory_ / vendorIdentifierFile, error);
        platform::DeviceFacts facts = *this->facts();
        facts.vendorIdentifier = readOrMakeIdentifier(dataDirectory_);
        const MutexLock factsLock(mutex_);
        facts_ = std::make_shared<const platform::DeviceFacts>(std::move(facts));
        return !error;
    }

private:
    const std::filesystem::path dataDirectory_;
    const DeviceFactsReader reader_;

    Mutex readingMutex_;  // keeps reading and renewing apart; only background threads wait for it
    mutable Mutex mutex_;
    std::shared_ptr<const platform::DeviceFacts> facts_ ORBINEL_GUARDED_BY(mutex_);
    steady_clock::time_point nextReading_ ORBINEL_GUARDED_BY(mutex_);
    bool reading_ ORBINEL_GUARDED_BY(mutex_) = false;
};

LinuxDevice::LinuxDevice(const std::filesystem::path& dataDirectory, std::shared_ptr<platform::Scheduler> scheduler)
    : scheduler_(std::move(scheduler)), mirror_(std::make_shared<Mirror>(dataDirectory, LocaleEnvironment::current())) {
    static_cast<void>(facts());
}

std::shared_ptr<const platform::DeviceFacts> LinuxDevice::facts() const noexcept {
    if (mirror_->beginReading()) scheduler_->postGlobal([mirror = mirror_] { mirror->read(); });
    return mirror_->facts();
}

std::string LinuxDevice::makeUuid() noexcept { return newUuid(); }

bool LinuxDevice::renewVendorIdentifier() noexcept { return mirror_->renewVendorIdentifier(); }

}  // namespace orbinel::hosts
