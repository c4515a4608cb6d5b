#pragma once

#include <memory>
#include <optional>
#include <string>

namespace orbinel::platform {

enum class Connection {
    unknown,   // the platform does not say
    none,      // nothing can be reached without setting a connection up first
    cellular,  // reachable over a mobile network
    wifi,      // reachable in any other way
};

struct ScreenFacts {
    double width = 0;   // points
    double height = 0;  // points
    double scale = 1;   // pixels a point
};

struct SafeArea {
    double top = 0;     // points
    double bottom = 0;  // points
};

/// What is known about the device. A fact that the platform does not know is absent.
struct DeviceFacts {
    std::optional<std::string> machine;                // hardware name, such as "PinePhone"; "Unknown" counts as absent
    std::optional<std::string> modelName;              // the kind of device, for where the hardware name is missing
    std::optional<std::string> osVersion;              // such as "16.4.1"
    std::optional<std::string> preferredLanguage;      // the person's first language (BCP 47), such as "en-GB"
    std::optional<std::string> timezone;               // name of the local zone (IANA), such as "Europe/Istanbul"
    std::optional<std::string> vendorIdentifier;       // UUID text, the same for all applications of one vendor
    std::optional<std::string> advertisingIdentifier;  // UUID text; absent or empty where the person does not share it
    std::optional<std::string> carrier;                // name of the first mobile network operator
    std::optional<double> battery;                     // percent, 0 to 100
    std::optional<ScreenFacts> screen;
    std::optional<SafeArea> safeArea;
    Connection connection = Connection::unknown;
    bool locationAllowed = false;  // location services are on and the application may use them
};

/// The device that the library runs on.
///
/// Threads: callable from any thread. Facts are mirrored by the host as they change, so that asking never waits for
/// another thread, a service or a disk.
class Device {
public:
    virtual ~Device() = default;

    /// The facts as they are now, all of one moment. Never null.
    [[nodiscard]] virtual std::shared_ptr<const DeviceFacts> facts() const noexcept = 0;

    /// A new random UUID (RFC 9562, version 4) in its text form with upper-case digits and hyphens.
    [[nodiscard]] virtual std::string makeUuid() noexcept = 0;

    /// Forgets the vendor identifier where the host itself made and keeps it; a new one takes its place. Called on a
    /// background thread. False where the old one could not be removed. Where the system owns it, there is nothing to
    /// do.
    virtual bool renewVendorIdentifier() noexcept { return true; }
};

}  // namespace orbinel::platform
