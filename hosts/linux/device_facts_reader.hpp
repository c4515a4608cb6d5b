#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "orbinel/platform/device.hpp"

namespace orbinel::hosts {

/// The environment variables that say something about the person's settings, as they are at one moment.
struct LocaleEnvironment {
    std::string language;  // LANGUAGE: languages in order of preference, separated by colons
    std::string messages;  // the first that is set of LC_ALL, LC_MESSAGES and LANG
    std::string timezone;  // TZ

    /// Reads them. Not to be called while another thread changes the environment.
    [[nodiscard]] static LocaleEnvironment current();
};

/// The first language as BCP 47, such as "en-GB"; nothing for the neutral locale ("C").
[[nodiscard]] std::optional<std::string> preferredLanguage(const LocaleEnvironment& environment);

/// Reads what the kernel and the system's files say about the device.
///
/// Threads: callable from any thread; waits for the (mostly virtual) files that it reads.
class DeviceFactsReader {
public:
    /// `root` stands for the directory "/".
    DeviceFactsReader(std::filesystem::path root, LocaleEnvironment environment);

    /// All facts that can be had; the identifiers of person and vendor are none of them.
    [[nodiscard]] platform::DeviceFacts read() const noexcept;

private:
    [[nodiscard]] std::optional<std::string> machine() const;
    [[nodiscard]] std::optional<std::string> timezone() const;
    [[nodiscard]] std::optional<double> battery() const;
    [[nodiscard]] platform::Connection connection() const;
    [[nodiscard]] std::optional<std::string> defaultInterface(bool& known) const;
    [[nodiscard]] platform::Connection kindOf(const std::string& interface) const;
    [[nodiscard]] std::optional<std::string> text(const std::filesystem::path& relative) const;

    const std::filesystem::path root_;
    const LocaleEnvironment environment_;
};

}  // namespace orbinel::hosts
